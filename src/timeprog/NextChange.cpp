#include "timeprog/NextChange.h"

#include "texts/DateTimeText.h"
#include "texts/OwnText.h"

#include <algorithm>

namespace {

constexpr qint64 minuteSeconds = 60;
constexpr int daysWithNames = 6;

class Outlook
{
public:
    Outlook(const QList<Band> &bands, QList<Holiday> holidays, const QDateTime &moment)
        : m_bands(bands), m_holidays(std::move(holidays)), m_moment(moment), m_enabled(isEnabled(moment))
    {
        // Nothing begins or ends but at these times of a day.
        m_times.append(QTime(0, 0));
        for (const Band &band : bands) {
            m_times.append(band.Da);
            m_times.append(band.A.addSecs(minuteSeconds));
        }
        m_times.removeIf([](QTime time) { return !time.isValid(); });
        std::sort(m_times.begin(), m_times.end());
        m_times.erase(std::unique(m_times.begin(), m_times.end()), m_times.end());
    }

    bool isEnabledNow() const { return m_enabled; }
    std::optional<QDateTime> firstChange() const
    {
        const QDate last = m_moment.date().addYears(1);
        for (QDate day = m_moment.date(); day <= last; day = day.addDays(1)) {
            if (std::optional<QDateTime> found = clockIsPut(day) ? minuteByMinute(day) : byTimes(day))
                return found;
        }
        return {};
    }

private:
    bool isEnabled(const QDateTime &moment) const { return evaluate(m_bands, m_holidays, moment) == TimeState::InBand; }
    bool isChange(const QDateTime &moment) const { return moment > m_moment && isEnabled(moment) != m_enabled; }

    static bool clockIsPut(QDate day)
    {
        // It may be put at midnight too: that shows in the minute before.
        return day.startOfDay().addSecs(-minuteSeconds).offsetFromUtc() != day.addDays(1).startOfDay().offsetFromUtc();
    }

    std::optional<QDateTime> byTimes(QDate day) const
    {
        for (const QTime time : m_times) {
            const QDateTime moment(day, time);
            if (isChange(moment))
                return moment;
            if (evaluate(m_bands, m_holidays, moment) == TimeState::OnHoliday)
                break;
        }
        return {};
    }

    /// The same times come twice, or never: two days of a year are gone through as the clock goes.
    std::optional<QDateTime> minuteByMinute(QDate day) const
    {
        const qint64 end = day.addDays(1).startOfDay().toSecsSinceEpoch();
        for (qint64 second = day.startOfDay().toSecsSinceEpoch(); second < end; second += minuteSeconds) {
            const QDateTime moment = QDateTime::fromSecsSinceEpoch(second);
            if (isChange(moment))
                return moment;
        }
        return {};
    }

    const QList<Band> m_bands;
    const QList<Holiday> m_holidays;
    const QDateTime m_moment;
    const bool m_enabled;
    QList<QTime> m_times;
};

QString weekday(QDate day, const Texts &texts)
{
    const QString name = texts[static_cast<Text>(static_cast<int>(Text::Domenica) + day.dayOfWeek() % Band::Days)];
    // Names of days are written small in the middle of an Italian or French sentence.
    const bool isSmall = texts.language() == 1 || texts.language() == 3;
    return isSmall ? name.toLower() : name;
}

} // namespace

std::optional<NextChange> nextChange(const QList<Band> &bands, const QList<Holiday> &holidays, const QDateTime &moment)
{
    const Outlook outlook(bands, holidays, moment);
    const std::optional<QDateTime> first = outlook.firstChange();
    if (!first)
        return {};
    const Outlook everyDay(bands, {}, moment);
    return NextChange{*first, everyDay.isEnabledNow() != outlook.isEnabledNow() || everyDay.firstChange() != first};
}

QString untilSentence(bool enabled, const std::optional<NextChange> &next, QDate today, const Texts &texts)
{
    if (!next)
        return texts[enabled ? OwnText::EnabledForAYear : OwnText::DisabledForAYear];
    const QDateTime shown = enabled ? next->moment.addSecs(-minuteSeconds) : next->moment;
    const QDate day = shown.date();
    QString when = shown.toString(QStringLiteral("HH:mm"));
    if (day > today.addDays(daysWithNames))
        when = texts.sentence({OwnText::TimeOnDate, {DataBarre(day), when}, {}});
    else if (day != today)
        when = texts.sentence({OwnText::TimeOnWeekday, {weekday(day, texts), when}, {}});
    const QString sentence = texts.sentence({enabled ? OwnText::EnabledUntil : OwnText::DisabledUntil, {when}, {}});
    return next->byHoliday ? QStringLiteral("%1 (%2)").arg(sentence, texts[OwnText::CauseHoliday]) : sentence;
}
