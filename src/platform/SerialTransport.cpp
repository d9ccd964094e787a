#include "platform/SerialTransport.h"

#include "platform/SerialPorts.h"

namespace {

constexpr qint64 systemBuffer = 1 << 16;

} // namespace

SerialTransport::SerialTransport(QObject *parent) : Transport(parent)
{
    m_port.setReadBufferSize(systemBuffer);
    connect(&m_port, &QSerialPort::readyRead, this, &Transport::readyRead);
    connect(&m_port, &QSerialPort::errorOccurred, this, &SerialTransport::failed);
}

SerialTransport::~SerialTransport()
{
    // The port closes as a member; what it still says then finds no handler.
    m_port.disconnect(this);
}

Result<void> SerialTransport::open(const QString &device)
{
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
    if (m_port.open(QIODevice::ReadWrite))
        return {};
    switch (m_port.error()) {
    case QSerialPort::DeviceNotFoundError:
        return Fault{FaultCode::NotFound, device};
    case QSerialPort::PermissionError:
        return Fault{FaultCode::AlreadyInUse, device};
    default:
        return Fault{FaultCode::InputOutput, device};
    }
}

Result<void> SerialTransport::write(const QByteArray &bytes)
{
    if (!m_port.isOpen())
        return Fault{FaultCode::NotOpen, m_port.portName()};
    if (m_port.write(bytes) != bytes.size())
        return Fault{FaultCode::InputOutput, m_port.portName()};
    return {};
}

std::optional<bool> SerialTransport::enableLine()
{
    if (!m_port.isOpen())
        return std::nullopt;
    m_port.clearError();
    const bool level = m_port.isRequestToSend();
    return m_port.error() == QSerialPort::NoError ? std::optional<bool>(level) : std::nullopt;
}

void SerialTransport::failed(QSerialPort::SerialPortError error)
{
    const bool gone = error == QSerialPort::ResourceError || error == QSerialPort::ReadError ||
                      error == QSerialPort::WriteError || error == QSerialPort::DeviceNotFoundError;
    // Errors of opening are returned by the call itself, and missing modem lines are no error.
    if (!gone || !m_port.isOpen())
        return;
    const QByteArray last = m_port.readAll();
    // Closed at once: a port that was unplugged repeats its error as fast as the processor allows.
    m_port.close();
    Q_EMIT lost(last);
}
