#include "platform/SerialControl.h"

namespace {

/// Hours of a busy line; past it the device keeps the rest until there is room.
constexpr qsizetype bufferLimit = 1 << 20;
constexpr qint64 systemBuffer = 1 << 16;
constexpr qint64 turnMilliseconds = 20;
constexpr int deliveriesBetweenLooksAtTheClock = 32;

} // namespace

SerialControl::SerialControl(const SerialPorts &ports, QObject *parent) : QObject(parent), m_ports(ports)
{
    m_resume.setSingleShot(true);
    m_resume.setInterval(0);
    m_port.setReadBufferSize(systemBuffer);
    connect(&m_resume, &QTimer::timeout, this, &SerialControl::read);
    connect(&m_port, &QSerialPort::readyRead, this, &SerialControl::read);
    connect(&m_port, &QSerialPort::errorOccurred, this, &SerialControl::failed);
}

SerialControl::~SerialControl()
{
    // The port closes as a member; what it still says then finds no handler.
    m_port.disconnect(this);
}

Result<void> SerialControl::setPortOpen(bool open)
{
    if (!open) {
        if (m_port.isOpen()) {
            receive(m_port.readAll());
            m_port.close();
        }
        return {};
    }
    const QString device = m_ports.device(m_commPort);
    if (m_port.isOpen())
        return Fault{FaultCode::AlreadyInUse, device};
    if (Result<void> isFree = checkDeviceIsFree(device); !isFree)
        return isFree;

    m_port.setPortName(device);
    m_port.setBaudRate(QSerialPort::Baud9600);
    m_port.setDataBits(QSerialPort::Data8);
    m_port.setParity(QSerialPort::NoParity);
    m_port.setStopBits(QSerialPort::OneStop);
    m_port.setFlowControl(QSerialPort::NoFlowControl);
    if (!m_port.open(QIODevice::ReadWrite)) {
        switch (m_port.error()) {
        case QSerialPort::DeviceNotFoundError:
            return Fault{FaultCode::NotFound, device};
        case QSerialPort::PermissionError:
            return Fault{FaultCode::AlreadyInUse, device};
        default:
            return Fault{FaultCode::InputOutput, device};
        }
    }
    tellRts(m_rts);
    if (!m_port.isOpen())
        return Fault{FaultCode::InputOutput, device};
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
    if (m_port.isOpen())
        tellRts(enable);
}

std::optional<bool> SerialControl::rtsLevel()
{
    if (!m_port.isOpen())
        return std::nullopt;
    m_port.clearError();
    const bool level = m_port.isRequestToSend();
    return m_port.error() == QSerialPort::NoError ? std::optional<bool>(level) : std::nullopt;
}

void SerialControl::tellRts(bool asserted)
{
    m_port.setRequestToSend(asserted);
}

QByteArrayView SerialControl::input()
{
    const qsizetype count = m_inputLen == 0 ? waiting() : qMin<qsizetype>(m_inputLen, waiting());
    const QByteArrayView characters = QByteArrayView(m_buffer).sliced(m_taken, count);
    m_taken += count;
    return characters;
}

Result<void> SerialControl::output(const QByteArray &bytes)
{
    if (!m_port.isOpen())
        return Fault{FaultCode::NotOpen, m_port.portName()};
    if (m_port.write(bytes) != bytes.size())
        return Fault{FaultCode::InputOutput, m_port.portName()};
    return {};
}

void SerialControl::read()
{
    receive(m_port.isOpen() && waiting() < bufferLimit ? m_port.readAll() : QByteArray());
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
    receive(m_port.isOpen() ? m_port.readAll() : QByteArray());
    while (m_rThreshold > 0 && m_resume.isActive()) {
        m_resume.stop();
        receive(m_port.isOpen() ? m_port.readAll() : QByteArray());
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
    if (m_port.isOpen() && m_port.bytesAvailable() > 0 && waiting() < bufferLimit)
        m_resume.start();
}

void SerialControl::failed(QSerialPort::SerialPortError error)
{
    const bool gone = error == QSerialPort::ResourceError || error == QSerialPort::ReadError ||
                      error == QSerialPort::WriteError || error == QSerialPort::DeviceNotFoundError;
    // Errors of opening are returned by the call itself, and missing modem lines are no error.
    if (!gone || !m_port.isOpen())
        return;
    const QByteArray last = m_port.readAll();
    // Closed at once: a port that was unplugged repeats its error as fast as the processor allows.
    m_port.close();
    receive(last);
    m_commEvent = Lost;
    Q_EMIT OnComm();
}
