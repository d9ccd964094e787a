#include "journal/CoverageWords.h"

#include "texts/DateTimeText.h"
#include "texts/OwnText.h"

namespace {

constexpr qint64 minute = 60;
constexpr qint64 secondsOfHour = 60 * minute;
constexpr qint64 wholeDay = 24 * secondsOfHour;

QString timesWords(const Missing::Times &times, OwnText text, const Texts &texts)
{
    const QString count = times.count == 1 ? texts[OwnText::TimesOne] : texts[OwnText::TimesMany].arg(times.count);
    return texts.sentence({text, {count, durationWords(times.seconds, texts)}, {}});
}

QString timeWords(qint64 seconds)
{
    return OraTesto(QDateTime::fromSecsSinceEpoch(seconds).time());
}

} // namespace

QString durationWords(qint64 seconds, const Texts &texts)
{
    const auto with = [](const QString &large, qint64 count, const char *unit) {
        return count == 0 ? large : QStringLiteral("%1 %2 %3").arg(large).arg(count).arg(QLatin1String(unit));
    };
    if (seconds < minute)
        return QStringLiteral("%1 s").arg(seconds);
    if (seconds < secondsOfHour)
        return with(QStringLiteral("%1 min").arg(seconds / minute), seconds % minute, "s");
    if (seconds < 2 * wholeDay)
        return with(QStringLiteral("%1 h").arg(seconds / secondsOfHour), seconds % secondsOfHour / minute, "min");
    return with(texts[OwnText::DurationDays].arg(seconds / wholeDay), seconds % wholeDay / secondsOfHour, "h");
}

QString coverageWords(const Missing &missing, const Texts &texts)
{
    if (missing.isNothing())
        return texts[OwnText::CoverageThroughout];
    QStringList parts;
    if (missing.notListening.count > 0)
        parts.append(timesWords(missing.notListening, OwnText::CoverageMissing, texts));
    if (missing.notKnown.count > 0)
        parts.append(timesWords(missing.notKnown, OwnText::CoverageNotKnown, texts));
    return parts.join(QStringLiteral(". "));
}

QString listeningWords(Listening state, const Texts &texts)
{
    switch (state) {
    case Listening::NotRunning:
        return texts[OwnText::ListeningNotRunning];
    case Listening::PortNotOpen:
        return texts[OwnText::ListeningPortNotOpen];
    case Listening::PortLost:
        return texts[OwnText::ListeningPortLost];
    case Listening::InterfaceSilent:
        return texts[OwnText::ListeningInterfaceSilent];
    case Listening::EventsNotStored:
        return texts[OwnText::ListeningEventsNotStored];
    case Listening::NotKnown:
        return texts[OwnText::ListeningNotKnown];
    case Listening::Listened:
        break;
    }
    return texts[OwnText::Listened];
}

QString spanWords(const CoveredSpan &span, const Texts &texts)
{
    return timeWords(span.from) + QStringLiteral(" - ") + timeWords(span.to - 1) + texts[OwnText::Colon] +
           listeningWords(span.state, texts);
}
