#include "simulator/Script.h"

#include "simulator/Pace.h"

namespace simulator {

namespace {

/// For a reader that is slower than the line.
constexpr int patienceMilliseconds = 1000;

bool endsSending(const Command &command)
{
    return std::holds_alternative<SwitchOff>(command) || std::holds_alternative<Unplug>(command) ||
           std::holds_alternative<Quit>(command);
}

} // namespace

Script::Script(SimulatedInterface &interface, const Clock &clock, QObject *parent)
    : QObject(parent), m_interface(interface), m_clock(clock)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Script::step);
}

void Script::setPace(double perSecond)
{
    m_pace.emplace(perSecond);
    m_pace->start(m_clock.monotonic());
}

void Script::append(const Command &command)
{
    m_commands.enqueue(command);
    if (!m_timer.isActive())
        step();
}

void Script::start(const QList<Command> &commands)
{
    m_commands.append(commands);
    m_round = commands.size();
    m_timer.start(0);
}

void Script::step()
{
    while (!m_commands.isEmpty() && !m_timer.isActive()) {
        if (mustWait(m_commands.head())) {
            m_timer.start(TickMilliseconds);
            return;
        }
        const Command command = m_commands.dequeue();
        if (m_repeating)
            m_commands.enqueue(command);
        if (const auto *wait = std::get_if<Wait>(&command)) {
            m_timer.start(wait->milliseconds);
            if (m_pace)
                m_pace->start(m_clock.monotonic() + wait->milliseconds);
        } else {
            m_interface.execute(command);
        }
        // A round that takes no time of its own would never let go.
        if (m_repeating && ++m_done % m_round == 0 && !m_timer.isActive())
            m_timer.start(TickMilliseconds);
    }
}

bool Script::mustWait(const Command &command)
{
    const bool isSending = sendsBytes(command);
    const bool takesTime = isSending || std::holds_alternative<Wait>(command);
    if (m_needsProgram && takesTime && m_interface.isSending() && !m_interface.hasProgram()) {
        if (m_pace)
            m_pace->start(m_clock.monotonic());
        return true;
    }
    if (endsSending(command))
        return !mayEnd(command);
    if (!isSending)
        return false;
    if (m_interface.isBehind())
        return true;
    if (m_pace) {
        if (m_pace->due(m_clock.monotonic()) < 1)
            return true;
        m_pace->take(1);
    }
    return false;
}

bool Script::mayEnd(const Command &command)
{
    const qint64 now = m_clock.monotonic();
    if (!m_deadline)
        m_deadline = now + m_interface.millisecondsToGo() + patienceMilliseconds;
    // Without power the line stays, and with it what has left the interface.
    const bool hasEnded = std::holds_alternative<SwitchOff>(command) ? m_interface.isIdle() : m_interface.isSettled();
    if (!hasEnded && now < *m_deadline)
        return false;
    m_deadline.reset();
    if (m_pace)
        m_pace->start(now);
    return true;
}

} // namespace simulator
