#include "startup/CommandLine.h"
#include "startup/ProgramPlaces.h"
#include "startup/Startup.h"
#include "startup/WindowPlace.h"
#include "support/Fixtures.h"

#include <QDir>

namespace {

const QString file = u"Impost.stp"_s;

/// A program folder and the settings in it.
struct Start : TestFolder {
    explicit Start(const QByteArray &content = {})
    {
        if (!content.isNull())
            write(file, content);
    }

    FakePrinters printers;
    Notices notices;
    Settings settings{folder, printers};
};

/// A folder beside an installation, in which a program starts for the first time.
struct NewFolder {
    /// @param stopAt  number of steps on the disk until the power is cut, -1 = it is not
    bool start(int stopAt)
    {
        FakeDisk disk;
        disk.stopAt = stopAt;
        ProgramFolder folder(directory.path(), disk, installation.directory.path());
        ArchiveStore archives(folder);
        const FakePrinters printers;
        Settings settings(folder, printers);
        Notices notices;
        const bool started = !checkProgramFolder(folder) && !makeArchiveFolder(folder) &&
                             !prepareProgramFolder(archives, settings, 2, notices);
        steps = disk.steps;
        return started;
    }
    void lay(const QString &name) const
    {
        QDir(directory.path()).mkpath(QFileInfo(name).path());
        QFile laid(directory.filePath(name));
        if (!laid.open(QIODevice::WriteOnly))
            qFatal("a file cannot be laid");
    }

    TestFolder &installation;
    QTemporaryDir directory = {};
    QStringList steps = {};
};

} // namespace

class TestStartup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data()
    {
        const Rows<QByteArray, QString> row("content", "expected");
        row("first wins", "COM=0\r\nCHECK=1\r\nCHECK=2\r\n", u"1"_s);
        row("inside another word", "XCHECK=5\r\n", u"5"_s);
        row("case counts", "check=5\r\n", {});
        row("first equals sign of the line", "A=B CHECK=5\r\n", u"B CHECK=5"_s);
        row("no line end", "COM=1\nCHECK=7", u"7"_s);
        row("empty file", "", {});
    }
    void reads()
    {
        QFETCH(QByteArray, content);
        QTEST(Start(content).settings.LeggiImpostazione(u"CHECK"_s), "expected");
    }

    void rewrites_data()
    {
        const Rows<QByteArray, QByteArray> row("content", "expected");
        row("in its place", "COM=0\r\nCHECK=60\r\nPRN=0\r\n", "COM=0\r\nCHECK=15\r\nPRN=0\r\n");
        row("every line of the key", "CHECK=1\r\nXCHECK=2\r\n", "CHECK=15\r\nCHECK=15\r\n");
        row("appended", "COM=0\r\n\xE0=\x80\r\n", "COM=0\r\n\xE0=\x80\r\nCHECK=15\r\n");
        row("other line ends", "COM=0\n\nPRN=0", "COM=0\r\n\r\nPRN=0\r\nCHECK=15\r\n");
    }
    void rewrites()
    {
        QFETCH(QByteArray, content);
        Start start(content);
        QVERIFY(start.settings.save(u"CHECK"_s, 15).ok());
        QTEST(start.read(file), "expected");
        QCOMPARE(start.files(), QStringList{file});
    }

    void unusableSettings_data()
    {
        const Rows<QByteArray, QList<int>, QString> row("content", "values", "keys"); // COM, LINGUA, ..., PRN, PRTC
        row("good", "COM=3\r\nLINGUA=4\r\nNUMEVOD=30\r\nCHECK=0\r\nPRN=-1\r\nPRTC=15\r\n", {3, 4, 30, 0, -1, 15}, {});
        row("nothing", "\r\n", {0, 2, 25, 60, -1, 0}, u"COM 0,LINGUA English,NUMEVOD 25,CHECK 60,PRN -1"_s);
        row("no numbers", "COM=x\r\nLINGUA=2nd\r\nNUMEVOD=x\r\nCHECK=15 min\r\nPRN=\r\n", {0, 2, 0, 15, 0, 0},
            u"COM 0,LINGUA English"_s);
        row("language 0", "COM=1\r\nLINGUA=0\r\nNUMEVOD=1\r\nPRN=0\r\n", {1, 2, 1, 60, 0, 0},
            u"LINGUA English,CHECK 60"_s);
        row("out of range", "COM=70000\r\nLINGUA=5\r\nNUMEVOD=0\r\nCHECK=70000\r\nPRN=-70000\r\n",
            {32767, 2, 0, 32767, -32768, 0}, u"LINGUA English"_s);
    }
    void unusableSettings()
    {
        QFETCH(QByteArray, content);
        Start start(content);
        const Settings &read = start.settings;
        QVERIFY(start.settings.read(2, start.notices).ok());
        const QList<int> values = {read.PortaCom, read.Lingua,       read.NumEvOd,
                                   read.MinCheck, read.IndStampante, static_cast<int>(read.CodProtocollo)};
        QTEST(values, "values");
        QStringList keys;
        for (const QString &told : takeNotices(start.notices))
            keys.append(told.section(u'\'', 1, 1) + u' ' + told.section(u'\'', 3, 3));
        QTEST(keys.join(u','), "keys");
        QCOMPARE(start.read(file), content);
    }

    void longSettings()
    {
        Start start(QByteArray("COM=1\r\n").leftJustified(65536, '\n'));
        QVERIFY(start.settings.read(2, start.notices).ok());
        start.write(file, start.read(file) + '\n');
        QCOMPARE(start.settings.read(2, start.notices).fault().code, FaultCode::TooLarge);
        QVERIFY(!start.settings.save(u"COM"_s, 3).ok() && start.read(file).size() == 65537);
    }

    void firstAndSecondStart()
    {
        Start start;
        start.printers.installed = listOf("alpha,beta");
        start.printers.byDefault = u"beta"_s;
        const auto prepare = [&start](int language) {
            start.disk.steps.clear();
            return !prepareProgramFolder(start.archives, start.settings, language, start.notices);
        };
        QVERIFY(!checkProgramFolder(start.folder) && prepare(2));
        QCOMPARE(start.read(file), QByteArray("COM=0\r\nLINGUA=2\r\nNUMEVOD=25\r\nCHECK=60\r\nPRN=1\r\n"));
        QVERIFY(start.folder.isFolder(u"Archivi/BackUp"_s));
        for (const QString &name : listOf("Anagrafico,Fascie,Ferie")) {
            QVERIFY(start.folder.exists(u"Archivi/%1.zeb"_s.arg(name)));
            QCOMPARE(start.read(u"Archivi/%1.zeb"_s.arg(name)), start.read(u"Archivi/%1org.zeb"_s.arg(name)));
        }

        // What is there stays, what has gone missing is made anew.
        start.addUsers({listOf("1,TX")});
        const QByteArray users = start.read(u"Archivi/Anagrafico.zeb"_s), bands = start.read(u"Archivi/Fascie.zeb"_s);
        QVERIFY(start.folder.remove(u"Archivi/Fascie.zeb"_s).ok() && prepare(4));
        QCOMPARE(start.read(u"Archivi/Anagrafico.zeb"_s), users);
        QCOMPARE(start.read(u"Archivi/Fascie.zeb"_s), bands);
        QVERIFY(!start.disk.steps.contains(u"rename Impost.stp"_s) && start.settings.Lingua == 2 && prepare(4));
        QCOMPARE(start.disk.steps, QStringList());
        QVERIFY(start.notices.isEmpty());
    }

    void places_data()
    {
        const Rows<QString, QString, QString> row("asked", "programs", "expected");
        row("asked for", u"/data"_s, u"bin"_s, u"/data HERE/share/kor-supervisor"_s);
        row("asked for, from a ready folder", u"/data"_s, u"ready"_s, u"/data HERE/ready"_s);
        row("ready folder", {}, u"ready"_s, u"HERE/ready HERE/ready"_s);
        row("the user's", {}, u"bin"_s, u"/home/me/kor-supervisor HERE/share/kor-supervisor made"_s);
    }
    void places()
    {
        QFETCH(QString, asked);
        QFETCH(QString, programs);
        const QTemporaryDir here;
        QVERIFY(QDir(here.path()).mkpath(u"ready/ARCHIVI"_s));
        const ProgramPlaces found = programPlaces(asked, here.filePath(programs), u"/home/me"_s);
        const QString told = found.folder + u' ' + found.installation + (found.isUsersOwn ? u" made"_s : QString());
        QTEST(QString(told).replace(here.path(), u"HERE"_s), "expected");

        FakeDisk disk;
        const QString own = here.filePath(u"a/b/kor-supervisor"_s);
        QVERIFY(makeUsersFolder(own, disk).ok() && makeUsersFolder(own, disk).ok());
        QCOMPARE(disk.steps.filter(u"make"_s), listOf("make a,make b,make kor-supervisor"));
    }

    void emptyFolderIsMadeReady()
    {
        TestFolder installation;
        qsizetype whole = 1;
        for (int stop = -1; stop < whole; ++stop) {
            NewFolder made{installation};
            made.lay(u"Porte/COM5"_s);
            QCOMPARE(made.start(stop), stop < 0);
            // What comes after the templates can be cut like any start.
            whole = std::max(whole, made.steps.indexOf(u"make Backup"_s));
            QVERIFY2(made.start(-1), qPrintable(u"after step %1"_s.arg(stop)));
            const QStringList templates = installation.files(u"Archivi"_s);
            const QDir archives(made.directory.filePath(u"Archivi"_s));
            QCOMPARE(archives.entryList({u"*org.zeb"_s, u"Eventitmp.zeb"_s, u"*.part"_s}), templates);
            QCOMPARE(archives.entryList(QDir::Files).size(), templates.size() + 3);
            for (const QString &name : templates) {
                QFile copied(archives.filePath(name));
                QVERIFY(copied.open(QIODevice::ReadOnly));
                QCOMPARE(copied.readAll(), installation.read(u"Archivi/"_s + name));
                QVERIFY(!(copied.permissions() & (QFile::ReadGroup | QFile::ReadOther)));
            }
        }
        QVERIFY(whole > 20);
    }

    void folderThatIsNotNew_data()
    {
        const Rows<QString> row("holds");
        row("settings beside a disk that is not mounted", u"Impost.stp,Archivi/.keep"_s);
        row("events", u"Archivi/Eventi_05-03-2004.zeb"_s);
        row("something else", u"letter.txt"_s);
    }
    void folderThatIsNotNew()
    {
        QFETCH(QString, holds);
        TestFolder installation;
        NewFolder used{installation};
        for (const QString &name : holds.split(u','))
            used.lay(name);
        QVERIFY(!used.start(-1));
        QCOMPARE(used.steps, QStringList());
    }

    void commandLine_data()
    {
        const Rows<QString, QString> row("arguments", "wrong");
        row("all", u"--console|--folder=/x|--password-file|/y|--port|8"_s, {});
        row("unknown", u"--nonsense"_s, u"Unbekannte Option: '--nonsense'."_s);
        row("no value", u"--console|--port"_s, u"Der Wert der Option '--port N' fehlt."_s);
        row("port 0", u"--port|0"_s, u"--port erwartet eine Zahl von 1 bis 8, nicht '0'."_s);
        row("demo in a folder", u"--demo|--folder|/x"_s,
            u"--demo arbeitet in einem eigenen Ordner und an einem eigenen Anschluss: --folder und --port weglassen."_s);
    }
    void commandLine()
    {
        QFETCH(QString, arguments);
        QFETCH(QString, wrong);
        const CommandLine line = readCommandLine(QStringList{u"kor-supervisor"_s} + arguments.split(u'|'));
        QCOMPARE(line.wrong ? textsIn(4).sentence(*line.wrong) : QString(), wrong);
        if (wrong.isEmpty()) {
            QVERIFY(line.console && !line.demo);
            QCOMPARE(line.folder + line.passwordFile, u"/x/y"_s);
            QCOMPARE(line.port, 8);
        }
    }

    /// A window's place that is none, or would leave the area of 1000 by 700, is not used.
    void windowPlaces()
    {
        const QString good = u"0,0,800,600,0"_s;
        QCOMPARE(placeText(placeFrom(good, {1000, 700}).value()), good);
        for (const QString &bad :
             {QString(), u"a,b,c,d,e"_s, u"0,0,800,600"_s, u"900,0,200,200,0"_s, u"-5,0,200,200,0"_s, u"0,0,9,9,0"_s,
              u"0,0,800,600,2"_s, u"32767,32767,32767,32767,1"_s})
            QVERIFY2(!placeFrom(bad, {1000, 700}), qPrintable(bad));
    }
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
