// Ports whose devices lie in a folder of the test's own.

#include "support/TestLine.h"

#include <QDir>
#include <QSignalSpy>

namespace {

/// A line whose port COM5 has the devices that are plugged in.
struct Sockets : TestLine {
    Sockets() : TestLine("COM=5\r\nLINGUA=2\r\n") { QDir(at({})).mkpath(u"serial/by-id"_s); }
    QString at(const QString &name) const { return test.directory.filePath(u"dev/"_s + name); }
    /// An adapter comes under the name @p device, and by the name that it always has.
    std::unique_ptr<PseudoTerminal> plug(const QString &device) const
    {
        auto adapter = std::make_unique<PseudoTerminal>(at(device));
        QFile::remove(at(u"serial/by-id/usb-Maker_1"_s));
        if (!adapter->open() || !QFile::link(u"../../"_s + device, at(u"serial/by-id/usb-Maker_1"_s)))
            qFatal("no adapter");
        return adapter;
    }
};

} // namespace

class TestPorts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void devices_data()
    {
        const Rows<QString, int, QString> row("present", "number", "device");
        row("built in", u"ttyS0"_s, 1, u"ttyS0"_s);
        row("nothing there", u""_s, 5, u"ttyUSB0"_s);
        row("adapter", u"ttyUSB3"_s, 8, u"ttyUSB3"_s);
        row("modem", u"ttyACM3"_s, 8, u"ttyACM3"_s);
        row("both", u"ttyACM1,ttyUSB1"_s, 6, u"ttyUSB1"_s);
        row("modem of another number", u"ttyACM1"_s, 5, u"ttyUSB0"_s);
        row("no port", u"ttyACM4"_s, 9, QString());
    }
    void devices()
    {
        QFETCH(QString, present);
        QFETCH(int, number);
        TestFolder test;
        QDir(test.directory.path()).mkdir(u"dev"_s);
        const QStringList all = present.split(u',', Qt::SkipEmptyParts);
        for (const QString &device : all)
            test.write(u"dev/"_s + device, {});
        const SerialPorts ports(test.folder, {test.directory.filePath(u"dev"_s), {}});
        QTEST(QFileInfo(ports.device(number)).fileName(), "device");
    }

    /// An adapter that comes after the program has started, is chosen, and comes back under another number.
    void adapterThatComesBack()
    {
        Sockets here;
        QSignalSpy back(&here.link, &LinkMonitor::portBack), lost(&here.link, &LinkMonitor::portLost);
        connect(&here.link, &LinkMonitor::portChosen, this,
                [&](int port) { QVERIFY(here.ports.keepDevice(port).ok()); });
        here.link.ApriCollegamento();
        QCOMPARE(here.link.link(), LinkMonitor::Link::PortNotAvailable);
        auto adapter = here.plug(u"ttyUSB0"_s);
        here.pass(5000);
        QCOMPARE(back.size(), 1);
        here.link.suspend();
        here.link.objImpCom_Chiudi(5);
        QVERIFY(here.serial.portOpen());

        adapter.reset();
        QTRY_COMPARE(lost.size(), 1);
        PseudoTerminal other(here.at(u"ttyUSB0"_s));
        QVERIFY(other.open().ok());
        adapter = here.plug(u"ttyUSB1"_s);
        here.pass(5000);
        QCOMPARE(back.size(), 2);
        QCOMPARE(here.ports.device(5), adapter->device());
    }

    /// A link that somebody has made stays, and so does a port without a name that lasts.
    void linksThatStand()
    {
        Sockets here;
        QVERIFY(QFile::link(u"nowhere"_s, here.test.directory.filePath(u"Porte/com6"_s)));
        const auto adapter = here.plug(u"ttyUSB1"_s);
        here.test.write(u"dev/ttyUSB0"_s, {});
        for (int port = 5; port <= 8; ++port)
            QVERIFY(here.ports.keepDevice(port).ok());
        QCOMPARE(QDir(here.test.directory.filePath(u"Porte"_s)).entryList(QDir::Files | QDir::System),
                 QStringList({u"com6"_s, u"COM7"_s}));
    }
};

QTEST_GUILESS_MAIN(TestPorts)
#include "tst_ports.moc"
