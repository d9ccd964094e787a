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

/// What coverage() goes by.
struct JournalContent {
    QList<JournalRow> rows;      ///< by their running numbers
    std::optional<Moment> alive; ///< last sign of life behind the last row
};

/// Says for every second from @p from to @p to whether the program listened.
///
/// Decisions: A moment that the clock showed twice counts as listened to only if it was each time. What a clock that
/// was set forward passed over is not known: who came then has another time. Times are compared as UTC, so midnight,
/// New Year and summer time make no difference. The interface counts as silent from the moment it was heard of last.
/// Events that waited and were all stored in the end are there: storing that failed counts only when some were lost, or
/// it had not resumed when the run ended. A running number that is missing makes the time up to the row behind it not
/// known, and what stands then, until a row tells. Kinds that are not known change nothing.
/// @return spans without gaps between them, none of them empty, neighbours different
QList<CoveredSpan> coverage(const JournalContent &journal, qint64 from, qint64 to);

/// How often, and for how many seconds in all, the program did not listen; spans that touch are one time.
struct Missing {
    int times = 0;
    qint64 seconds = 0;
    bool operator==(const Missing &) const = default;
};
Missing missingOf(const QList<CoveredSpan> &spans);

/// The seconds that a local range of time may mean, both ends included: where an hour comes twice, from its first
/// coming to its last.
struct SecondsRange {
    qint64 from = 0;
    qint64 to = 0;
};
SecondsRange secondsOf(const QDateTime &first, const QDateTime &last);
