#include "events/EventCounts.h"

#include <algorithm>

namespace {

constexpr int hoursOfADay = 24;
constexpr qsizetype mostTakenBack = 2000;

} // namespace

void EventCounts::begin(QDate firstDay, QDate lastDay)
{
    *this = {};
    m_firstDay = firstDay;
    m_lastDay = lastDay;
    m_isByHour = firstDay.daysTo(lastDay) <= 1;
}

void EventCounts::add(QDate day, int hour, bool isEnabled)
{
    const qint64 days = m_firstDay.daysTo(day);
    const qint64 unit = m_isByHour ? days * hoursOfADay + std::clamp(hour, 0, hoursOfADay - 1) : days;
    Count &count = m_counts[unit];
    if (count.firstRow < 0)
        count.firstRow = m_rows;
    ++(isEnabled ? count.enabled : count.disabled);
    ++m_rows;
    if (m_latest.size() == 2 * mostTakenBack)
        m_latest.remove(0, mostTakenBack);
    m_latest.append({unit, isEnabled});
}

void EventCounts::keepFirst(qsizetype rows)
{
    for (; m_rows > rows && !m_latest.isEmpty(); --m_rows) {
        const auto [unit, isEnabled] = m_latest.takeLast();
        Count &count = m_counts[unit];
        --(isEnabled ? count.enabled : count.disabled);
        if (count.enabled + count.disabled == 0)
            m_counts.remove(unit);
    }
}

QList<EventCounts::Bar> EventCounts::bars(int most) const
{
    if (m_counts.isEmpty() || most < 1)
        return {};
    const qint64 first = m_isByHour ? 0 : m_counts.firstKey();
    const qint64 last = m_isByHour ? (m_firstDay.daysTo(m_lastDay) + 1) * hoursOfADay - 1 : m_counts.lastKey();
    const qint64 together = (last - first) / most + 1;
    QList<Bar> bars;
    for (qint64 unit = first; unit <= last; unit += together)
        bars.append({moment(unit), moment(std::min(unit + together - 1, last))});
    for (auto count = m_counts.begin(); count != m_counts.end(); ++count) {
        Bar &bar = bars[(count.key() - first) / together];
        bar.enabled += count->enabled;
        bar.disabled += count->disabled;
        if (bar.firstRow < 0 || count->firstRow < bar.firstRow)
            bar.firstRow = count->firstRow;
    }
    return bars;
}

QDateTime EventCounts::moment(qint64 unit) const
{
    const qint64 hours = m_isByHour ? unit : unit * hoursOfADay;
    // As it was stamped, on a day that has no such hour too: no local time.
    return {m_firstDay.addDays(hours / hoursOfADay), QTime(static_cast<int>(hours % hoursOfADay), 0), Qt::UTC};
}
