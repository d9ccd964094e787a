#pragma once

#include "link/LineReader.h"
#include "platform/PseudoTerminal.h"
#include "support/Fixtures.h"

/// A line without a device: the test says what comes in and reads what goes out.
struct FakeTransport : Transport {
    QByteArray coming;
    QByteArray sent;

    Result<void> open(const QString &) override { return {}; }
    void close() override {}
    bool isOpen() const override { return true; }
    QString deviceName() const override { return {}; }
    QByteArray read() override { return std::exchange(coming, {}); }
    bool hasMore() const override { return !coming.isEmpty(); }
    Result<void> write(const QByteArray &bytes) override
    {
        sent += bytes;
        return {};
    }
    void setEnableLine(bool) override {}
    std::optional<bool> enableLine() override { return {}; }
};

struct FakeSerial : SerialControl {
    explicit FakeSerial(const SerialPorts &ports) : FakeSerial(ports, new FakeTransport) {}
    FakeSerial(const SerialPorts &ports, FakeTransport *transport)
        : SerialControl(ports, std::unique_ptr<Transport>(transport)), line(*transport)
    {
    }
    void receive(const QByteArray &characters)
    {
        line.coming += characters;
        Q_EMIT line.readyRead();
    }

    FakeTransport &line;
    QByteArray &sent = line.sent;
};

/// Everything between a serial control and the archive of the day.
template<class Serial>
struct Road {
    explicit Road(const QByteArray &settings)
    {
        test.addUsers({{u"1"_s, u"TX"_s}, {u"2"_s, u"DKS"_s}});
        // Of two lines the first counts.
        test.write(u"Impost.stp"_s, settings + "NUMEVOD=25\r\nCHECK=0\r\nPRN=-1\r\n");
        if (!config.read(2, notices) || !users.open())
            qFatal("the road cannot be laid");
        log.open();
        QObject::connect(&road, &EventRoad::recordReceived, &link, &LinkMonitor::recordReceived);
    }
    /// Lets @p milliseconds pass, and that as often as said.
    void pass(int milliseconds, int times = 1)
    {
        for (int i = 0; i < times; ++i) {
            clock.milliseconds += milliseconds;
            link.wake();
        }
    }

    TestFolder test;
    FakeClock clock;
    FakePrinters printers;
    Notices notices;
    Settings config{test.folder, printers};
    SerialPorts ports{test.folder, {test.directory.filePath(u"dev"_s), test.directory.filePath(u"sys"_s)}};
    Serial serial{ports};
    LinkMonitor link{serial, config, clock};
    UserDirectory users{test.archives, ArchiveName::UsersSnapshot};
    EventLog log{test.archives, clock, notices};
    EventRoad road{users, log, clock};
    LineReader reader{serial, link, road};
};

/// The same with a pseudo-terminal on port 7, which stands for no device when it is closed.
struct TestLine : Road<SerialControl> {
    explicit TestLine(const QByteArray &settings = "COM=7\r\nLINGUA=2\r\n") : Road(settings)
    {
        if (!interface.open())
            qFatal("no pseudo-terminal");
        QObject::connect(&interface, &PseudoTerminal::readyRead, [this] { received += interface.read(); });
    }

    PseudoTerminal interface {
        test.directory.filePath(u"Porte/COM7"_s)
    };
    QByteArray received; ///< what the supervisor has sent
};
