#include "journal/JournalView.h"

#include "journal/CoverageWords.h"
#include "texts/OwnText.h"

QList<DayCoverage> lastDays(const QList<CoveredSpan> &spans, QDate first, QDate last, int most)
{
    QList<DayCoverage> days;
    auto next = spans.begin();
    for (QDate day = qMax(first, last.addDays(1 - most)); day <= last; day = day.addDays(1)) {
        DayCoverage covered = {day, secondsOf(day.startOfDay(), day.endOfDay()), {}};
        while (next != spans.end() && next->to <= covered.range.from)
            ++next;
        for (auto span = next; span != spans.end() && span->from < covered.range.to; ++span)
            covered.spans.append({qMax(span->from, covered.range.from), qMin(span->to, covered.range.to), span->state});
        days.append(covered);
    }
    return days;
}

QString dayWords(const DayCoverage &day, const Texts &texts)
{
    if (day.spans.isEmpty())
        return {};
    QStringList gaps;
    for (const CoveredSpan &span : day.spans) {
        if (span.state != Listening::Listened)
            gaps.append(spanWords(span, texts));
    }
    return gaps.isEmpty() ? texts[OwnText::CoverageThroughout] : gaps.join(QStringLiteral("; "));
}
