#include "link/ConfigQuery.h"
#include "support/TestLine.h"

#include <QSignalSpy>
#include <QTest>

namespace {

const QByteArray banner = interfaceBanner() + "\r";
const QByteArray line2 = "WIEGAND 26 BIT SITO +CH CH:1234 ENABLE J1\r";
const QByteArray line3 = "VERSIONE 1.4\r";
const QByteArray one = "R/A-000000001X..\r\n";
const QByteArray two = "K/B-000000002.D.\r\n";

/// All fields of a configuration on one line.
QString asText(const InterfaceConfig &c)
{
    return u"%1|%2|%3|%4|%5|%6|%7|%8|%9"_s.arg(c.protocol)
        .arg(c.siteCode)
        .arg(c.enable, c.channels, c.j1)
        .arg(c.channelInfo)
        .arg(c.bridge)
        .arg(c.pc)
        .arg(c.version);
}

/// Runs a query over what comes in each of its attempts ("|" lets an attempt's second pass).
struct Run {
    InterfaceConfig config;
    QByteArray handedBack;
    int asked = 0;
    bool ended = false;
};

Run run(const QByteArray &unfinished, const QList<QByteArray> &attempts, const QByteArray &behind = {})
{
    Run result;
    ConfigQuery query;
    qint64 now = 0;
    query.start(unfinished);
    const auto pump = [&] {
        if (query.wantsToSend()) {
            ++result.asked;
            query.sent(now);
        }
        if (const auto config = query.takeResult()) {
            result.config = *config;
            result.ended = true;
        }
        result.handedBack += query.takeHandedBack();
    };
    pump();
    for (const QByteArray &attempt : attempts) {
        for (const char character : attempt) {
            if (query.takesInput())
                query.feed(character, now);
            else
                result.handedBack += character;
            pump();
        }
        if (query.isRunning()) {
            now = query.deadline();
            query.tick(now);
        }
        pump();
    }
    while (query.isRunning()) {
        now = query.deadline();
        query.tick(now);
        pump();
    }
    for (const char character : behind) {
        if (query.takesInput())
            query.feed(character, now);
        else
            result.handedBack += character;
        pump();
    }
    now += 2000;
    query.tick(now);
    pump();
    return result;
}

} // namespace

class TestQuery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replies_data();
    void replies();
    void attempts_data();
    void attempts();
    void recordsAmongTheReply_data();
    void recordsAmongTheReply();
    void serialControl();
    void portsThatCannotBeOpened();
    void protocolIsKept_data();
    void protocolIsKept();
    void rePowerMarksLeadToOneMoreQuery();
    void noiseWithoutEndIsBounded();
    void pulledOutPort();
};

void TestQuery::replies_data()
{
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QByteArray>("third");
    QTest::addColumn<QString>("config");
    const auto row = [](const char *name, const char *second, const char *third, const char *config) {
        QTest::newRow(name) << QByteArray(second) << QByteArray(third) << QString(QLatin1String(config));
    };
    row("all", "WIEGAND 26 BIT SITO +CH CH:1234 ENABLE J1", "VERSIONE 1.4",
        "WIEGAND 26 BIT|1|ENABLE|1234|ON|1|1|1|1.4");
    row("channel before site loses the site", "WIEGAND 26 BIT +CH SITO CH:12 ENABLE", "123456789abcdef",
        "WIEGAND 26 BIT|0|ENABLE|12|OFF|1|1|1|abc");
    row("bare", "ISO2 CH:1 DISABLE PC BRIDGE", "", "ISO2|0|DISABLE|1|OFF|0|0|0|--");
    row("J1 not last", "TOLMAR CH: J1 ENABLE", "short", "TOLMAR|0|ENABLE||OFF|0|1|1|");
    row("empty second line", "", "VERSIONE 1.4", "-1|0||||0|0|0|VERSIONE 1.4");
    row("no channel list", "WIEGAND 26 BIT ENABLE", "VERSIONE 1.4", "-1|0||||0|0|0|VERSIONE 1.4");
    row("no blank behind the list", "WIEGAND 26 BIT CH:1234", "VERSIONE 1.4", "-1|0||||0|0|0|VERSIONE 1.4");
    row("list at the front", "CH:1 ", "", "|0|DISABLE|1|OFF|0|1|1|--");
}

void TestQuery::replies()
{
    QFETCH(QByteArray, second);
    QFETCH(QByteArray, third);
    QTEST(asText(parseReply(second, third)), "config");
}

void TestQuery::attempts_data()
{
    QTest::addColumn<QList<QByteArray>>("attempts");
    QTest::addColumn<int>("asked");
    QTest::addColumn<QString>("protocol");
    QTest::addColumn<QString>("version");
    const QString wiegand = u"WIEGAND 26 BIT"_s;
    const QByteArray crlf = QByteArray(banner + line2 + line3).replace('\r', "\r\n");
    QTest::newRow("at once") << QList{banner + line2 + line3} << 1 << wiegand << "1.4";
    QTest::newRow("CR LF") << QList{crlf} << 1 << wiegand << "1.4";
    QTest::newRow("third attempt") << QList{QByteArray(), QByteArray(), banner + line2 + line3} << 3 << wiegand
                                   << "1.4";
    QTest::newRow("wrong line asks again at once")
        << QList{"noise\r" + banner + line2 + line3} << 2 << wiegand << "1.4";
    QTest::newRow("banner cut by the second")
        << QList{banner.left(9), banner.mid(9) + line2 + line3} << 2 << wiegand << "1.4";
    QTest::newRow("silence") << QList<QByteArray>() << 3 << QString() << QString();
    QTest::newRow("three wrong lines") << QList{QByteArray("a\rb\rc\r")} << 3 << QString() << QString();
    QTest::newRow("LF kept in the line") << QList{"\n" + banner + line2 + line3} << 3 << QString() << QString();
    QTest::newRow("no third line") << QList{banner + line2} << 1 << wiegand << "--";
    QTest::newRow("second line cut") << QList{banner + line2.left(20)} << 1 << "-1" << QString();
    QTest::newRow("second line without its end") << QList{banner + line2.chopped(1)} << 1 << wiegand << "--";
    QTest::newRow("third line cut") << QList{banner + line2 + "VERSIONE 1"} << 1 << wiegand << "1";
    QTest::newRow("empty second line") << QList{banner + "\r" + line3} << 1 << "-1"
                                       << "VERSIONE 1.4";
}

void TestQuery::attempts()
{
    QFETCH(QList<QByteArray>, attempts);
    const Run result = run({}, attempts);
    QVERIFY(result.ended);
    QTEST(result.asked, "asked");
    QTEST(result.config.protocol, "protocol");
    QTEST(result.config.version, "version");
    QCOMPARE(result.handedBack.trimmed(), QByteArray());
}

void TestQuery::recordsAmongTheReply_data()
{
    QTest::addColumn<QByteArray>("unfinished");
    QTest::addColumn<QList<QByteArray>>("attempts");
    QTest::addColumn<QByteArray>("behind");
    QTest::addColumn<QByteArray>("handedBack");
    const QByteArray none;
    QTest::newRow("before") << none << QList{one + banner + line2 + line3} << none << one;
    QTest::newRow("between") << none << QList{banner + one + line2 + two + line3} << none << one + two;
    QTest::newRow("behind") << none << QList{banner + line2 + line3 + one} << two << one + two;
    QTest::newRow("begun before the query") << one.left(7) << QList{one.mid(7) + banner + line2 + line3} << none << one;
    QTest::newRow("only its LF missing") << one.chopped(1) << QList{"\n" + banner + line2 + line3} << none << one;
    QTest::newRow("cut by the end of an attempt")
        << none << QList{one.left(5), one.mid(5) + banner + line2 + line3} << none << one;
    QTest::newRow("cut by the end of the query") << none << QList{banner + line2 + one.left(9)} << one.mid(9) << one;
    QTest::newRow("cut by the end of silence") << none << QList{none, none, one.left(4)} << one.mid(4) << one;
    QTest::newRow("after noise with its own LF")
        << none << QList{"noise\n" + one, banner + line2 + line3} << none << one;
    QTest::newRow("late second answer") << none << QList{none, banner + line2 + line3}
                                        << one + banner + line2 + two + line3 + one << one + two + one;
    QTest::newRow("late after silence") << none << QList{none, none, none} << banner + line2 + line3 + one << one;
    QTest::newRow("half an answer") << QByteArray("xyz") << QList{banner + line2 + line3} << one << one;
}

void TestQuery::recordsAmongTheReply()
{
    QFETCH(QByteArray, unfinished);
    QFETCH(QList<QByteArray>, attempts);
    QFETCH(QByteArray, behind);
    const Run result = run(unfinished, attempts, behind);
    QVERIFY(result.ended);
    QTEST(result.handedBack, "handedBack");
    if (attempts.join().contains(line3))
        QCOMPARE(asText(result.config), asText(parseReply(line2.chopped(1), line3.chopped(1))));
}

void TestQuery::serialControl()
{
    TestFolder test;
    PseudoTerminal interface(test.directory.filePath(u"Porte/COM7"_s));
    QVERIFY(interface.open().ok());
    const SerialPorts ports(test.folder);
    QCOMPARE(ports.device(7), interface.device());
    SerialControl serial(ports);
    QByteArray taken;
    int depth = 0;
    connect(&serial, &SerialControl::OnComm, this, [&] {
        QCOMPARE(++depth, 1);
        taken += serial.input().toByteArray();
        serial.setRThreshold(0);
        if (!taken.endsWith('!'))
            serial.setRThreshold(1); // notifies for what is waiting, but not from inside
        --depth;
    });
    serial.setCommPort(7);
    serial.setInputLen(1);
    QCOMPARE(serial.output("x").fault().code, FaultCode::NotOpen);
    QVERIFY(serial.setPortOpen(true).ok());
    serial.setRThreshold(1);
    interface.write("one!two");
    QTRY_COMPARE(taken, QByteArray("one!"));
    QVERIFY(serial.output("&IC").ok());
    QByteArray sent;
    QTRY_COMPARE(sent += interface.read(), QByteArray("&IC"));
    // Nothing is lost while notifications are off, nor by closing the port.
    interface.write("three");
    QTest::qWait(20);
    QCOMPARE(taken, QByteArray("one!"));
    QVERIFY(serial.setPortOpen(false).ok());
    serial.setRThreshold(1);
    QTRY_COMPARE(taken, QByteArray("one!twothree"));
}

void TestQuery::portsThatCannotBeOpened()
{
    TestFolder test;
    PseudoTerminal interface(test.directory.filePath(u"Porte/COM1"_s));
    QVERIFY(interface.open().ok());
    test.write(u"Porte/COM2"_s, "no port");
    const SerialPorts ports(test.folder);
    SerialControl first(ports);
    SerialControl second(ports);
    const auto fault = [](SerialControl &serial, int port) {
        serial.setCommPort(port);
        const Result<void> opened = serial.setPortOpen(true);
        return opened ? -1 : int(opened.fault().code);
    };
    QCOMPARE(fault(first, 1), -1);
    QCOMPARE(fault(first, 1), int(FaultCode::AlreadyInUse));
    QCOMPARE(fault(second, 1), int(FaultCode::AlreadyInUse)); // for the superuser too
    QCOMPARE(fault(second, 2), int(FaultCode::InputOutput));
    QCOMPARE(fault(second, 0), int(FaultCode::NotFound));
    QCOMPARE(fault(second, 32767), int(FaultCode::NotFound));
    QVERIFY(first.setPortOpen(false).ok());
    QCOMPARE(fault(second, 1), -1);
}

void TestQuery::protocolIsKept_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray head = "COM=7\r\nLINGUA=2\r\n";
    QTest::newRow("first report") << head << line2 << head + "PRTC=3\r\n";
    QTest::newRow("the same") << head + "PRTC=03\r\n" << line2 << head + "PRTC=03\r\n";
    QTest::newRow("another") << head + "PRTC=15\r\n" << line2 << head + "PRTC=3\r\n";
    QTest::newRow("unknown") << head + "PRTC=15\r\n" << QByteArray("\r") << head + "PRTC=0\r\n";
}

void TestQuery::protocolIsKept()
{
    QFETCH(QByteArray, settings);
    QFETCH(QByteArray, second);
    TestLine line(settings);
    QSignalSpy ended(&line.link, &LinkMonitor::queryEnded);
    line.link.ApriCollegamento();
    QCOMPARE(line.link.link(), LinkMonitor::Link::NotAnswering);
    QTRY_COMPARE(line.received, QByteArray("&IC"));
    line.interface.write(banner + second + line3);
    QTRY_COMPARE(ended.size(), 1);
    QCOMPARE(line.link.link(), LinkMonitor::Link::Answering);
    QTEST(line.test.read(u"Impost.stp"_s), "expected");
}

void TestQuery::rePowerMarksLeadToOneMoreQuery()
{
    TestLine line;
    QSignalSpy ended(&line.link, &LinkMonitor::queryEnded);
    QSignalSpy stored(&line.log, &EventLog::stored);
    line.link.ApriCollegamento();
    const auto answer = [&](int queries) {
        QTRY_COMPARE(line.received, QByteArray("&IC").repeated(queries));
        line.interface.write(banner + line2 + line3);
        QTRY_COMPARE(ended.size(), queries);
    };
    line.interface.write(QByteArray("\0\x80", 2) + one);
    answer(1);
    QTRY_COMPARE(stored.size(), 1);
    // Within two seconds after a query: one more at their end, however many marks, wherever they stand.
    line.interface.write(QByteArray("\0\0R/A-00\x80"
                                    "0000001X..\r\n",
                                    21));
    QTRY_COMPARE(stored.size(), 2);
    line.clock.milliseconds += 1999;
    line.link.wake();
    QTest::qWait(20);
    QCOMPARE(line.received, QByteArray("&IC"));
    line.clock.milliseconds += 1;
    line.link.wake();
    answer(2);
    // Later: at once.
    line.clock.milliseconds += 2000;
    line.link.wake();
    QCOMPARE(line.received, QByteArray("&IC&IC"));
    line.interface.write(QByteArray("\x80", 1));
    answer(3);
    // A query that nobody answers changes nothing about the link.
    line.clock.milliseconds += 2000;
    line.interface.write(QByteArray("\0", 1));
    QTRY_COMPARE(line.received.size(), 12);
    for (int attempt = 0; attempt < 3; ++attempt) {
        line.clock.milliseconds += 1000;
        line.link.wake();
    }
    QCOMPARE(ended.size(), 4);
    QCOMPARE(line.link.link(), LinkMonitor::Link::Answering);
}

void TestQuery::noiseWithoutEndIsBounded()
{
    Road<FakeSerial> line("COM=1\r\nLINGUA=2\r\n");
    QSignalSpy stored(&line.log, &EventLog::stored);
    line.serial.setInputLen(1);
    line.serial.setRThreshold(1);
    const QByteArray noise(1 << 16, 'n');
    const auto pour = [&](int megabytes) {
        for (int i = 0; i < 16 * megabytes; ++i) {
            line.serial.receive(noise);
            QCoreApplication::processEvents();
        }
        QTRY_VERIFY(line.serial.input().isEmpty());
    };
    pour(1);
    const qint64 before = residentPages();
    pour(10);
    line.link.LetturaConf();
    pour(10);
    QVERIFY2(residentPages() - before < 256, "a megabyte more");
    line.serial.receive("\r\n" + one + two);
    for (int attempt = 0; attempt < 3; ++attempt) {
        line.clock.milliseconds += 1000;
        line.link.wake();
    }
    QTRY_COMPARE(stored.size(), 2);
}

void TestQuery::pulledOutPort()
{
    TestLine line;
    QSignalSpy lost(&line.link, &LinkMonitor::portLost);
    QSignalSpy ended(&line.link, &LinkMonitor::queryEnded);
    QSignalSpy stored(&line.log, &EventLog::stored);
    line.link.ApriCollegamento();
    line.interface.write(one + two.left(8));
    QTRY_COMPARE(line.received, QByteArray("&IC"));
    line.interface.close();
    QTRY_COMPARE(lost.size(), 1);
    QVERIFY(!line.serial.portOpen());
    QCOMPARE(line.link.link(), LinkMonitor::Link::PortNotAvailable);
    QCOMPARE(ended.size(), 1);
    QCOMPARE(stored.size(), 1);
    // The road is not walked again for a port that repeats its error.
    QTest::qWait(50);
    QCOMPARE(lost.size(), 1);
}

QTEST_GUILESS_MAIN(TestQuery)
#include "tst_query.moc"
