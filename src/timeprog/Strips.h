#pragma once

#include "texts/Texts.h"
#include "timeprog/TimeState.h"

#include <optional>
#include <utility>

/// What a picture of intervals shows, row by row, free of any size: a week of time bands, a year of holidays.
struct Strips {
    /// Minutes of a day from 0, or days of a month from 1, both ends included.
    struct Span {
        int first;
        int last;
        bool operator==(const Span &) const = default;
        bool holds(int place) const { return first <= place && place <= last; }
    };
    struct Strip {
        QString caption;
        Span there;         ///< part of the scale that the row has
        QList<Span> spans;  ///< in order; none touches another
        QList<Span> marked; ///< of the row that is marked in the list
        std::optional<int> now;
    };
    QList<Strip> strips;
    Span scale{};                           ///< of the longest row
    QList<std::pair<int, QString>> ticks{}; ///< places of the scale that have a caption
    QString words;                          ///< all of it, read aloud
};

/// What overlaps or touches becomes one; the result is in order.
QList<Strips::Span> joined(QList<Strips::Span> spans);

/// Seven rows of 1,440 minutes, Monday first.
/// @param bands  as for evaluate(); @param marked  one of them, or any other number
Strips weekStrips(const QList<Band> &bands, qsizetype marked, const QDateTime &now, const Texts &texts);
/// The months from today to the day before the same one a year later: twelve, or thirteen.
/// @param marked  one of the holidays, or any other number
Strips holidayStrips(const QList<Holiday> &holidays, qsizetype marked, QDate today, const Texts &texts);

/// The band that counts at a place of weekStrips(); of several the next behind the marked one, so that each of them can
/// be reached.
std::optional<qsizetype> bandAt(const QList<Band> &bands, qsizetype marked, qsizetype strip, int minute);
/// The same of holidayStrips().
std::optional<qsizetype> holidayAt(const QList<Holiday> &holidays, qsizetype marked, QDate today, qsizetype strip,
                                   int day);
