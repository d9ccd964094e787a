#include "journal/CoverageReading.h"

#include "texts/DateTimeText.h"

namespace {

/// Rows that are walked over in one go: less than a millisecond.
constexpr qsizetype rowsWalkedAtOnce = 2000;

bool isWholeDay(const DailyHours &hours)
{
    return hours.from == QTime(0, 0) && hours.to >= QTime(23, 59, 59);
}

/// Without the days that lie ahead, of which there may be millions.
DailyHours upTo(DailyHours hours, qint64 until)
{
    hours.lastDay = qMin(hours.lastDay, QDateTime::fromSecsSinceEpoch(until).date());
    return hours;
}

} // namespace

QString DailyHours::text() const
{
    return QStringLiteral("%1 - %2, %3 - %4")
        .arg(DataBarre(firstDay), DataBarre(lastDay), OraTesto(from), OraTesto(to));
}

CoverageReading::CoverageReading(ArchiveStore &archives, const DailyHours &hours, qint64 until,
                                 std::optional<Moment> alive)
    : m_hours(upTo(hours, until)),
      m_until(until),
      m_alive(alive),
      m_reading(archives, m_hours.firstDay.year(), m_hours.lastDay.year()),
      m_day(m_hours.firstDay)
{
}

Result<bool> CoverageReading::step(const QDeadlineTimer &until)
{
    while (m_stage != Stage::Ended) {
        work(until);
        if (until.hasExpired())
            break;
    }
    return m_stage == Stage::Ended;
}

void CoverageReading::work(const QDeadlineTimer &until)
{
    switch (m_stage) {
    case Stage::Read:
        if (const Result<bool> read = m_reading.step(until); !read || read.value())
            m_stage = Stage::Walk;
        break;
    case Stage::Walk:
        walkOn();
        break;
    case Stage::Cut:
        cutDay();
        break;
    case Stage::Ended:
        break;
    }
}

void CoverageReading::walkOn()
{
    const QList<JournalRow> &all = rows();
    for (const qsizetype end = qMin(all.size(), m_next + rowsWalkedAtOnce); m_next < end; ++m_next)
        m_walk.take(all[m_next]);
    if (m_next < all.size())
        return;
    const std::optional<Moment> &told = m_reading.content().alive;
    m_walk.end(m_alive ? m_alive : told, m_until);
    const SecondsRange range = rangeOf(m_hours.firstDay, m_hours.lastDay);
    m_whole = coverage(m_walk, range.from, range.to);
    m_stage = Stage::Cut;
}

SecondsRange CoverageReading::rangeOf(QDate first, QDate last) const
{
    SecondsRange range = secondsOf(QDateTime(first, m_hours.from), QDateTime(last, m_hours.to));
    range.to = qMin(range.to, m_until);
    return range;
}

/// Takes what the hours of a day are covered with; the hours of whole days are one range.
void CoverageReading::cutDay()
{
    if (isWholeDay(m_hours)) {
        m_spans = std::move(m_whole);
        m_stage = Stage::Ended;
        return;
    }
    if (m_day > m_hours.lastDay || m_hours.from > m_hours.to) {
        m_stage = Stage::Ended;
        return;
    }
    const SecondsRange range = rangeOf(m_day, m_day);
    while (m_first < m_whole.size() && m_whole[m_first].to <= range.from)
        ++m_first;
    for (qsizetype i = m_first; i < m_whole.size() && m_whole[i].from < range.to; ++i)
        m_spans.append({qMax(m_whole[i].from, range.from), qMin(m_whole[i].to, range.to), m_whole[i].state});
    m_day = m_day.addDays(1);
}
