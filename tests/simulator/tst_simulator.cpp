#include "link/EventRecord.h"
#include "simulator/Script.h"
#include "simulator/Traffic.h"
#include "support/Fixtures.h"

#include <fcntl.h>
#include <unistd.h>

using namespace simulator;

namespace {

/// An interface that is plugged in, on a line that a program may have open; what it sends is noted.
struct Stage {
    /// @param bytesPerSecond  of the line, by a clock that is turned; 0 = at once
    explicit Stage(double bytesPerSecond = 0)
        : output(bytesPerSecond, clock, [this](QByteArrayView bytes) {
              const qsizetype taken = line.write(bytes);
              sent += bytes.first(taken);
              return taken;
          })
    {
        QObject::connect(&interface, &SimulatedInterface::told, [this](const QString &text) { told.append(text); });
        if (!interface.plugIn())
            qFatal("no pseudo-terminal");
        told.clear();
    }
    void open()
    {
        program = std::make_unique<Descriptor>(
            ::open(QFile::encodeName(line.device()).constData(), O_RDWR | O_NOCTTY | O_CLOEXEC));
        QTRY_VERIFY(line.hasProgram());
    }
    void pass(int milliseconds) { clock.milliseconds += milliseconds; }
    /// Commands of one script, a semicolon between them.
    static QList<Command> commands(const QByteArray &lines)
    {
        QList<Command> all;
        for (const QByteArray &one : lines.split(';'))
            all.append(*parseLine(one).command);
        return all;
    }

    FakeClock clock;
    PseudoTerminal line{QString()};
    QByteArray sent;
    QStringList told;
    PacedOutput output;
    RecordSource records{{{CodeKind::Transmitter, 1}, {CodeKind::Keypad, 2}, {CodeKind::Transmitter, 3}}, {}};
    SimulatedInterface interface {
        line, output, records
    };
    Script script{interface, clock};
    std::unique_ptr<Descriptor> program;
};

const QByteArray one = "R/A-000000001X..\r\n";

} // namespace

class TestSimulator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// What each line sends; its fault, or what it makes the interface tell.
    void commands_data()
    {
        const Rows<QByteArray, QString> row("sent", "told");
        row("tx 12345", "R/A-000012345X..\r\n", {});
        row("dks 777 d off disabled\r", "K/D-000000777.D.\r\n", {});
        row("raw  \\x41\\r\\n\\\\ ", " A\r\n\\ ", {});
        row("record R/A", "R/A\r\n", {});
        row("repower", QByteArray("\0", 1), {});
        row("burst 2", "R/A-000000001X..\r\nK/B-000000002X..\r\n", u"burst of 2 records"_s);
        row("", {}, {});
        row("fault no-third", {}, u"fault no-third"_s);
        row("tx 1234567890", {}, u"tx 1234567890: a code of 1 to 9 digits is needed"_s);
        row("tx 1 E", {}, u"tx 1 E: \"E\" is no channel A to D, \"off\" or \"disabled\""_s);
        row("raw \\x4", {}, u"raw \\x4: after \\ comes r, n, \\ or x and two hexadecimal digits"_s);
        row("wait nan", {}, u"wait nan: seconds from 0 to 86400 are needed"_s);
        row("jump", {}, u"jump: no such command"_s);
    }
    void commands()
    {
        Stage stage;
        const ParsedLine parsed = parseLine(QTest::currentDataTag());
        if (parsed.command)
            stage.script.append(*parsed.command);
        QTEST(stage.sent, "sent");
        QTEST(parsed.fault + stage.told.join(u'/'), "told");
        // The supervisor reads what is sent as it was meant.
        for (const QByteArray &line : stage.sent.split('\n'))
            QCOMPARE(decodeRecord(line).has_value(), line.size() == 17);
    }

    /// What is answered to three queries that come in pieces reads as the fault wants it.
    void answers()
    {
        for (const auto &[fault, lines] :
             {std::pair("silence", ",,"),
              {"third", ",,RS_C CH:1234 ENABLE|VERSIONE 1.4|"},
              {"empty", "|VERSIONE 1.4|,|VERSIONE 1.4|,|VERSIONE 1.4|"},
              {"no-third", "RS_C CH:1234 ENABLE|,RS_C CH:1234 ENABLE|,RS_C CH:1234 ENABLE|"}}) {
            Stage stage;
            stage.open();
            stage.interface.execute(SetProtocol{"RS_C"});
            stage.interface.execute(SetFault{*faultFromName(fault)});
            QByteArrayList answered;
            for (const QByteArray query : {"&IC", "&&IC", "x&IC"}) {
                stage.told.clear();
                for (const char byte : query)
                    QCOMPARE(::write(stage.program->get(), &byte, 1), 1);
                QTRY_VERIFY(!stage.told.isEmpty());
                answered.append(std::exchange(stage.sent, {}).split('\r').mid(1).join('|'));
            }
            QCOMPARE(answered.join(','), QByteArray(lines));
        }
    }

    /// The line carries no more than it can, and what is held up on it is not made up for.
    void lineHasItsSpeed()
    {
        Stage stage(960);
        stage.output.queue(QByteArray(1000, 'x'));
        for (const int sent : {96, 192}) {
            stage.pass(100);
            QTRY_COMPARE(stage.sent.size(), sent);
        }
        QCOMPARE(stage.output.millisecondsToGo(), 841);
        stage.output.clear();
        stage.pass(10'000);
        stage.output.queue(one);
        QCOMPARE(stage.sent.size(), 192);
    }

    /// What ends sending lets pass what was sent before, but not for ever; a wait holds up what follows.
    void scriptKeepsItsOrder()
    {
        Stage stage(960);
        stage.script.start(Stage::commands("tx 1;wait 0.001;off;on;unplug"));
        QTRY_VERIFY(stage.output.waiting() > 0);
        stage.pass(10);
        QTRY_COMPARE(stage.sent, one.left(9));
        QVERIFY(stage.told.isEmpty());
        stage.pass(100);
        QTRY_COMPARE(stage.told, listOf("switched off,switched on"));
        QCOMPARE(stage.sent, one);
        stage.pass(2'000); // nobody reads it
        QTRY_COMPARE(stage.told.last(), u"unplugged"_s);
        QVERIFY(stage.script.isFinished());
    }

    /// A burst, then a steady rate, while a program hears it; codes and channels in turn.
    void traffic()
    {
        Stage stage;
        const Traffic traffic({2, 10, 3}, stage.interface, stage.clock);
        stage.pass(10'000);
        stage.script.start(Stage::commands("wait 0.05;fault none"));
        QTRY_COMPARE(stage.told.size(), 1);
        QCOMPARE(stage.sent, QByteArray());
        stage.open();
        QTRY_COMPARE(stage.sent.count('\n'), 2);
        stage.pass(200);
        QTRY_COMPARE(stage.sent.count('\n'), 4);
        QVERIFY(!traffic.isFinished());
        stage.pass(9'000);
        QTRY_VERIFY(traffic.isFinished());
        QCOMPARE(stage.sent, "R/A-000000001X..\r\nK/B-000000002X..\r\nR/C-000000003X..\r\n"
                             "R/D-000000001X..\r\nK/A-000000002X..\r\n");
    }
};

QTEST_GUILESS_MAIN(TestSimulator)
#include "tst_simulator.moc"
