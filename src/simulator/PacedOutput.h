#pragma once

#include "platform/Clock.h"
#include "simulator/Pace.h"

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <functional>

namespace simulator {

/// The one wire from the interface to the PC: what is queued leaves in order, no faster than the line carries it, and
/// nothing is lost when the other side does not take it for a while.
class PacedOutput : public QObject
{
    Q_OBJECT

public:
    /// Takes bytes from the front of what it is given. @return how many; when not all, resume() is called later
    using Sink = std::function<qsizetype(QByteArrayView)>;

    /// @param bytesPerSecond  0 = as fast as the sink takes them
    /// @param clock           must outlive this object
    PacedOutput(double bytesPerSecond, const Clock &clock, Sink sink, QObject *parent = nullptr);

    void queue(const QByteArray &bytes);
    /// Drops what has not left.
    void clear();
    /// The sink has room again.
    void resume();

    /// Bytes that have not left.
    qsizetype waiting() const { return m_bytes.size() - m_left; }
    /// Milliseconds that the line needs for what is waiting.
    int millisecondsToGo() const;

private:
    void send();

    double m_bytesPerSecond;
    const Clock &m_clock;
    Sink m_sink;
    Pace m_pace;
    QByteArray m_bytes;
    qsizetype m_left = 0; ///< bytes at the front of m_bytes that have left
    bool m_stalled = false;
    QTimer m_timer;
};

} // namespace simulator
