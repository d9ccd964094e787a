#include "link/PortTest.h"

#include "link/ConfigQuery.h"

namespace {

constexpr int questions = 4;
constexpr qint64 questionMilliseconds = 1000;
constexpr qsizetype nameLength = 6; ///< of the banner's first word, which is proof enough

} // namespace

PortTest::PortTest(const SerialPorts &ports, const Clock &clock, QObject *parent)
    : PortTest(std::make_unique<SerialControl>(ports), ports, clock, parent)
{
}

PortTest::PortTest(std::unique_ptr<SerialControl> control, const SerialPorts &ports, const Clock &clock,
                   QObject *parent)
    : QObject(parent), m_ports(ports), m_clock(clock), m_provaCom(std::move(control))
{
    m_provaCom->setRTSEnable(false);
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &PortTest::wake);
    connect(m_provaCom.get(), &SerialControl::OnComm, this, &PortTest::ProvaCom_OnComm);
}

QList<int> PortTest::available()
{
    stop();
    QList<int> ports;
    for (int port = 1; port <= Ports; ++port) {
        m_provaCom->setCommPort(port);
        if (m_provaCom->setPortOpen(true) && m_provaCom->setPortOpen(false))
            ports.append(port);
    }
    return ports;
}

void PortTest::test(int port)
{
    stop();
    m_provaCom->setCommPort(port);
    if (!m_provaCom->setPortOpen(true)) {
        Q_EMIT tested(false);
        return;
    }
    m_testing = true;
    m_asked = 0;
    dropInput();
    m_provaCom->setRThreshold(1);
    ask();
}

void PortTest::stop()
{
    m_testing = false;
    m_timer.stop();
    m_provaCom->setRThreshold(0);
    (void)m_provaCom->setPortOpen(false);
}

void PortTest::ask()
{
    dropInput();
    m_reply.clear();
    ++m_asked;
    m_deadline = m_clock.monotonic() + questionMilliseconds;
    arm();
    // A port that fails here has been closed and has ended the test; one that is merely full stays silent.
    (void)m_provaCom->output(ConfigQuery::Request);
}

void PortTest::arm()
{
    m_timer.start(static_cast<int>(qMax<qint64>(0, m_deadline - m_clock.monotonic())));
}

void PortTest::wake()
{
    if (!m_testing)
        return;
    // An attempt that began with something else has its second too: a record that came in between would else use up
    // all attempts while it arrives, and leave each question in the middle of the answer before it.
    if (m_clock.monotonic() < m_deadline)
        arm();
    else if (m_asked < questions)
        ask();
    else
        finish(false);
}

void PortTest::ProvaCom_OnComm()
{
    if (!m_testing)
        return;
    if (m_provaCom->commEvent() == SerialControl::Lost) {
        finish(false);
        return;
    }
    const QByteArrayView input = m_provaCom->input();
    m_reply.append(input.first(qMin(input.size(), nameLength - m_reply.size())));
    if (m_reply.size() == nameLength && interfaceBanner().startsWith(m_reply))
        finish(true);
}

void PortTest::finish(bool found)
{
    stop();
    Q_EMIT tested(found);
}

void PortTest::dropInput()
{
    while (!m_provaCom->input().isEmpty()) {
    }
}
