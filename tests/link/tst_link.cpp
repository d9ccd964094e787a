#include "support/TestLine.h"

#include <QSignalSpy>
#include <QTest>

namespace {

const QByteArray answer = interfaceBanner() + "\rRS_C CH:1 ENABLE\rVERSIONE 1.4\r";

/// A watched link whose interface answers or is silent; tells what it says in the order in which it says it.
struct Watched : Road<FakeSerial> {
    explicit Watched(const QByteArray &check) : Road("COM=1\r\nLINGUA=2\r\nCHECK=" + check + "\r\n")
    {
        const auto note = [this](const char *what) { return [this, what] { told.append(QLatin1String(what)); }; };
        QObject::connect(&link, &LinkMonitor::alarmRaised, note("alarm"));
        QObject::connect(&link, &LinkMonitor::alarmEnded, note("alarm ended"));
        QObject::connect(&link, &LinkMonitor::portLost, note("lost"));
        QObject::connect(&link, &LinkMonitor::linkChanged,
                         [this](LinkMonitor::Link state) { told.append(QString::number(static_cast<int>(state))); });
        serial.setInputLen(1);
        serial.setRThreshold(1);
    }

    /// Lets the time pass in steps of a second; the interface answers within the second it is asked in.
    void pass(int seconds)
    {
        for (int i = 0; i < seconds; ++i) {
            if (const QByteArray asked = std::exchange(serial.sent, {}); !asked.isEmpty()) {
                ++queries;
                if (answers)
                    serial.receive(answer);
            }
            clock.milliseconds += 1000;
            link.wake();
        }
    }
    QStringList takeTold() { return std::exchange(told, {}); }

    bool answers = true;
    int queries = 0; ///< questions sent
    QStringList told;
};

QStringList list(const char *words)
{
    return QString::fromLatin1(words).split(QLatin1Char(','), Qt::SkipEmptyParts);
}

} // namespace

class TestLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void periodicCheck_data();
    void periodicCheck();
    void failedCheckOrder();
    void rePowerClosesTheAlarm();
    void anotherInterval();
    void silentAtTheStart();
    void marksDuringAnUnansweredQuery();
    void lostPort();
};

void TestLink::periodicCheck_data()
{
    QTest::addColumn<QByteArray>("check");
    QTest::addColumn<int>("minutes");
    QTest::addColumn<int>("queries");
    QTest::newRow("off") << QByteArray("0") << 200 << 0;
    QTest::newRow("negative") << QByteArray("-5") << 200 << 0;
    QTest::newRow("every minute") << QByteArray("1") << 10 << 10;
    QTest::newRow("every second minute") << QByteArray("2") << 10 << 5;
    QTest::newRow("every hour") << QByteArray("60") << 185 << 3;
}

void TestLink::periodicCheck()
{
    QFETCH(QByteArray, check);
    QFETCH(int, minutes);
    Watched watched(check);
    watched.link.LetturaConf();
    watched.pass(1);
    QCOMPARE(watched.takeTold(), list("0"));
    QCOMPARE(watched.config.CodProtocollo, 15);
    watched.queries = 0;
    // The clock on the wall may do what it likes.
    watched.clock.moment = watched.clock.moment.addDays(-400);
    watched.pass(60 * minutes + 30);
    QTEST(watched.queries, "queries");
    QCOMPARE(watched.takeTold(), list(""));
}

void TestLink::failedCheckOrder()
{
    Watched watched("2");
    watched.link.LetturaConf();
    watched.pass(1);
    watched.answers = false;
    watched.takeTold();
    watched.pass(2 * 60 + 1);
    QCOMPARE(watched.takeTold(), list(""));
    // Three attempts of a second; then the alarm, and nothing else until it is closed.
    watched.pass(3);
    QCOMPARE(watched.takeTold(), list("alarm"));
    QCOMPARE(watched.link.link(), LinkMonitor::Link::Answering);
    QVERIFY(!watched.link.checksRun());
    watched.queries = 0;
    watched.pass(600);
    QCOMPARE(watched.queries, 0);
    watched.link.objMessage_Chiudi();
    QCOMPARE(watched.takeTold(), list("1"));
    watched.link.objMessage_Chiudi();
    QCOMPARE(watched.takeTold(), list(""));
    QVERIFY(!watched.link.checksRun());
}

void TestLink::rePowerClosesTheAlarm()
{
    Watched watched("1");
    watched.link.LetturaConf();
    watched.pass(1);
    watched.answers = false;
    watched.takeTold();
    watched.pass(70);
    QCOMPARE(watched.takeTold(), list("alarm"));
    // A mark without an answer changes nothing.
    watched.serial.receive(QByteArray("\x80", 1));
    watched.pass(5);
    QCOMPARE(watched.takeTold(), list(""));
    QVERIFY(watched.link.isAlarmRaised());
    watched.answers = true;
    watched.serial.receive(QByteArray("\0", 1));
    watched.pass(1);
    QCOMPARE(watched.takeTold(), list("alarm ended,0"));
    QCOMPARE(watched.link.checkCountdown(), 1);
    QVERIFY(watched.link.checksRun());
    watched.link.objMessage_Chiudi(); // its window closes by the program
    QCOMPARE(watched.takeTold(), list(""));
    // From here on the checks go on as before.
    watched.answers = false;
    watched.pass(70);
    QCOMPARE(watched.takeTold(), list("alarm"));
}

void TestLink::anotherInterval()
{
    Watched watched("60");
    watched.link.LetturaConf();
    watched.pass(1);
    watched.queries = 0;
    watched.link.objTempochk_ModificaMin(-1);
    QCOMPARE(watched.config.MinCheck, 60);
    watched.link.objTempochk_ModificaMin(3);
    watched.pass(3 * 60 + 30);
    QCOMPARE(watched.queries, 1);
    watched.link.objTempochk_ModificaMin(0);
    watched.pass(3600);
    QCOMPARE(watched.queries, 1);
}

void TestLink::silentAtTheStart()
{
    Watched watched("1");
    watched.answers = false;
    watched.link.LetturaConf();
    watched.pass(600);
    QCOMPARE(watched.takeTold(), list("1"));
    QCOMPARE(watched.queries, 3);
    QVERIFY(!watched.link.isAlarmRaised());
    watched.answers = true;
    watched.serial.receive(QByteArray("\0", 1));
    watched.pass(1);
    QCOMPARE(watched.takeTold(), list("0"));
}

/// Whatever the line says meanwhile, a check that nobody answers ends as one, and records are stored as they come.
void TestLink::marksDuringAnUnansweredQuery()
{
    Watched watched("1");
    QSignalSpy stored(&watched.log, &EventLog::stored);
    watched.link.LetturaConf();
    watched.pass(1);
    watched.answers = false;
    watched.takeTold();
    watched.pass(60);
    for (int second = 0; second < 10; ++second) {
        watched.serial.receive(QByteArray("\0R/A-000000001X..\r\n", 19));
        watched.pass(1);
        QCOMPARE(stored.size(), second + 1);
    }
    QCOMPARE(watched.takeTold(), list("alarm"));
}

void TestLink::lostPort()
{
    TestLine line("COM=7\r\nLINGUA=2\r\nCHECK=1\r\n");
    QSignalSpy lost(&line.link, &LinkMonitor::portLost);
    QSignalSpy back(&line.link, &LinkMonitor::portBack);
    QSignalSpy alarm(&line.link, &LinkMonitor::alarmRaised);
    QSignalSpy changed(&line.link, &LinkMonitor::linkChanged);
    line.link.ApriCollegamento();
    QTRY_COMPARE(line.received, QByteArray("&IC"));
    line.interface.write(answer);
    QTRY_COMPARE(changed.size(), 1);

    line.interface.close();
    QTRY_COMPARE(lost.size(), 1);
    QCOMPARE(line.link.link(), LinkMonitor::Link::PortNotAvailable);
    QCOMPARE(alarm.size(), 1);
    line.link.objMessage_Chiudi();
    QCOMPARE(line.link.link(), LinkMonitor::Link::PortNotAvailable);
    for (int second = 0; second < 60; ++second) {
        line.clock.milliseconds += 1000;
        line.link.wake();
    }
    QCOMPARE(lost.size() + alarm.size(), 2);
    QCOMPARE(back.size(), 0);

    // Plugged in again it opens within five seconds, and the interface is asked as after a re-power.
    QVERIFY(line.interface.open().ok());
    line.received.clear();
    for (int second = 0; second < 5; ++second) {
        line.clock.milliseconds += 1000;
        line.link.wake();
    }
    QCOMPARE(back.size(), 1);
    QTRY_COMPARE(line.received, QByteArray("&IC"));
    line.interface.write(answer);
    QTRY_COMPARE(line.link.link(), LinkMonitor::Link::Answering);
    QVERIFY(line.link.checksRun());
}

QTEST_GUILESS_MAIN(TestLink)
#include "tst_link.moc"
