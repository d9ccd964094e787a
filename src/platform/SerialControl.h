#pragma once

#include "platform/SerialPorts.h"
#include "platform/Transport.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

/// One serial port as the program sees it: text comes in one character a notification, in the order it arrived.
///
/// What arrives is first taken into a buffer of the control's own, and notifications are made from there: with
/// RThreshold 0 nothing is notified and nothing is lost, and setting it back to 1 notifies for what is waiting.
/// Received characters outlive the port: what came before it was closed or pulled out is still delivered. Notifications
/// never nest, and after 20 ms of them the rest waits for the next turn of the event loop.
class SerialControl : public QObject
{
    Q_OBJECT

public:
    enum Event {
        Received = 2, ///< a character can be read from input()
        Lost = 3,     ///< the port failed or was pulled out, and has been closed
    };

    /// @param ports  must outlive this object
    explicit SerialControl(const SerialPorts &ports, QObject *parent = nullptr);
    /// @param transport  carries the bytes instead of a serial port
    SerialControl(const SerialPorts &ports, std::unique_ptr<Transport> transport, QObject *parent = nullptr);

    /// Number of the port; takes effect at the next opening.
    void setCommPort(int number) { m_commPort = number; }

    bool portOpen() const { return m_transport->isOpen(); }
    /// Opens the port at 9600,N,8,1, or closes it.
    /// @return NotFound, AccessDenied or AlreadyInUse (also when it is open already), InputOutput for a device that is
    ///         no serial port
    Result<void> setPortOpen(bool open);

    /// Most characters one input() returns; 0 = all that are waiting.
    void setInputLen(int length) { m_inputLen = length; }
    /// 0 = no notifications, else one for each character received, beginning in the next turn of the event loop with
    /// those that are waiting.
    void setRThreshold(int threshold);
    /// Kept for the interface's protocol of use; the program waits for no transmission to end.
    void setSThreshold(int threshold) { m_sThreshold = threshold; }
    int sThreshold() const { return m_sThreshold; }

    /// Notifies for everything that has come, however long it takes: the program ends.
    void deliverAll();

    /// State wanted for the RTS line: true asserts it. Kept while the port is closed and told to the device as the
    /// first thing after opening, because opening a port asserts the line by itself.
    void setRTSEnable(bool enable);
    /// What the device says of its RTS line; nothing while the port is closed or has no modem lines.
    std::optional<bool> rtsLevel() { return m_transport->enableLine(); }

    /// Next characters received, empty when none is waiting. The view holds until the next call of this object.
    QByteArrayView input();
    /// Sends @p bytes without waiting. @return NotOpen when the port is closed
    Result<void> output(const QByteArray &bytes) { return m_transport->write(bytes); }
    /// What the present notification is about.
    Event commEvent() const { return m_commEvent; }

Q_SIGNALS:
    void OnComm();
    /// The port has been opened or closed, by whatever it was.
    void openChanged(bool isOpen);

private:
    void read();
    void receive(const QByteArray &characters);
    void deliver();
    void lose(const QByteArray &last);
    qsizetype waiting() const { return m_buffer.size() - m_taken; }

    const SerialPorts &m_ports;
    const std::unique_ptr<Transport> m_transport;
    QByteArray m_buffer;
    qsizetype m_taken = 0; ///< characters at the front of m_buffer that have been read
    QTimer m_resume;
    int m_commPort = 0;
    int m_inputLen = 0;
    int m_rThreshold = 0;
    int m_sThreshold = 0;
    bool m_rts = false;
    bool m_delivering = false;
    Event m_commEvent = Received;
};
