#include "simulator/Traffic.h"

#include <algorithm>
#include <utility>

namespace simulator {

Traffic::Traffic(const Plan &plan, SimulatedInterface &interface, const Clock &clock, QObject *parent)
    : QObject(parent), m_plan(plan), m_interface(interface), m_clock(clock), m_pace(plan.perSecond)
{
    m_pace.start(m_clock.monotonic());
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Traffic::tick);
    if (!isFinished())
        m_timer.start(TickMilliseconds);
}

bool Traffic::isFinished() const
{
    return m_plan.burst == 0 && (m_plan.perSecond <= 0 || (m_plan.count && *m_plan.count == 0));
}

void Traffic::tick()
{
    const qint64 now = m_clock.monotonic();
    if (!m_interface.isSending() || !m_interface.hasProgram()) {
        m_pace.start(now);
        return;
    }
    if (const int burst = std::exchange(m_plan.burst, 0); burst > 0)
        m_interface.execute(SendBurst{burst});

    qint64 due = m_plan.perSecond > 0 ? m_pace.due(now) : 0;
    if (m_plan.count)
        due = std::min(due, *m_plan.count);
    for (; due > 0 && !m_interface.isBehind(); --due) {
        m_interface.sendNextRecord();
        m_pace.take(1);
        if (m_plan.count)
            --*m_plan.count;
    }
    if (isFinished())
        m_timer.stop();
}

} // namespace simulator
