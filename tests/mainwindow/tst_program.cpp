// The whole program without its window: what it says of the folder it is started on, and its gate on the terminal.

#include "mainwindow/ConsoleGate.h"
#include "mainwindow/MenuState.h"
#include "platform/PseudoTerminal.h"
#include "support/Fixtures.h"
#include "support/Typist.h"

#include <QDir>
#include <QElapsedTimer>
#include <QSignalSpy>

#include <sys/stat.h>

namespace {

const QString users = QStringView(ArchiveName::Users).toString();
const QString backup = QStringView(ArchiveName::UsersBackup).toString();
const QByteArray settings = "COM=0\r\nLINGUA=2\r\nNUMEVOD=25\r\nCHECK=60\r\nPRN=-1\r\n";

/// A program on a folder that has been prepared by a list of words.
struct Site : TestFolder {
    /// @param things  "fifo NAME", "folder NAME", "file NAME" or one of the words below, a comma between them
    explicit Site(const QString &things = {})
    {
        for (const QString &thing : things.split(u',', Qt::SkipEmptyParts))
            prepare(thing.section(u' ', 0, 0), thing.section(u' ', 1));
    }
    void prepare(const QString &what, const QString &name)
    {
        if (name.startsWith(u"Archivi/Backup/"))
            QDir(directory.path()).mkpath(u"Archivi/Backup"_s);
        if (what == u"fifo")
            ::mkfifo(QFile::encodeName(path(name)).constData(), 0600);
        else if (what == u"folder")
            QDir(directory.path()).mkpath(name);
        else if (what == u"file")
            write(name, settings);
        else if (what == u"link")
            QFile::link(u"/nowhere/Anagrafico.zeb"_s, path(users));
        else if (what == u"gone")
            QFileInfo(path(name)).isDir() ? QDir(path(name)).removeRecursively() : QFile::remove(path(name));
        else if (what == u"register")
            addManyUsers();
        else if (what == u"damage")
            damage(users);
        else if (what == u"journal")
            leaveJournal();
    }
    void addManyUsers()
    {
        QList<QStringList> many;
        for (int code = 1; code <= 500; ++code)
            many.append({QString::number(code), u"TX"_s, u"Bianchi"_s, u"Anna"_s});
        addUsers(many);
    }
    /// Another register is put back beside the journal that a program left which was cut off.
    void leaveJournal()
    {
        QByteArray journal;
        {
            const Database writer = hold(users, "PRAGMA cache_size = 1; BEGIN; UPDATE Utenti SET Note='changed'");
            journal = read(users + u"-journal"_s);
        }
        write(users, read(QStringView(ArchiveName::UsersTemplate).toString()));
        write(users + u"-journal"_s, journal);
    }
    QString path(const QString &name) const { return directory.filePath(name); }
    std::optional<StartFault> start(std::optional<int> port = {}) { return program.prepare(2, port); }
    QString inWords(const std::optional<StartFault> &fault) const
    {
        return fault ? program.texts().sentence(fault->message) : QString();
    }

    FakeClock clock;
    FakePrinters printers;
    mutable Program program{{directory.path()}, clock, printers};
};

/// Notes what a start wants of its gate.
struct NotingGate : Gate {
    QStringList calls;

    bool waitsFor(const Fault &reason) const override { return reason.code == FaultCode::Locked; }
    void tellTriedAgain(const Message &) override { calls += u"wait"_s; }
    void askPassword() override { calls += u"ask"_s; }
    void refuse(const Message &) override { calls += u"refuse"_s; }
    void passed() override { calls += u"pass"_s; }
};

} // namespace

class TestProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void starts_data()
    {
        const QString reg = u"The users register 'HERE/Archivi/Anagrafico.zeb"_s;
        const QString way = u" restore it from 'HERE/Archivi/Backup/AnaBack.zeb'."_s,
                      damaged = reg + u"' is damaged:"_s;
        const QString settings = u"The program folder cannot be prepared ('HERE/"_s;
        const QString noFile = u"not a regular file"_s;
        const QString missing = u"The archive template 'HERE/Archivi/%1.zeb' is missing."_s;
        const Rows<QString, QString, QString> row("things", "refused", "noticed");
        row("first start", {}, {}, {});
        row("no day template", u"gone Archivi/Eventiorg.zeb"_s, missing.arg(u"Eventiorg"_s), {});
        row("no register template", u"gone Archivi/Anagraficoorg.zeb"_s, missing.arg(u"Anagraficoorg"_s), {});
        row("no template of the search", u"gone Archivi/Eventitmp.zeb"_s, {}, {});
        row("no archives", u"gone Archivi"_s, u"The archive folder 'HERE/Archivi' is missing."_s, {});
        row("a first start was cut off", u"folder Archivi/Backup,file Impost.stp,file Archivi/Anagrafico.zeb.part"_s,
            {}, {});
        row("a day, no register", u"file Archivi/EVENTI_01-02-2004.zeb"_s, reg + u"' cannot be read: does not exist"_s,
            {});
        row("waiting events, no register", u"file Archivi/Attesa.zeb"_s, reg + u"' cannot be read: does not exist"_s,
            {});
        row("a journal, no register", u"file Archivi/Giornale_2004.zeb"_s, reg + u"' cannot be read: does not exist"_s,
            {});
        row("a backup, no register", u"file "_s + backup,
            reg + u"' is missing, though the folder has been in use:"_s + way, {});
        row("a link that leads nowhere", u"link"_s,
            reg + u"' is a link that leads to no file: '/nowhere/Anagrafico.zeb'."_s, {});
        row("damaged behind the first page", u"register,damage,file "_s + backup, damaged + way, {});
        row("put back beside a hot journal", u"register,journal,file "_s + backup, damaged + way, {});
        row("pipe for a register", u"fifo "_s + users, reg + u"' cannot be read: "_s + noFile, {});
        row("pipe for its journal", u"register,fifo Archivi/Anagrafico.zeb-journal"_s,
            reg + u"-journal' cannot be read: "_s + noFile, {});
        row("pipe for settings", u"fifo Impost.stp"_s, settings + u"Impost.stp'): "_s + noFile, {});
        row("folder beside settings", u"folder Setup.tmp"_s, settings + u"Setup.tmp'): "_s + noFile, {});
        row("pipes beside files", u"fifo Setup.tmp,fifo Archivi/Fascie.zeb.part"_s, {}, {});
        row("file for a folder", u"register,file Archivi/Backup"_s, {},
            u"The folder 'HERE/Archivi/Backup' cannot be written to."_s);
        row("pipe for bands", u"register,fifo Archivi/Fascie.zeb"_s, {},
            u"The time bands 'Archivi/Fascie.zeb' cannot be read: the interface stays disabled: "_s + noFile);
        row("pipe for a day", u"register,fifo Archivi/Eventi_05-03-2004.zeb"_s, {},
            u"The event archive 'Archivi/Eventi_05-03-2004.zeb' cannot be opened: "_s + noFile);
    }
    void starts()
    {
        QFETCH(QString, things);
        QFETCH(QString, refused);
        QFETCH(QString, noticed);
        Site site(things);
        const QStringList before = site.files() + site.files(u"Archivi"_s);
        const std::optional<StartFault> fault = site.start();
        const auto inPlace = [&site](QString text) { return text.replace(site.directory.path(), u"HERE"_s); };
        QCOMPARE(inPlace(site.inWords(fault)), refused);
        if (!fault)
            site.program.load();
        else if (!things.contains(u"register") && !things.contains(u"fifo"))
            QCOMPARE(site.files() + site.files(u"Archivi"_s), before);
        QCOMPARE(QFileInfo(site.path(users)).isSymLink(), things == u"link");
        QCOMPARE(inPlace(takeNotices(site.program.notices()).join(u'|')), noticed);
    }

    /// What a save leaves is judged as what a start finds.
    void damagedAfterASave()
    {
        Site site(u"register,file Impost.stp,file "_s + backup);
        QVERIFY(!site.start());
        site.program.load();
        takeNotices(site.program.notices());
        site.damage(users);
        site.program.reloadUsers();
        QVERIFY(!site.program.users().isKnown());
        QTRY_VERIFY(!site.program.notices().isEmpty());
        QVERIFY(takeNotices(site.program.notices())
                    .join(u'|')
                    .endsWith(u"Archivi/Anagrafico.zeb' is damaged: restore it from '%1'."_s.arg(site.path(backup))));
    }

    /// Nobody is decided about by a register that has been saved anew meanwhile, and nothing is told of the waiting.
    void savedWhileItIsRead()
    {
        Site site(u"register,file Impost.stp"_s);
        QVERIFY(!site.start());
        site.program.load();
        takeNotices(site.program.notices());
        for (const char *code : {"601", "602"}) {
            site.addUsers(QList<QStringList>(40'000, {QString::fromLatin1(code), u"TX"_s}));
            site.program.reloadUsers();
            for (const char *record : {"R/A-000000601X..\r", "R/A-000000602X..\r", "R/A-000000603X..\r"})
                QVERIFY(!site.program.road().RegistraEvento(record) && !site.program.users().isKnown());
            site.execute(users, "DELETE FROM Utenti");
        }
        QTRY_VERIFY(site.program.users().isKnown());
        QTRY_COMPARE(waiting(site.program.log()), 0);
        QCOMPARE(site.rows(ArchiveName::events(u"05-03-2004"_s), u"SELECT Codice FROM Eventi"_s),
                 QStringList({u"602"_s, u"602"_s}));
        QCOMPARE(takeNotices(site.program.notices()), QStringList());
    }

    void sharedArchives()
    {
        Site first(u"register"_s), second;
        QVERIFY(QDir(second.path(u"Archivi"_s)).removeRecursively());
        QVERIFY(QFile::link(first.path(u"Archivi"_s), second.path(u"Archivi"_s)) && !first.start());
        QCOMPARE(second.inWords(second.start()),
                 u"The folder '%1' is already used by another supervising program."_s.arg(second.path(u"Archivi"_s)));
    }

    /// On the terminal, and by a file, a wrong password costs a second, and changes nothing.
    void gate()
    {
        Site site(u"register,file Impost.stp"_s);
        site.setPassword(u"apriti"_s);
        site.write(u"secret"_s, "chiuditi\n");
        QFile::setPermissions(site.path(u"secret"_s), QFile::ReadOwner);
        QVERIFY(!site.start(7));
        QElapsedTimer time;
        time.start();
        {
            ConsoleGate gate(site.program, {site.path(u"secret"_s), {}});
            QSignalSpy refused(&gate, &ConsoleGate::refused);
            gate.run();
            QTRY_COMPARE(refused.size(), 1);
            QCOMPARE(refused.constFirst().constFirst(), u"Wrong password!"_s);
        }
        QVERIFY(time.restart() >= 1000);
        QCOMPARE(site.read(u"Impost.stp"_s), settings);

        Typist typist("sesamo\n", "apriti\n");
        ConsoleGate gate(site.program, {});
        QSignalSpy refused(&gate, &ConsoleGate::refused);
        QByteArray settingsBefore;
        typist.callOnTimeout([&] {
            if (!typist.echoes())
                settingsBefore = site.read(u"Impost.stp"_s);
        });
        gate.run();
        QTRY_VERIFY(site.read(u"Impost.stp"_s).startsWith("COM=7\r\n"));
        QCOMPARE(settingsBefore, settings);
        QVERIFY(refused.isEmpty() && time.elapsed() >= 1000 && typist.echoes());
    }

    void registerLockedAtTheStart_data()
    {
        const Rows<bool, bool, QString> row("loadsFirst", "isDamaged", "then");
        row("the gate first", false, false, u"ask"_s);
        row("loaded before it", true, false, u"ask"_s);
        row("damaged when it is free", false, true, u"refuse"_s);
    }
    /// The gate stays closed, the port does not: what comes is decided when the register can be read.
    void registerLockedAtTheStart()
    {
        QFETCH(bool, loadsFirst);
        QFETCH(bool, isDamaged);
        QFETCH(QString, then);
        Site site(u"register,file Impost.stp"_s);
        site.setPassword(u"apriti"_s);
        PseudoTerminal interface(site.path(u"Porte/COM7"_s));
        QVERIFY(interface.open().ok());
        std::optional<Database> other = site.hold(users, "BEGIN EXCLUSIVE; UPDATE Utenti SET Note='x'");
        QVERIFY(!site.start(7));
        NotingGate gate;
        StartSequence start(site.program, gate);
        if (loadsFirst)
            start.load();
        start.run();
        QCOMPARE(gate.calls, QStringList{u"wait"_s});
        interface.write("R/A-000000500X..\r\nR/A-000000501X..\r\n");
        QTRY_COMPARE(waiting(site.program.log()), 2);
        QTRY_VERIFY(gate.calls.size() > 1);
        QCOMPARE(gate.calls.constLast(), u"wait"_s);
        other.reset();
        if (isDamaged)
            site.damage(users);
        QTRY_COMPARE(gate.calls.constLast(), then);
        QTRY_COMPARE(waiting(site.program.log()), isDamaged ? 2 : 0);
        QVERIFY(start.isGateClosed() && site.program.serial().portOpen());
        QCOMPARE(site.read(u"Impost.stp"_s), settings);
        if (!isDamaged) {
            QCOMPARE(site.rows(ArchiveName::events(u"05-03-2004"_s), u"SELECT Codice FROM Eventi"_s),
                     QStringList{u"500"_s});
            start.pass();
            QVERIFY(!start.isGateClosed() && site.read(u"Impost.stp"_s).startsWith("COM=7\r\n"));
        }
    }

    void menuStates_data()
    {
        using Entries = QList<Entry>;
        // Menus: File, Anagrafica, Consult, Strumenti, Help.
        const Rows<MenuInput, QByteArray, Entries, Entries> row("input", "menus", "closed", "open");
        const Entries passwords = {Entry::AttPass, Entry::AttPassUte, Entry::AttPassUty};
        const Entries some = {Entry::Exit, Entry::Journal, Entry::ImpCom, Entry::Utility, Entry::About};
        const auto with = [](std::initializer_list<bool MenuInput::*> flags) {
            MenuInput input;
            for (bool MenuInput::*flag : flags)
                input.*flag = true;
            return input;
        };
        constexpr auto gate = &MenuInput::gateIsClosed, noPort = &MenuInput::portIsMissing,
                       asks = &MenuInput::passwordWindowIsOpen, diagnostics = &MenuInput::diagnosticsAreAsked;
        row("nothing special", {}, "xxxxx", {}, some + passwords);
        row("gate", with({gate}), ".....", some + passwords, {});
        row("gate, its window open", with({gate, asks}), ".....", some, {});
        row("no port", with({noPort}), ".....", some + passwords, {});
        row("gate and no port", with({gate, noPort}), ".....", some, {});
        row("password window", with({asks}), "x.xxx", {}, some + passwords);
        row("diagnostics asked", with({asks, diagnostics}), "x.xxx", {Entry::Utility}, passwords);
        row("register open", with({&MenuInput::registerIsOpen}), "xxxxx", passwords + Entries{Entry::RestoreUsers},
            some + Entries{Entry::Utenti, Entry::ExportUsers, Entry::ImportUsers});
        row("users asked", with({&MenuInput::usersAreAsked}), "xxxxx",
            {Entry::Utenti, Entry::RestoreUsers, Entry::ExportUsers, Entry::ImportUsers}, some);
    }
    void menuStates()
    {
        QFETCH(MenuInput, input);
        QFETCH(QList<Entry>, closed);
        QFETCH(QList<Entry>, open);
        const MenuState state = menuState(input);
        QByteArray menus;
        for (const bool enabled : state.menus)
            menus += enabled ? 'x' : '.';
        QTEST(menus, "menus");
        for (const Entry entry : closed + open)
            QCOMPARE(state[entry], open.contains(entry));
        // Below a disabled menu nothing can be reached by other ways.
        for (int entry = 0; entry < EntryCount; ++entry)
            QVERIFY(state[menuOf(Entry(entry))] || !state[Entry(entry)]);
    }

    /// That events wait, and have been stored, stands in the journal; so does that the programme disables.
    void journalOfStoring()
    {
        Site site(u"register"_s);
        QVERIFY(!site.start());
        site.program.load();
        {
            Result<Database> other = site.archives.open(ArchiveName::events(u"05-03-2004"_s), Database::Use::Safe);
            QVERIFY(other && other.value().execute("BEGIN IMMEDIATE"));
            for (int i = 0; i < 2; ++i)
                QVERIFY(!site.program.log().append(makeEvent(*decodeRecord("R/A-000000001X..\r"), site.clock.now())));
        }
        site.program.log().retry();
        site.program.end();
        QCOMPARE(site.rows(ArchiveName::journal(2004), u"SELECT Tipo, Dato1 FROM Giornale ORDER BY Num"_s).mid(1),
                 (QStringList{u"41|0"_s, u"80|3"_s, u"81|"_s, u"40|3"_s, u"2|"_s}));
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
