#include "platform/SerialTransport.h"
#include "support/TestLine.h"

namespace {

/// Notes what the device is told about its enable line, and when.
struct NotedLine : FakeTransport {
    QStringList told;

    Result<void> open(const QString &) override { return told.append(u"opened"_s), Result<void>(); }
    bool isOpen() const override { return !told.isEmpty(); }
    void setEnableLine(bool asserted) override { told.append(asserted ? u"asserted"_s : u"released"_s); }
};

/// A pseudo-terminal, and the control of its port.
struct Port {
    Port() { serial.setCommPort(7); }

    BareFolder test;
    PseudoTerminal interface {
        test.directory.filePath(u"Porte/COM7"_s)
    };
    bool isThere = interface.open().ok();
    SerialPorts ports{test.folder};
    SerialControl serial{ports};
};

/// Sends what the program's side then has taken from the device; a byte needs a moment to get there.
void send(PseudoTerminal &line, const QByteArray &bytes)
{
    QCOMPARE(line.write(bytes), bytes.size());
    for (const QDeadlineTimer patience(5000); line.unread() == 0 && !patience.hasExpired();) {
    }
    QTRY_COMPARE(line.unread(), 0);
}

} // namespace

class TestSerial : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void characterByCharacter()
    {
        Port port;
        PseudoTerminal &interface = port.interface;
        SerialControl &serial = port.serial;
        QVERIFY(port.isThere && port.ports.device(7) == interface.device());
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
        send(interface, "three");
        QCOMPARE(taken, QByteArray("one!"));
        QVERIFY(serial.setPortOpen(false).ok());
        serial.setRThreshold(1);
        QTRY_COMPARE(taken, QByteArray("one!twothree"));
    }

    void portsThatCannotBeOpened()
    {
        BareFolder test;
        PseudoTerminal interface(test.directory.filePath(u"Porte/COM1"_s));
        QVERIFY(interface.open().ok());
        test.write(u"Porte/COM2"_s, "no port");
        const SerialPorts ports(test.folder);
        SerialControl first(ports);
        SerialControl second(ports);
        const auto fault = [](SerialControl &serial, int port) {
            serial.setCommPort(port);
            return codeOf(serial.setPortOpen(true));
        };
        QCOMPARE(fault(first, 1), -1);
        QCOMPARE(fault(first, 1), int(FaultCode::AlreadyInUse));
        QCOMPARE(fault(second, 1), int(FaultCode::AlreadyInUse)); // for the superuser too
        QCOMPARE(fault(second, 2), int(FaultCode::InputOutput));
        QCOMPARE(fault(second, 32767), int(FaultCode::NotFound));
        QVERIFY(first.setPortOpen(false).ok());
        QCOMPARE(fault(second, 1), -1);
    }

    /// What an adapter had brought before it was pulled out is delivered; its end is told once, and the port is closed.
    void pulledOut()
    {
        Port port;
        PseudoTerminal &interface = port.interface;
        SerialControl &serial = port.serial;
        QByteArrayList told;
        connect(&serial, &SerialControl::OnComm, this, [&] {
            const bool isLost = serial.commEvent() == SerialControl::Lost;
            told.append(isLost ? QByteArray(serial.portOpen() ? "lost, open" : "lost") : serial.input().toByteArray());
        });
        QVERIFY(serial.setPortOpen(true).ok());
        send(interface, "R/A");
        serial.setRThreshold(1);
        interface.close();
        QTRY_VERIFY(told.contains("lost"));
        QCoreApplication::processEvents();
        QCOMPARE(told, QByteArrayList({"R/A", "lost"}));
        QCOMPARE(serial.output("&IC").fault().code, FaultCode::NotOpen);
    }

    /// Opening a port asserts the line by itself: what is wanted, or was before, is told as the first thing.
    void enableLineFollowsTheWish()
    {
        BareFolder test;
        const SerialPorts ports(test.folder);
        auto line = std::make_unique<NotedLine>();
        QStringList &told = line->told;
        SerialControl serial(ports, std::move(line));
        serial.setRTSEnable(true);
        serial.setRTSEnable(false);
        QVERIFY(told.isEmpty() && serial.setPortOpen(true).ok());
        serial.setRTSEnable(true);
        QCOMPARE(told, listOf("opened,released,asserted"));
    }

    /// Who is slow with what he is told holds up nobody else for longer than a turn; at the end all is told at once.
    void notificationsComeInTurns()
    {
        BareFolder test;
        const SerialPorts ports(test.folder);
        FakeSerial serial(ports);
        int taken = 0;
        connect(&serial, &SerialControl::OnComm, this, [&] {
            for (const QDeadlineTimer slow(1, Qt::PreciseTimer); !slow.hasExpired();) {
            }
            taken += int(serial.input().size());
        });
        serial.setInputLen(1);
        serial.setRThreshold(1);
        serial.receive(QByteArray(200, 'n'));
        QVERIFY2(taken > 0 && taken <= 64, QByteArray::number(taken));
        QTRY_VERIFY(taken > 64);
        serial.deliverAll();
        QCOMPARE(taken, 200);
    }
};

QTEST_GUILESS_MAIN(TestSerial)
#include "tst_serial.moc"
