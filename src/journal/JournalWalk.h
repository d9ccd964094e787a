#pragma once

#include "journal/JournalRow.h"

#include <QList>

#include <optional>

/// Whether the program listened, and why not. Of two that hold for one moment the first in this list counts.
enum class Listening {
    NotRunning, ///< nor awake
    PortNotOpen,
    PortLost,
    InterfaceSilent,
    EventsNotStored,
    NotKnown, ///< no rows: before the journal begins, where rows are missing, or a time that the clock passed over
    Listened,
};

/// A part of a range of time, in seconds since 1970, UTC; @p to is not part of it.
struct CoveredSpan {
    qint64 from = 0;
    qint64 to = 0;
    Listening state = Listening::NotKnown;
    bool operator==(const CoveredSpan &) const = default;
};

/// Goes through the rows of a journal, by their running numbers, and keeps what stands and how long it stood.
class JournalWalk
{
public:
    void take(const JournalRow &row);
    /// No row comes any more. @param alive  last sign of life; @param until  how long a program that has ended has
    /// not run, seconds since 1970
    void end(std::optional<Moment> alive, qint64 until);

    /// In the order of the rows; they overlap where the clock was set back.
    const QList<CoveredSpan> &spans() const { return m_spans; }

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

    QList<CoveredSpan> m_spans;
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
