#include "support/TestLine.h"

#include <QSignalSpy>

namespace {

const QByteArray answer = interfaceBanner() + "\rRS_C CH:1 ENABLE\rVERSIONE 1.4\r";

/// A watched link whose interface answers or is silent; tells what it says in the order in which it says it.
struct Watched : Road<FakeSerial> {
    explicit Watched(const QByteArray &check, bool answersAtFirst = true)
        : Road("COM=1\r\nLINGUA=2\r\nCHECK=" + check + "\r\n"), answers(answersAtFirst)
    {
        const auto note = [this](const char *what) { return [this, what] { told.append(QLatin1String(what)); }; };
        QObject::connect(&link, &LinkMonitor::alarmRaised, note("alarm"));
        QObject::connect(&link, &LinkMonitor::alarmEnded, note("alarm ended"));
        QObject::connect(&link, &LinkMonitor::portLost, note("lost"));
        QObject::connect(&link, &LinkMonitor::linkChanged,
                         [this](LinkMonitor::Link state) { told.append(QString::number(static_cast<int>(state))); });
        serial.setInputLen(1);
        serial.setRThreshold(1);
        link.LetturaConf();
        pass(1);
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
            Road::pass(1000);
        }
    }
    QStringList takeTold() { return std::exchange(told, {}); }

    bool answers;
    int queries = 0; ///< questions sent
    QStringList told;
};

} // namespace

class TestLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void periodicCheck_data()
    {
        const Rows<QByteArray, int, int> row("check", "minutes", "queries");
        row("off", "0", 200, 0);
        row("every second minute", "2", 10, 5);
    }
    void periodicCheck()
    {
        QFETCH(QByteArray, check);
        QFETCH(int, minutes);
        Watched watched(check);
        QCOMPARE(watched.takeTold(), listOf("0"));
        QCOMPARE(watched.config.CodProtocollo, Protocol::RsC);
        watched.queries = 0;
        // The clock on the wall may do what it likes.
        watched.clock.moment = watched.clock.moment.addDays(-400);
        watched.pass(60 * minutes + 30);
        QTEST(watched.queries, "queries");
        QCOMPARE(watched.takeTold(), listOf(""));
    }

    void failedCheckOrder()
    {
        Watched watched("2");
        watched.answers = false;
        watched.takeTold();
        watched.pass(2 * 60 + 1);
        QCOMPARE(watched.takeTold(), listOf(""));
        // Three attempts of a second; then the alarm, and nothing else until it is closed.
        watched.pass(3);
        QCOMPARE(watched.takeTold(), listOf("alarm"));
        QCOMPARE(watched.link.link(), LinkMonitor::Link::Answering);
        watched.queries = 0;
        watched.pass(600);
        watched.link.objMessage_Chiudi();
        QCOMPARE(watched.takeTold(), listOf("1"));
        watched.link.objMessage_Chiudi();
        watched.pass(600);
        QVERIFY(watched.takeTold().isEmpty() && watched.queries == 0);
    }

    /// Whatever the line says meanwhile, a check that nobody answers ends as one, and records are stored as they come.
    void marksDuringAnUnansweredQuery()
    {
        Watched watched("1");
        QSignalSpy stored(&watched.log, &EventLog::stored);
        watched.answers = false;
        watched.takeTold();
        watched.pass(60);
        for (int second = 0; second < 10; ++second) {
            watched.serial.receive(QByteArray("\0R/A-000000001X..\r\n", 19));
            watched.pass(1);
            QCOMPARE(stored.size(), second + 1);
        }
        QCOMPARE(watched.takeTold(), listOf("alarm"));
    }

    /// An interface that counts as silent and yet sends records is asked again, and not without end.
    void recordOfASilentInterface_data()
    {
        const Rows<bool, bool, QString> row("answersAtFirst", "closed", "told");
        row("silent at the start", false, false, u"0"_s);
        row("failed check, its message open", true, false, u"alarm ended,0"_s);
        row("failed check, its message closed", true, true, u"0"_s);
    }
    void recordOfASilentInterface()
    {
        QFETCH(bool, answersAtFirst);
        QFETCH(bool, closed);
        Watched watched("1", answersAtFirst);
        watched.answers = false;
        watched.pass(70);
        QCOMPARE(watched.queries, answersAtFirst ? 4 : 3);
        QCOMPARE(watched.takeTold(), listOf(answersAtFirst ? "0,alarm" : "1"));
        if (closed)
            watched.link.objMessage_Chiudi();
        watched.takeTold();
        watched.queries = 0;
        const auto records = [&watched](int seconds) {
            for (int second = 0; second < seconds; ++second) {
                watched.serial.receive("R/A-000000009X..\r\nR/A-000000009X..\r\n");
                watched.pass(1);
            }
        };
        records(130);
        // Three attempts of a second, once a minute.
        QCOMPARE(watched.queries, 9);
        QCOMPARE(watched.takeTold(), listOf(""));
        watched.answers = true;
        watched.serial.receive(QByteArray("\0", 1));
        watched.pass(1);
        QTEST(watched.takeTold().join(u','), "told");
        watched.link.objMessage_Chiudi(); // its window closes by the program
        QVERIFY(watched.takeTold().isEmpty());
        // Silent once more, it is asked at the first record, and an answer needs one question.
        watched.answers = false;
        watched.pass(70);
        watched.answers = true;
        watched.queries = 0;
        records(10);
        QCOMPARE(watched.takeTold(), listOf("alarm,alarm ended,0"));
        QCOMPARE(watched.queries, 1);
    }

    void portThatIsAway_data()
    {
        const Rows<bool, bool, int> row("pulledOut", "portWindow", "told");
        row("at the start", false, false, 1);
        row("pulled out", true, false, 0);
        row("pulled out, and the port window opened", true, true, 1);
    }
    void portThatIsAway()
    {
        QFETCH(bool, pulledOut);
        QFETCH(bool, portWindow);
        TestLine line("COM=7\r\nLINGUA=2\r\nCHECK=1\r\n");
        QSignalSpy notAvailable(&line.link, &LinkMonitor::portNotAvailable), lost(&line.link, &LinkMonitor::portLost);
        QSignalSpy back(&line.link, &LinkMonitor::portBack), alarm(&line.link, &LinkMonitor::alarmRaised);
        QStringList shown;
        const auto show = [&] {
            static const QStringList lights = {u"grey"_s, u"green"_s, u"red"_s};
            const LinkState state = line.link.state();
            const std::optional<Text> panel = state.panel();
            shown.append(lights[int(state.light())] + (panel ? Texts()[*panel].last(9) : QString()) +
                         (state.flashes() ? u" flashing"_s : QString()) + (state.mayBeAsked() ? u""_s : u" no"_s));
            shown.removeDuplicates();
            QVERIFY(line.serial.portOpen() || state.light() != LinkState::Light::Green);
        };
        QObject::connect(&line.link, &LinkMonitor::stateChanged, show);
        const auto answers = [&line] {
            QTRY_COMPARE(line.received, QByteArray("&IC"));
            line.interface.write(answer);
            QTRY_COMPARE(line.link.link(), LinkMonitor::Link::Answering);
        };
        if (!pulledOut)
            line.interface.close();
        show();
        line.link.ApriCollegamento();
        if (pulledOut) {
            answers();
            line.interface.close();
            QTRY_COMPARE(lost.size(), 1);
            QCOMPARE(shown, listOf("grey,green in linea,redsponibile,redsponibile flashing"));
            line.link.objMessage_Chiudi();
        }
        if (portWindow) {
            line.link.suspend();
            QVERIFY(line.interface.open().ok());
            line.pass(1000, 20);
            QVERIFY(!line.serial.portOpen());
            line.interface.close();
            line.link.objImpCom_Chiudi({});
        }
        line.pass(1000, 60);
        QTEST(int(notAvailable.size()), "told");
        QCOMPARE(lost.size() + alarm.size(), pulledOut ? 2 : 0);
        QVERIFY(line.link.link() == LinkMonitor::Link::PortNotAvailable && back.isEmpty());

        // Plugged in again it opens within five seconds, and the interface is asked as after a re-power.
        QVERIFY(line.interface.open().ok());
        line.received.clear();
        shown.clear();
        line.pass(1000, 5);
        answers();
        QCOMPARE(back.size(), 1);
        QCOMPARE(shown, listOf("red in linea no,green in linea"));
        // Checks go on.
        line.received.clear();
        line.pass(1000, 60);
        QTRY_COMPARE(line.received, QByteArray("&IC"));
    }
};

QTEST_GUILESS_MAIN(TestLink)
#include "tst_link.moc"
