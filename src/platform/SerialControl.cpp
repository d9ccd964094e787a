#include "platform/SerialControl.h"

#include "platform/SerialTransport.h"

namespace {

/// Hours of a busy line; past it the device keeps the rest until there is room.
constexpr qsizetype bufferLimit = 1 << 20;
constexpr qint64 turnMilliseconds = 20;
constexpr int deliveriesBetweenLooksAtTheClock = 32;

} // namespace

SerialControl::SerialControl(const SerialPorts &ports, QObject *parent)
    : SerialControl(ports, std::make_unique<SerialTransport>(), parent)
{
}

SerialControl::SerialControl(const SerialPorts &ports, std::unique_ptr<Transport> transport, QObject *parent)
    : QObject(parent), m_ports(ports), m_transport(std::move(transport))
{
    m_resume.setSingleShot(true);
    m_resume.setInterval(0);
    connect(&m_resume, &QTimer::timeout, this, &SerialControl::read);
    connect(m_transport.get(), &Transport::readyRead, this, &SerialControl::read);
    connect(m_transport.get(), &Transport::lost, this, &SerialControl::lose);
}

Result<void> SerialControl::setPortOpen(bool open)
{
    if (!open) {
        if (m_transport->isOpen()) {
            receive(m_transport->read());
            m_transport->close();
            Q_EMIT openChanged(false);
        }
        return {};
    }
    const QString device = m_ports.device(m_commPort);
    if (Result<void> opened = m_transport->open(device); !opened)
        return opened;
    m_transport->setEnableLine(m_rts);
    if (!m_transport->isOpen())
        return Fault{FaultCode::InputOutput, device};
    Q_EMIT openChanged(true);
    return {};
}

void SerialControl::setRThreshold(int threshold)
{
    m_rThreshold = threshold;
    // Never from inside the caller: he may be in the middle of a line.
    if (m_rThreshold > 0 && !m_delivering && waiting() > 0)
        m_resume.start();
}

void SerialControl::setRTSEnable(bool enable)
{
    m_rts = enable;
    if (m_transport->isOpen())
        m_transport->setEnableLine(enable);
}

QByteArrayView SerialControl::input()
{
    const qsizetype count = m_inputLen == 0 ? waiting() : qMin<qsizetype>(m_inputLen, waiting());
    const QByteArrayView characters = QByteArrayView(m_buffer).sliced(m_taken, count);
    m_taken += count;
    return characters;
}

void SerialControl::read()
{
    receive(m_transport->isOpen() && waiting() < bufferLimit ? m_transport->read() : QByteArray());
}

void SerialControl::receive(const QByteArray &characters)
{
    if (m_taken > 0 && !m_delivering) {
        m_buffer.remove(0, m_taken);
        m_taken = 0;
    }
    m_buffer.append(characters);
    deliver();
}

void SerialControl::deliverAll()
{
    receive(m_transport->isOpen() ? m_transport->read() : QByteArray());
    while (m_rThreshold > 0 && m_resume.isActive()) {
        m_resume.stop();
        receive(m_transport->isOpen() ? m_transport->read() : QByteArray());
    }
}

void SerialControl::deliver()
{
    if (m_delivering)
        return;
    m_delivering = true;
    QElapsedTimer turn;
    turn.start();
    int deliveries = 0;
    while (m_rThreshold > 0 && waiting() > 0) {
        const qsizetype taken = m_taken;
        m_commEvent = Received;
        Q_EMIT OnComm();
        if (m_taken == taken)
            break;
        if (++deliveries % deliveriesBetweenLooksAtTheClock == 0 && turn.elapsed() >= turnMilliseconds) {
            m_resume.start();
            break;
        }
    }
    m_delivering = false;
    // Room has been made: what the library holds beyond the buffer's limit is fetched without a signal of its own.
    if (m_transport->isOpen() && m_transport->hasMore() && waiting() < bufferLimit)
        m_resume.start();
}

void SerialControl::lose(const QByteArray &last)
{
    Q_EMIT openChanged(false);
    receive(last);
    m_commEvent = Lost;
    Q_EMIT OnComm();
}
