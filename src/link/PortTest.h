#pragma once

#include "platform/Clock.h"
#include "platform/SerialControl.h"

#include <QList>

#include <memory>

/// Finds out which ports can be used, and whether the interface answers on one of them, on a serial control of its own.
///
/// A port that anybody uses, this program included, counts as not available and is left alone. The RTS line is never
/// asserted: an interface that is only looked at stays enabled.
class PortTest : public QObject
{
    Q_OBJECT

public:
    static constexpr int Ports = 8;

    /// All must outlive this object.
    PortTest(const SerialPorts &ports, const Clock &clock, QObject *parent = nullptr);
    /// The same on a given control.
    PortTest(std::unique_ptr<SerialControl> control, const SerialPorts &ports, const Clock &clock,
             QObject *parent = nullptr);

    /// Numbers of the ports, 1 to Ports, that can be opened now, ascending. Ends a running test.
    QList<int> available();
    /// What stands behind the port COM@p port.
    SerialDevice describe(int port) const { return m_ports.describe(port); }

    /// Asks on COM@p port for the interface, four times and a second each. tested() follows, within this call when the
    /// port cannot be opened.
    void test(int port);
    /// Ends a running test without tested(). No port is open afterwards.
    void stop();

    /// Does what is due by the clock; its own timer calls it in time.
    void wake();

Q_SIGNALS:
    /// @param found  the interface has answered. The port is closed again.
    void tested(bool found);

private:
    void ProvaCom_OnComm();
    void ask();
    void arm();
    void finish(bool found);
    void dropInput();

    const SerialPorts &m_ports;
    const Clock &m_clock;
    std::unique_ptr<SerialControl> m_provaCom;
    QTimer m_timer;
    QByteArray m_reply;
    int m_asked = 0; ///< questions sent in this test
    qint64 m_deadline = 0;
    bool m_testing = false;
};
