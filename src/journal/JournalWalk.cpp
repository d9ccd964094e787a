#include "journal/JournalWalk.h"

#include <utility>

Listening JournalWalk::state() const
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

void JournalWalk::add(qint64 from, qint64 to, Listening state)
{
    if (from >= to)
        return;
    // Most rows change nothing.
    if (!m_spans.isEmpty() && m_spans.constLast().to == from && m_spans.constLast().state == state)
        m_spans.last().to = to;
    else
        m_spans.append({from, to, state});
}

void JournalWalk::pass(qint64 to, Listening state)
{
    if (m_at)
        add(*m_at, to, state);
    m_at = to;
}

void JournalWalk::begins(qint64 at)
{
    m_runs = true;
    m_sleeps = m_isSilent = false;
    m_port = Port::NotOpen;
    m_begin = at;
}

void JournalWalk::ends()
{
    if (m_failing)
        storingEnds(*m_at, true);
    m_runs = m_sleeps = false;
}

void JournalWalk::clockMoved(const JournalRow &row)
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

void JournalWalk::storingFails(qint64 at)
{
    if (m_failing)
        return;
    m_failing = at;
    m_areLost = false;
}

void JournalWalk::storingEnds(qint64 at, bool areLost)
{
    if (!m_failing)
        return;
    m_failed.append({std::exchange(m_failing, {}).value_or(at), at, Listening::EventsNotStored});
    for (const CoveredSpan &span : std::exchange(m_failed, {})) {
        if (areLost || m_areLost)
            add(span.from, span.to, span.state);
    }
}

void JournalWalk::lost(qint64 at)
{
    if (m_failing)
        m_areLost = true;
    else
        add(m_begin, at, Listening::EventsNotStored);
}

void JournalWalk::take(const JournalRow &row)
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

void JournalWalk::end(std::optional<Moment> alive, qint64 until)
{
    if (!m_at)
        return;
    pass(!m_runs ? qMax(*m_at, until) : alive ? qMax(*m_at, alive->seconds) : *m_at);
    ends();
}
