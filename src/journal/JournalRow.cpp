#include "journal/JournalRow.h"

#include "texts/DateTimeText.h"

namespace {

constexpr qint64 daySeconds = 86'400;
constexpr qint64 firstDay = 2'440'588; ///< 1970-01-01 as a Julian day
constexpr int secondsPerMinute = 60;
constexpr qint64 mostOffset = 14 * 60;

} // namespace

Moment momentOf(const QDateTime &time)
{
    return {time.toSecsSinceEpoch(), time.offsetFromUtc() / secondsPerMinute};
}

QDateTime localTime(const Moment &moment)
{
    return QDateTime::fromSecsSinceEpoch(moment.seconds, Qt::OffsetFromUTC, moment.offset * secondsPerMinute);
}

std::optional<Moment> momentOf(const QString &date, const QString &time, qint64 offset)
{
    const QDate day = dayOfFile(date);
    const QTime clock = timeOf(time);
    if (!day.isValid() || !clock.isValid() || qAbs(offset) > mostOffset)
        return {};
    // By hand: a year has so many rows that making a date of each would be felt.
    const qint64 local = (day.toJulianDay() - firstDay) * daySeconds + clock.msecsSinceStartOfDay() / 1000;
    return Moment{local - offset * secondsPerMinute, static_cast<int>(offset)};
}

QString momentText(const Moment &moment)
{
    return localTime(moment).toString(Qt::ISODate);
}

std::optional<Moment> momentOfText(const QString &text)
{
    const QDateTime time = QDateTime::fromString(text, Qt::ISODate);
    return time.isValid() && time.timeSpec() != Qt::LocalTime ? std::optional(momentOf(time)) : std::nullopt;
}
