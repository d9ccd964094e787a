#include "journal/Coverage.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr size_t states = static_cast<size_t>(Listening::Listened) + 1;
constexpr qint64 hour = 3600;

/// Goes through the rows and keeps what stands, and how long it stood.
class Walk
{
public:
    void take(const JournalRow &row);
    /// Nothing comes behind the last row any more. @param until  the walk ends there when the program runs
    void end(std::optional<Moment> alive, qint64 until);

    QList<CoveredSpan> spans; ///< in the order of the rows; they overlap where the clock was set back

private:
    enum class Port { NotKnown, NotOpen, Open, Lost };

    Listening state() const;
    void pass(qint64 to) { pass(to, state()); }
    void pass(qint64 to, Listening state);
    void add(qint64 from, qint64 to, Listening state);
    void begins(qint64 at);
    void ends();
    void clockMoved(const JournalRow &row);
    void storingFails(qint64 at);
    void storingEnds(qint64 at, bool areLost);
    void lost(qint64 at);

    std::optional<qint64> m_at; ///< end of what has been passed; nothing before the first row
    qint64 m_number = 0;
    bool m_runs = true;
    bool m_sleeps = false;
    bool m_isSilent = false;
    Port m_port = Port::NotKnown;
    qint64 m_begin = 0;              ///< of the run, as far as rows tell
    std::optional<qint64> m_failing; ///< storing fails since
    bool m_areLost = false;          ///< events, since then
    QList<CoveredSpan> m_failed;     ///< the same before the clock was moved
};

Listening Walk::state() const
{
    if (!m_runs || m_sleeps)
        return Listening::NotRunning;
    switch (m_port) {
    case Port::NotKnown:
        return Listening::NotKnown;
    case Port::NotOpen:
        return Listening::PortNotOpen;
    case Port::Lost:
        return Listening::PortLost;
    case Port::Open:
        break;
    }
    return m_isSilent ? Listening::InterfaceSilent : Listening::Listened;
}

void Walk::add(qint64 from, qint64 to, Listening state)
{
    if (from >= to)
        return;
    // Most rows change nothing.
    if (!spans.isEmpty() && spans.constLast().to == from && spans.constLast().state == state)
        spans.last().to = to;
    else
        spans.append({from, to, state});
}

void Walk::pass(qint64 to, Listening state)
{
    if (m_at)
        add(*m_at, to, state);
    m_at = to;
}

void Walk::begins(qint64 at)
{
    m_runs = true;
    m_sleeps = m_isSilent = false;
    m_port = Port::NotOpen;
    m_begin = at;
}

void Walk::ends()
{
    if (m_failing)
        storingEnds(*m_at, true);
    m_runs = m_sleeps = false;
}

void Walk::clockMoved(const JournalRow &row)
{
    const std::optional<Moment> before = momentOfText(row.first);
    const std::optional<Moment> now = momentOfText(row.second);
    if (!before || !now)
        return pass(row.at.seconds, Listening::NotKnown);
    pass(before->seconds);
    if (m_failing) {
        m_failed.append({*m_failing, before->seconds, Listening::EventsNotStored});
        m_failing = now->seconds;
    }
    // What is passed over is not known, unless it was listened to before the clock was set back.
    m_at = now->seconds;
    m_begin = qMin(m_begin, now->seconds);
}

void Walk::storingFails(qint64 at)
{
    if (m_failing)
        return;
    m_failing = at;
    m_areLost = false;
}

void Walk::storingEnds(qint64 at, bool areLost)
{
    if (!m_failing)
        return;
    m_failed.append({std::exchange(m_failing, {}).value_or(at), at, Listening::EventsNotStored});
    for (const CoveredSpan &span : std::exchange(m_failed, {})) {
        if (areLost || m_areLost)
            add(span.from, span.to, span.state);
    }
}

void Walk::lost(qint64 at)
{
    if (m_failing)
        m_areLost = true;
    else
        add(m_begin, at, Listening::EventsNotStored);
}

void Walk::take(const JournalRow &row)
{
    const qint64 at = row.at.seconds;
    if (!m_at) {
        m_at = m_begin = at;
    } else if (row.number != m_number + 1) {
        pass(at, Listening::NotKnown);
        ends();
        begins(at);
        m_port = Port::NotKnown;
    }
    m_number = row.number;
    // Another program's, which tells nothing of this one.
    if (row.kind == JournalKind::Pruned)
        return;
    // A moment of the past, at which the state was another than the one that stands now.
    if (row.kind == JournalKind::ClockMoved)
        return clockMoved(row);
    if (row.kind == JournalKind::FoundCutOff) {
        if (m_runs) {
            const std::optional<Moment> alive = momentOfText(row.first);
            pass(alive ? alive->seconds : *m_at);
            ends();
        }
        return pass(at);
    }
    if (row.kind == JournalKind::Started)
        ends();
    pass(at);
    switch (row.kind) {
    case JournalKind::Started:
        return begins(at);
    case JournalKind::Ended:
        return ends();
    case JournalKind::Slept:
        m_sleeps = true;
        return;
    case JournalKind::Woke:
        m_sleeps = false;
        return;
    case JournalKind::PortOpened:
    case JournalKind::PortBack:
        m_port = Port::Open;
        m_isSilent = false;
        return;
    case JournalKind::PortLent:
    case JournalKind::PortNotAvailable:
        m_port = Port::NotOpen;
        return;
    case JournalKind::PortLost:
        m_port = Port::Lost;
        return;
    case JournalKind::InterfaceAnswers:
        m_isSilent = false;
        return;
    case JournalKind::InterfaceSilent:
        m_isSilent = true;
        if (const std::optional<Moment> heard = momentOfText(row.first))
            add(heard->seconds, at, Listening::InterfaceSilent);
        return;
    case JournalKind::StoringFails:
        return storingFails(at);
    case JournalKind::StoringResumes:
        return storingEnds(at, false);
    case JournalKind::EventsLost:
        return lost(at);
    default:
        return;
    }
}

void Walk::end(std::optional<Moment> alive, qint64 until)
{
    if (!m_at)
        return;
    pass(!m_runs ? qMax(*m_at, until) : alive ? qMax(*m_at, alive->seconds) : *m_at);
    ends();
}

/// An end of a span: from here on @p state counts once more, or once less.
struct Edge {
    qint64 at = 0;
    size_t state = 0;
    int difference = 0;
};

} // namespace

QList<CoveredSpan> coverage(const JournalContent &journal, qint64 from, qint64 to)
{
    Walk walk;
    for (const JournalRow &row : journal.rows)
        walk.take(row);
    walk.end(journal.alive, to);

    QList<Edge> edges = {{from, 0, 0}, {to, 0, 0}};
    for (const CoveredSpan &span : std::as_const(walk.spans)) {
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
    bool isMissing = false;
    for (const CoveredSpan &span : spans) {
        const bool listened = span.state == Listening::Listened;
        if (!listened && !isMissing)
            ++missing.times;
        if (!listened)
            missing.seconds += span.to - span.from;
        isMissing = !listened;
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
