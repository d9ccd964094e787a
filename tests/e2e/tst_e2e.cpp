// Runs the built programs in a program folder of their own, as a user would.

#include "e2e/Programs.h"
#include "support/UnixSocket.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

const QList<QStringList> users = {listOf("12345,TX,Bianchi,Anna"), listOf("777,DKS,O'Hara,Sean")};
const QStringList onPort7 = listOf("--port,7");

} // namespace

class TestEndToEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWholeWalk()
    {
        Site test;
        {
            // First start: no port yet, and it runs on, which whoever looks after it hears.
            const UnixSocket manager(test.directory.filePath(u"notify"_s), SOCK_DGRAM);
            Running first("kor-supervisor", test.console(), {u"NOTIFY_SOCKET="_s + QFile::decodeName(manager.path())});
            QVERIFY(first.tells("No serial port is chosen (COM=0)."));
            QByteArrayList told;
            QTRY_COMPARE(told += manager.take(), QByteArrayList{"READY=1"});
            QCOMPARE(first.end(SIGINT), 0);
            QCOMPARE(manager.take(), QByteArrayList{"STOPPING=1"});
            QVERIFY(test.read(u"Impost.stp"_s).startsWith("COM=0\r\nLINGUA=2\r\n"));
        }
        test.addUsers(users);
        Running interface("kor-simulator", test.interface(listOf("--fast,--protocol,RS_C")));
        QVERIFY(interface.tells("Porte/COM7"));
        Running supervisor("kor-supervisor", test.console(onPort7));
        QVERIFY(supervisor.tells("MULTIPROTOCOL INTERFACE ON LINE"));
        QVERIFY(test.read(u"Impost.stp"_s).startsWith("COM=7\r\n"));
        QVERIFY(test.read(u"Impost.stp"_s).endsWith("PRTC=15\r\n"));

        interface.say("tx 12345 A\ntx 54321 A\ndks 777 D off disabled\nraw noise\\r\\n\\x41\nraw \\n");
        QVERIFY(supervisor.tells("777"));
        QVERIFY(supervisor.output.contains("Bianchi          Anna             12345      TX    A"));
        QVERIFY(supervisor.output.contains("O'Hara           Sean             777        DKS   D   X       X"));
        QVERIFY(!supervisor.output.contains("54321"));

        interface.say("repower");
        QVERIFY(supervisor.tells("ON LINE", 2));
        interface.say(QByteArray("tx 12345 B\n").repeated(500));
        QVERIFY(supervisor.tells("12345      TX    B", 500));

        QVERIFY(test.folder.exists(Site::day() + u"-wal"_s));
        // An interface that does not answer keeps a query open: what came during it is stored even when the program
        // ends.
        interface.say("fault silence\nrepower\ntx 12345 C");
        QVERIFY(supervisor.tells("12345      TX    C"));
        interface.say("unplug");
        QVERIFY(supervisor.tells("COM7 was unplugged"));
        interface.say("fault none");
        QVERIFY(supervisor.tells("THE CONFIGURED SERIAL PORT IS NOT AVAILABLE"));
        interface.say("plug");
        QVERIFY(supervisor.tells("COM7 is available again") && supervisor.tells("ON LINE", 4));
        QCOMPARE(supervisor.end(), 0);
        QCOMPARE(interface.end(), 0);
        QVERIFY(!QFileInfo(test.directory.filePath(u"Porte/COM7"_s)).isSymLink());
        QCOMPARE(test.files(u"Archivi"_s).filter(u"Eventi_"_s).size(), 1);
        const QStringList codes = test.rows(
            Site::day(), u"SELECT ProgEv, Codice, Canale, AbCh, KorDis FROM Eventi ORDER BY Data, Ora, ProgEv"_s);
        QCOMPARE(codes.size(), 503);
        QCOMPARE(codes[0], u"1|12345|A||"_s);
        QCOMPARE(codes[1], u"2|777|D|X|X"_s);
        QCOMPARE(codes[501], u"502|12345|B||"_s);
    }

    void dayChange()
    {
        const QString library = QStringLiteral(KOR_FAKETIME);
        if (!QFileInfo::exists(library))
            QSKIP("libfaketime is not installed, or cannot be used with the sanitizers");
        Site test;
        test.addUsers(users);
        // A band that ends with the day: the line changes within a tick or two.
        QVERIFY(test.archives.copy(ArchiveName::BandsTemplate, ArchiveName::Bands).ok());
        test.execute(ArchiveName::Bands, "INSERT INTO Fascie VALUES ('X','X','X','X','X','X','X','20:00','23:59')");
        const QString timeFile = test.directory.filePath(u"time"_s);
        test.write(u"time"_s, "@2004-03-05 23:59:56");
        Running interface("kor-simulator", test.interface());
        QVERIFY(interface.tells("Porte/COM7"));
        Running supervisor("kor-supervisor", test.console(onPort7),
                           {u"LD_PRELOAD="_s + library, u"FAKETIME_TIMESTAMP_FILE="_s + timeFile,
                            u"FAKETIME_DONT_FAKE_MONOTONIC=1"_s, u"TZ=UTC"_s});
        QVERIFY(supervisor.tells("ON LINE"));
        interface.say("tx 12345 A");
        QVERIFY(supervisor.tells("05/03/2004"));
        // The tick that changes the archive comes ten seconds after the start at the latest.
        QTRY_VERIFY_WITH_TIMEOUT(test.folder.exists(ArchiveName::events(u"06-03-2004"_s)), 20'000);
        interface.say("tx 12345 B");
        QVERIFY(supervisor.tells("06/03/2004"));
        QVERIFY(supervisor.output.contains("Interface enabled (program start)"));
        QVERIFY(supervisor.tells("Interface disabled (time band)"));
        QCOMPARE(supervisor.end(), 0);
        const QString statement = u"SELECT Data, Canale FROM Eventi"_s;
        QCOMPARE(test.rows(ArchiveName::events(u"05-03-2004"_s), statement), QStringList{u"05-03-2004|A"_s});
        QCOMPARE(test.rows(ArchiveName::events(u"06-03-2004"_s), statement), QStringList{u"06-03-2004|B"_s});
    }

    void killedInABurst()
    {
        Site test;
        QList<QStringList> many;
        for (int code = 1; code <= 400; ++code)
            many.append({QString::number(100'000 + code), u"TX"_s, u"S"_s, u"N"_s});
        test.addUsers(many);
        Running interface("kor-simulator", test.interface({u"--fast"_s}));
        QVERIFY(interface.tells("Porte/COM7"));
        QByteArray burst;
        for (const QStringList &user : many)
            burst += "tx " + user[0].toLatin1() + " A\n";

        QStringList told;
        for (int round = 1; round <= 20; ++round) {
            Running supervisor("kor-supervisor", test.console(onPort7));
            // On line or not: what is left of the last burst may still hold up the answer.
            QVERIFY(supervisor.tells("ON LINE"));
            interface.say(burst);
            QVERIFY(supervisor.tells("  TX  ", 1 + round * 7));
            supervisor.end(SIGKILL);
            // What was not told to the end of its line was not told.
            const QString whole = QString::fromUtf8(supervisor.output.left(supervisor.output.lastIndexOf('\n')));
            static const QRegularExpression line(QStringLiteral(R"((?m)^[\d/]{10} .* (\d{6})     TX    A$)"));
            for (auto match = line.globalMatch(whole); match.hasNext();)
                told.append(match.next().captured(1));
            // Let the rest of the burst run out before the next round, as nobody reads it.
            interface.say("unplug");
            QVERIFY(interface.tells("unplugged", round));
            interface.say("plug");
            QVERIFY(interface.tells("ready on", 1 + round));
        }
        const QStringList rows = test.rows(
            Site::day(), QStringLiteral("SELECT Codice, length(Data)=10 AND length(Ora)=8 AND Tipo='TX' AND Canale='A' "
                                        "AND length(DataOrd)=8 FROM Eventi ORDER BY ProgEv"));
        QVERIFY2(told.size() >= 20 * 8, qPrintable(QString::number(told.size())));
        qsizetype at = -1;
        for (const QString &code : told) {
            at = rows.indexOf(code + u"|1"_s, at + 1);
            QVERIFY2(at >= 0, qPrintable(code));
        }
        QVERIFY(rows.filter(u"|0"_s).isEmpty());
    }

    void gateAndTimeProgramme()
    {
        Site test;
        QVERIFY(test.archives.copy(ArchiveName::UsersTemplate, ArchiveName::Users).ok());
        QVERIFY(test.archives.copy(ArchiveName::BandsTemplate, ArchiveName::Bands).ok());
        test.setPassword(u"apriti"_s);
        QVERIFY(Running("kor-supervisor", test.console()).refuses("--password-file"));
        test.write(u"secret"_s, "apriti\n");
        const QString secret = test.directory.filePath(u"secret"_s);
        const QStringList withFile = {u"--password-file"_s, secret};
        QFile::setPermissions(secret, QFile::ReadOwner);
        {
            // Bands that nobody has set count as not enabled; at its end the program lets the interface go.
            Running supervisor("kor-supervisor", test.console(withFile));
            QVERIFY(supervisor.tells("Interface disabled (program start)"));
            QCOMPARE(supervisor.end(), 0);
            QVERIFY(supervisor.output.contains("Interface enabled (program end)"));
        }
        test.write(u"Archivi/Fascie.zeb"_s, "damaged");
        Running supervisor("kor-supervisor", test.console(withFile));
        QVERIFY(supervisor.tells("NOTICE: The time bands 'Archivi/Fascie.zeb' cannot be read"));
        QVERIFY(supervisor.tells("Interface disabled (program start)"));
        QCOMPARE(supervisor.end(), 0);
    }

    void endsWhileABoxSaysWhyItDoesNotStart()
    {
        Running astray("kor-supervisor", {u"--folder"_s, u"/none"_s}, {u"QT_QPA_PLATFORM=offscreen"_s});
        astray.process.setReadChannel(QProcess::StandardError);
        QVERIFY(astray.process.waitForReadyRead());
        QCOMPARE(astray.end(), 2);
    }

    void demonstration()
    {
        Running demo("kor-supervisor", {u"--console"_s, u"--demo"_s});
        QVERIFY(demo.tells("ON LINE") && demo.tells("  TX  ", 1));
        const qsizetype at = demo.output.indexOf("Folder: ") + 8;
        const QString folder = QString::fromUtf8(demo.output.sliced(at, demo.output.indexOf(" - ", at) - at));
        QVERIFY(QFileInfo(folder).isDir());
        QCOMPARE(demo.end(SIGINT), 0);
        QVERIFY(!QFileInfo::exists(folder));
    }
};

QTEST_GUILESS_MAIN(TestEndToEnd)
#include "tst_e2e.moc"
