#include "simulator/PacedOutput.h"

#include <algorithm>
#include <utility>

namespace simulator {

namespace {

constexpr qsizetype compactFrom = 1 << 16;

} // namespace

PacedOutput::PacedOutput(double bytesPerSecond, const Clock &clock, Sink sink, QObject *parent)
    : QObject(parent), m_bytesPerSecond(bytesPerSecond), m_clock(clock), m_sink(std::move(sink)), m_pace(bytesPerSecond)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(TickMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &PacedOutput::send);
}

void PacedOutput::queue(const QByteArray &bytes)
{
    m_bytes += bytes;
    if (m_stalled)
        return;
    if (m_bytesPerSecond <= 0) {
        send();
    } else if (!m_timer.isActive()) {
        m_pace.start(m_clock.monotonic());
        m_timer.start();
    }
}

void PacedOutput::clear()
{
    m_bytes.clear();
    m_left = 0;
    m_stalled = false;
    m_timer.stop();
}

void PacedOutput::resume()
{
    if (!std::exchange(m_stalled, false))
        return;
    if (m_bytesPerSecond <= 0) {
        send();
        return;
    }
    // The time of the stall is not made up for: the line would carry more than it can.
    m_pace.start(m_clock.monotonic());
    m_timer.start();
}

int PacedOutput::millisecondsToGo() const
{
    return m_bytesPerSecond <= 0 ? 0 : static_cast<int>(static_cast<double>(waiting()) * 1000 / m_bytesPerSecond);
}

void PacedOutput::send()
{
    qsizetype due = waiting();
    if (m_bytesPerSecond > 0)
        due = std::min<qsizetype>(due, m_pace.due(m_clock.monotonic()));
    if (due <= 0)
        return;
    const qsizetype taken = m_sink(QByteArrayView(m_bytes).sliced(m_left, due));
    m_left += taken;
    m_pace.take(taken);
    m_stalled = taken < due;
    if (waiting() == 0) {
        clear();
        return;
    }
    if (m_stalled)
        m_timer.stop();
    if (m_left >= compactFrom) {
        m_bytes.remove(0, m_left);
        m_left = 0;
    }
}

} // namespace simulator
