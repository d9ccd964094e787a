#pragma once

#include "journal/JournalWalk.h"
#include "platform/FreedInTurns.h"

/// What coverage() goes by.
struct JournalContent {
    FreedInTurns<QList<JournalRow>> rows; ///< by their running numbers
    std::optional<Moment> alive;          ///< last sign of life behind the last row
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
/// The same of a journal that has been gone through; JournalWalk::end() was told @p to.
QList<CoveredSpan> coverage(const JournalWalk &walk, qint64 from, qint64 to);

/// How often the program did not listen, and how often nobody knows. Spans that touch are one time.
struct Missing {
    struct Times {
        int count = 0;
        qint64 seconds = 0; ///< in all
        bool operator==(const Times &) const = default;
    };
    Times notListening; ///< for whatever reason
    Times notKnown;
    bool operator==(const Missing &) const = default;
    bool isNothing() const { return notListening.count == 0 && notKnown.count == 0; }
};
/// @param spans  in their order; there may be gaps between them, which do not count
Missing missingOf(const QList<CoveredSpan> &spans);

/// The seconds that a local range of time may mean, both ends included: where an hour comes twice, from its first
/// coming to its last.
struct SecondsRange {
    qint64 from = 0;
    qint64 to = 0;
};
SecondsRange secondsOf(const QDateTime &first, const QDateTime &last);
