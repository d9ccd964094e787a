#pragma once

#include "platform/Transport.h"

#include <QSerialPort>

/// A serial port at 9600,N,8,1; the enable line is RTS.
class SerialTransport : public Transport
{
    Q_OBJECT

public:
    explicit SerialTransport(QObject *parent = nullptr);
    ~SerialTransport() override;

    Result<void> open(const QString &device) override;
    void close() override { m_port.close(); }
    bool isOpen() const override { return m_port.isOpen(); }
    QString deviceName() const override { return m_port.portName(); }
    QByteArray read() override { return m_port.readAll(); }
    bool hasMore() const override { return m_port.bytesAvailable() > 0; }
    Result<void> write(const QByteArray &bytes) override;
    void setEnableLine(bool asserted) override { m_port.setRequestToSend(asserted); }
    std::optional<bool> enableLine() override;

private:
    void failed(QSerialPort::SerialPortError error);

    QSerialPort m_port;
};
