#include "archives/ArchiveFetch.h"
#include "support/Fixtures.h"
#include "users/UserRegister.h"

#include <QFileInfo>

#include <functional>

namespace {

const QString all = u"SELECT Codice, Tipo, Cognome, Nome, Note FROM Utenti ORDER BY Codice"_s;
const QString own = QStringView(ArchiveName::Users).toString();

/// A register of one user in force, and another program folder, with other templates, whose register is restored.
struct Desk {
    Desk()
    {
        test.addUsers({{u"1"_s, u"TX"_s, u"Neri"_s}});
        other.addUsers({{u"5"_s, u"TX"_s, u"Rossi"_s, u"Ada"_s}, {u"5"_s, u"DKS"_s, u"Verdi"_s}});
        test.setPassword(u"apriti"_s);
        other.setPassword(u"of the file"_s);
    }
    Result<Database> opened(Database::Use use = Database::Use::Safe) { return other.archives.open(own, use); }
    void execute(const QByteArray &sql, Database::Use use = Database::Use::Safe)
    {
        if (!opened(use).value().execute(sql))
            qFatal("not executed: %s", sql.constData());
    }
    /// The files as they stand at this moment, as a power cut would leave them.
    void keepAsCutOff()
    {
        for (const char *side : {"", "-wal", "-journal"}) {
            if (other.folder.exists(own + QLatin1String(side)))
                other.write(u"Archivi/Cut.zeb"_s + QLatin1String(side), other.read(own + QLatin1String(side)));
        }
        file = other.folder.path(u"Archivi/Cut.zeb"_s);
    }
    /// All that stands in the folder of the chosen file.
    QByteArray foreign() const
    {
        QByteArray content;
        for (const QString &name : other.files(u"Archivi"_s))
            content += name.toUtf8() + ' ' + other.read(u"Archivi/"_s + name);
        return content;
    }

    TestFolder test;
    TestFolder other;
    QString file = other.folder.path(own);
    std::optional<Database> atWork;
    UserRegister edited{test.archives, [] { return Protocol{0}; }};
};

using Prepare = std::function<void(Desk &)>;

} // namespace
Q_DECLARE_METATYPE(Prepare)

class TestRestore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void files_data();
    void files();
    void stopped();
    void passwords();
};

void TestRestore::files_data()
{
    const Rows<Prepare, int, QString> row("prepare", "fault", "users");
    const QString both = u"5|TX|Rossi|Ada|,5|DKS|Verdi||"_s;
    const auto good = [&](const char *name, const QString &read, const Prepare &prepare) {
        row(name, prepare, -1, read);
    };
    good("another folder's", both, [](Desk &) {});
    good("other columns", u"7|TX||Bea|"_s, [](Desk &desk) {
        desk.execute("DROP TABLE Utenti; CREATE TABLE Utenti (Foto, nome, Cognome TEXT, TIPO TEXT, Codice INTEGER);"
                     "INSERT INTO Utenti VALUES ('x', 'Bea', NULL, 'TX', 7)");
    });
    good("without passwords", both, [](Desk &desk) { desk.execute("DROP TABLE Password"); });
    good("none registered", {}, [](Desk &desk) { desk.execute("DELETE FROM Utenti"); });
    good("write-ahead journal beside it", both + u",6||||"_s, [](Desk &desk) {
        Result<Database> users = desk.opened(Database::Use::Log);
        QVERIFY(users.value().execute("INSERT INTO Utenti (Codice) VALUES ('6')").ok());
        desk.keepAsCutOff();
    });
    good("rollback journal beside it", both, [](Desk &desk) {
        Result<Database> users = desk.opened();
        QVERIFY(users.value()
                    .execute("PRAGMA cache_size = 1; BEGIN; UPDATE Utenti SET Cognome = 'half'; CREATE TABLE "
                             "Half (x); WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE "
                             "i < 20000) INSERT INTO Half SELECT i FROM n")
                    .ok());
        desk.keepAsCutOff();
    });

    const auto bad = [&](const char *name, FaultCode fault, const Prepare &prepare) {
        row(name, prepare, static_cast<int>(fault), {});
    };
    bad("damaged", FaultCode::Damaged, [](Desk &desk) { desk.other.damage(own); });
    bad("noise", FaultCode::Damaged, [](Desk &desk) { desk.other.write(own, QByteArray(8192, 'x')); });
    bad("empty", FaultCode::Damaged, [](Desk &desk) { desk.other.write(own, {}); });
    bad("holidays", FaultCode::NoRegister,
        [](Desk &desk) { desk.file = desk.other.folder.path(QStringView(ArchiveName::HolidaysTemplate).toString()); });
    bad("folder", FaultCode::NotRegularFile, [](Desk &desk) { desk.file = desk.other.folder.path(u"Archivi"_s); });
    bad("gone", FaultCode::NotFound, [](Desk &desk) { QFile::remove(desk.file); });
    bad("written to", FaultCode::Locked, [](Desk &desk) {
        desk.atWork.emplace(std::move(desk.opened().value()));
        QVERIFY(desk.atWork->execute("BEGIN EXCLUSIVE").ok());
    });
    bad("too large", FaultCode::TooLarge,
        [](Desk &desk) { QFile::resize(desk.file, ArchiveFetch::LargestArchive + 1); });
    bad("register in force, by a link", FaultCode::OwnRegister, [](Desk &desk) {
        desk.file = desk.other.directory.filePath(u"link"_s);
        QVERIFY(QFile::link(desk.test.folder.path(own), desk.file));
    });
    bad("working copy", FaultCode::OwnRegister, [](Desk &desk) {
        QVERIFY(desk.test.archives.copy(own, ArchiveName::UsersCopy).ok());
        desk.file = desk.test.folder.path(QStringView(ArchiveName::UsersCopy).toString());
    });
}

/// Whatever is chosen, nothing is written where it lies, and the register stays as it is until a save.
void TestRestore::files()
{
    QFETCH(Prepare, prepare);
    QFETCH(int, fault);
    QFETCH(QString, users);
    Desk desk;
    prepare(desk);
    const bool isLarge = fault == static_cast<int>(FaultCode::TooLarge);
    const QByteArray foreign = isLarge ? QByteArray() : desk.foreign();
    const QByteArray before = desk.test.read(own);
    const auto task = desk.edited.restoring(desk.file);
    Result<bool> done = false;
    int turns = 0;
    for (; done && !done.value(); ++turns)
        done = task->step(QDeadlineTimer(0));
    QCOMPARE(codeOf(done), fault);
    QVERIFY(isLarge || desk.foreign() == foreign);
    QCOMPARE(desk.test.read(own), before);
    if (!done) {
        QCOMPARE(done.fault().subject, desk.file);
        QVERIFY(!desk.edited.isChanged());
        QCOMPARE(desk.test.files(u"Archivi"_s).filter(u"$"_s).size(), desk.file.endsWith(u"$"_s) ? 1 : 0);
        return;
    }
    QVERIFY(desk.edited.isChanged() && turns > desk.edited.users().recordCount());
    QCOMPARE(desk.test.files(u"Archivi"_s).filter(u"$"_s), QStringList{u"Anatmp.$$$"_s});
    QVERIFY(finish(*desk.edited.saving()).ok());
    QCOMPARE(desk.test.rows(own, all).join(u','), users);
    QCOMPARE(desk.test.rows(ArchiveName::UsersBackup, all), QStringList{u"1|TX|Neri||"_s});
    QCOMPARE(desk.test.read(own).first(ArchiveKeys::SaltSize), before.first(ArchiveKeys::SaltSize));
}

/// At each step the disk fails, or the work is dropped after each turn: nothing stays of it.
void TestRestore::stopped()
{
    int steps = 0;
    for (bool isWhole = false; !isWhole; ++steps) {
        Desk desk;
        desk.test.disk.steps.clear();
        desk.test.disk.stopAt = steps;
        auto task = desk.edited.restoring(desk.file);
        isWhole = finish(*task).ok();
        task.reset();
        desk.test.disk.stopAt = -1;
        desk.edited.discard();
        QVERIFY(!desk.edited.isChanged());
        QCOMPARE(desk.test.rows(own, all), QStringList{u"1|TX|Neri||"_s});
    }
    QVERIFY(steps > 3);
    bool isDone = false;
    for (int turns = 1; !isDone; ++turns) {
        Desk desk;
        auto task = desk.edited.restoring(desk.file);
        for (int turn = 0; turn < turns && !isDone; ++turn)
            isDone = task->step(QDeadlineTimer(0)).value();
        task.reset();
        desk.edited.discard();
        QCOMPARE(desk.test.files(u"Archivi"_s).filter(QRegularExpression(u"[$]|-|kor"_s)), QStringList());
    }
}

/// Those in force stay, also the ones that are set before the save, and a register whose users are damaged is mended.
void TestRestore::passwords()
{
    Desk desk;
    QList<QStringList> many;
    for (int i = 10; i < 2000; ++i)
        many.append({QString::number(i), u"TX"_s, u"Bianchi"_s});
    desk.test.addUsers(many);
    desk.test.damage(own);
    QVERIFY(finish(*desk.edited.restoring(desk.file)).ok());
    Result<Database> inForce = desk.test.archives.open(own, Database::Use::Safe);
    QVERIFY(!inForce.value().readThrough().ok());
    Passwords passwords(desk.test.archives);
    QCOMPARE(passwords.load(), Passwords::Fault::RegisterUnusable);
    QVERIFY(finish(*desk.edited.saving()).ok() && passwords.load() == Passwords::Fault::None);
    QVERIFY(passwords.matches(Passwords::Type::Main, u"apriti"_s) && desk.test.rows(own, all).size() == 2);

    QVERIFY(finish(*desk.edited.restoring(desk.file)).ok());
    desk.test.setPassword(u"otra"_s, Passwords::Type::Users);
    QVERIFY(finish(*desk.edited.saving()).ok() && passwords.load() == Passwords::Fault::None);
    QVERIFY(passwords.matches(Passwords::Type::Main, u"apriti"_s));
    QVERIFY(passwords.matches(Passwords::Type::Users, u"otra"_s));

    // Should the register vanish meanwhile, they are those of the working copy.
    QVERIFY(finish(*desk.edited.restoring(desk.file)).ok() && desk.test.archives.remove(own).ok());
    QVERIFY(finish(*desk.edited.saving()).ok() && passwords.load() == Passwords::Fault::None);
    QVERIFY(passwords.matches(Passwords::Type::Users, u"otra"_s));
}

QTEST_GUILESS_MAIN(TestRestore)
#include "tst_restore.moc"
