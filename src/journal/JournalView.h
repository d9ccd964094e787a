#pragma once

#include "journal/Coverage.h"
#include "journal/JournalWords.h"

#include <array>

// What of a journal is shown at once.

/// Rows that are wanted.
struct RowChoice {
    SecondsRange range;
    std::array<bool, JournalGroupCount> groups{true, true, true, true, true};

    bool takes(const JournalRow &row) const
    {
        return row.at.seconds >= range.from && row.at.seconds < range.to &&
               groups.at(static_cast<size_t>(groupOf(row.kind)));
    }
};

/// A day and what is known of it.
struct DayCoverage {
    QDate day;
    SecondsRange range;       ///< its first second, and the first one behind it
    QList<CoveredSpan> spans; ///< fewer than fill the day where some of it lies ahead
};

/// The last days of a range, at most @p most of them, each with its part of @p spans.
/// @param spans  of whole days, in their order
QList<DayCoverage> lastDays(const QList<CoveredSpan> &spans, QDate first, QDate last, int most);

/// That the program listened throughout the day, or when it did not and why, one after the other; "" for a day that
/// lies ahead.
QString dayWords(const DayCoverage &day, const Texts &texts);
