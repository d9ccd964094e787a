#include "journal/Coverage.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr size_t states = static_cast<size_t>(Listening::Listened) + 1;
constexpr qint64 hour = 3600;

/// An end of a span: from here on @p state counts once more, or once less.
struct Edge {
    qint64 at = 0;
    size_t state = 0;
    int difference = 0;
};

} // namespace

QList<CoveredSpan> coverage(const JournalContent &journal, qint64 from, qint64 to)
{
    JournalWalk walk;
    for (const JournalRow &row : journal.rows)
        walk.take(row);
    walk.end(journal.alive, to);
    return coverage(walk, from, to);
}

QList<CoveredSpan> coverage(const JournalWalk &walk, qint64 from, qint64 to)
{
    QList<Edge> edges = {{from, 0, 0}, {to, 0, 0}};
    for (const CoveredSpan &span : walk.spans()) {
        const qint64 first = qMax(span.from, from);
        const qint64 last = qMin(span.to, to);
        if (first >= last)
            continue;
        edges.append({first, static_cast<size_t>(span.state), 1});
        edges.append({last, static_cast<size_t>(span.state), -1});
    }
    std::sort(edges.begin(), edges.end(), [](const Edge &a, const Edge &b) { return a.at < b.at; });

    QList<CoveredSpan> spans;
    std::array<int, states> counts{};
    qint64 at = from;
    for (const Edge &edge : std::as_const(edges)) {
        if (edge.at > at) {
            const auto *stands = std::find_if(counts.begin(), counts.end(), [](int count) { return count > 0; });
            const Listening state =
                stands == counts.end() ? Listening::NotKnown : static_cast<Listening>(stands - counts.begin());
            if (!spans.isEmpty() && spans.constLast().state == state)
                spans.last().to = edge.at;
            else
                spans.append({at, edge.at, state});
            at = edge.at;
        }
        counts.at(edge.state) += edge.difference;
    }
    return spans;
}

Missing missingOf(const QList<CoveredSpan> &spans)
{
    Missing missing;
    Missing::Times *before = nullptr;
    qint64 end = 0;
    for (const CoveredSpan &span : spans) {
        Missing::Times *times = span.state == Listening::Listened   ? nullptr
                                : span.state == Listening::NotKnown ? &missing.notKnown
                                                                    : &missing.notListening;
        if (times) {
            times->count += times == before && span.from == end ? 0 : 1;
            times->seconds += span.to - span.from;
        }
        before = times;
        end = span.to;
    }
    return missing;
}

SecondsRange secondsOf(const QDateTime &first, const QDateTime &last)
{
    const auto comes = [](const QDateTime &local, qint64 difference) {
        const QDateTime other = QDateTime::fromSecsSinceEpoch(local.toSecsSinceEpoch() + difference);
        return other.date() == local.date() && other.time() == local.time();
    };
    SecondsRange range{first.toSecsSinceEpoch(), last.toSecsSinceEpoch() + 1};
    if (comes(first, -hour))
        range.from -= hour;
    if (comes(last, hour))
        range.to += hour;
    return range;
}
