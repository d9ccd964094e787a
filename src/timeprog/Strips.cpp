#include "timeprog/Strips.h"

#include "texts/DateTimeText.h"
#include "texts/OwnText.h"

#include <algorithm>

namespace {

constexpr int hourMinutes = 60;
constexpr int dayMinutes = 24 * hourMinutes;
constexpr int tickHours = 6;
constexpr int longestMonth = 31;
constexpr int abbreviation = 3;

int minuteOf(QTime time)
{
    return time.hour() * hourMinutes + time.minute();
}

/// None for a band whose times are no times.
std::optional<Strips::Span> spanOf(const Band &band, size_t weekday)
{
    if (!band.marks.at(weekday) || !band.Da.isValid() || !band.A.isValid() || band.A < band.Da)
        return {};
    return Strips::Span{minuteOf(band.Da), minuteOf(band.A)};
}

/// The days of an interval that lie in a month; none where none do.
std::optional<Strips::Span> spanOf(const Holiday &holiday, QDate first, QDate last)
{
    const QDate from = std::max(holiday.DalGiorno, first);
    const QDate to = std::min(holiday.AlGiorno, last);
    if (!holiday.DalGiorno.isValid() || !holiday.AlGiorno.isValid() || to < from)
        return {};
    return Strips::Span{from.day(), to.day()};
}

QString minuteText(int minute)
{
    return QTime(minute / hourMinutes, minute % hourMinutes).toString(QStringLiteral("HH:mm"));
}

Text nth(Text first, int offset)
{
    return static_cast<Text>(static_cast<int>(first) + offset);
}

QString holidayWords(const QList<Holiday> &holidays, QDate first, QDate last, const Texts &texts)
{
    // Days since the first one, so that an interval over the end of a month is one.
    QList<Strips::Span> days;
    for (const Holiday &holiday : holidays) {
        const QDate from = std::max(holiday.DalGiorno, first);
        const QDate to = std::min(holiday.AlGiorno, last);
        if (holiday.DalGiorno.isValid() && holiday.AlGiorno.isValid() && from <= to)
            days.append({static_cast<int>(first.daysTo(from)), static_cast<int>(first.daysTo(to))});
    }
    QStringList words;
    for (const Strips::Span &span : joined(days)) {
        const QString from = DataBarre(first.addDays(span.first));
        words.append(span.first == span.last ? from
                                             : from + QStringLiteral(" - ") + DataBarre(first.addDays(span.last)));
    }
    return words.isEmpty() ? texts[OwnText::NoHoliday] : words.join(QStringLiteral(", "));
}

/// The first of the intervals behind the marked one that holds the place, from the first one on behind the last.
template<class Holds>
std::optional<qsizetype> nextThatHolds(qsizetype count, qsizetype marked, const Holds &holds)
{
    const qsizetype before = marked >= 0 && marked < count ? marked : count - 1;
    for (qsizetype step = 1; step <= count; ++step) {
        const qsizetype row = (before + step) % count;
        if (holds(row))
            return row;
    }
    return {};
}

} // namespace

QList<Strips::Span> joined(QList<Strips::Span> spans)
{
    std::sort(spans.begin(), spans.end(), [](const auto &one, const auto &other) { return one.first < other.first; });
    QList<Strips::Span> result;
    for (const Strips::Span &span : std::as_const(spans)) {
        if (!result.isEmpty() && span.first <= result.last().last + 1)
            result.last().last = std::max(result.last().last, span.last);
        else
            result.append(span);
    }
    return result;
}

Strips weekStrips(const QList<Band> &bands, qsizetype marked, const QDateTime &now, const Texts &texts)
{
    Strips week;
    week.scale = {0, dayMinutes - 1};
    for (int hour = 0; hour * hourMinutes < dayMinutes; hour += tickHours)
        week.ticks.append({hour * hourMinutes, QString::number(hour)});
    QStringList days;
    for (size_t weekday = 0; weekday < Band::Days; ++weekday) {
        const int day = static_cast<int>(weekday);
        const QString name = texts[nth(Text::Domenica, (day + 1) % Band::Days)];
        Strips::Strip strip{name.left(abbreviation), week.scale, {}, {}, {}};
        for (qsizetype row = 0; row < bands.size(); ++row) {
            if (const std::optional<Strips::Span> span = spanOf(bands[row], weekday)) {
                strip.spans.append(*span);
                if (row == marked)
                    strip.marked.append(*span);
            }
        }
        strip.spans = joined(strip.spans);
        if (now.date().dayOfWeek() == day + 1)
            strip.now = minuteOf(now.time());
        QStringList words;
        for (const Strips::Span &span : std::as_const(strip.spans))
            words.append(minuteText(span.first) + QStringLiteral(" - ") + minuteText(span.last));
        days.append(name + texts[OwnText::Colon] +
                    (words.isEmpty() ? texts[OwnText::NoBand] : words.join(QStringLiteral(", "))));
        week.strips.append(strip);
    }
    week.words = days.join(QStringLiteral("; "));
    return week;
}

Strips holidayStrips(const QList<Holiday> &holidays, qsizetype marked, QDate today, const Texts &texts)
{
    Strips year;
    year.scale = {1, longestMonth};
    for (const int day : {1, 10, 20, 30})
        year.ticks.append({day, QString::number(day)});
    const QDate last = today.addYears(1).addDays(-1);
    for (QDate month(today.year(), today.month(), 1); month <= last; month = month.addMonths(1)) {
        const QDate from = std::max(month, today);
        const QDate to = std::min(month.addDays(month.daysInMonth() - 1), last);
        // In numbers: the beginnings of the names of two months may be the same, and the first may come again at the
        // end.
        Strips::Strip strip{month.toString(QStringLiteral("MM/yyyy")), {from.day(), to.day()}, {}, {}, {}};
        for (qsizetype row = 0; row < holidays.size(); ++row) {
            if (const std::optional<Strips::Span> span = spanOf(holidays[row], from, to)) {
                strip.spans.append(*span);
                if (row == marked)
                    strip.marked.append(*span);
            }
        }
        strip.spans = joined(strip.spans);
        if (from == today)
            strip.now = today.day();
        year.strips.append(strip);
    }
    year.words = holidayWords(holidays, today, last, texts);
    return year;
}

std::optional<qsizetype> bandAt(const QList<Band> &bands, qsizetype marked, qsizetype strip, int minute)
{
    return nextThatHolds(bands.size(), marked, [&](qsizetype row) {
        const std::optional<Strips::Span> span = spanOf(bands[row], static_cast<size_t>(strip));
        return span && span->holds(minute);
    });
}

std::optional<qsizetype> holidayAt(const QList<Holiday> &holidays, qsizetype marked, QDate today, qsizetype strip,
                                   int day)
{
    const QDate month = QDate(today.year(), today.month(), 1).addMonths(static_cast<int>(strip));
    const QDate meant = month.addDays(day - 1);
    return nextThatHolds(holidays.size(), marked, [&](qsizetype row) {
        return holidays[row].DalGiorno.isValid() && holidays[row].DalGiorno <= meant && meant <= holidays[row].AlGiorno;
    });
}
