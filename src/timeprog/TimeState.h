#pragma once

#include <QDateTime>
#include <QList>

#include <array>

/// A time band: from its first to its last minute on the days that are marked.
struct Band {
    static constexpr int Days = 7;
    std::array<bool, Days> marks{}; ///< Monday to Sunday: the band counts on this day
    QTime Da;                       ///< first minute
    QTime A;                        ///< last minute
};

/// Holidays from the first to the last day.
struct Holiday {
    QDate DalGiorno;
    QDate AlGiorno;
};

/// Where a moment lies.
enum class TimeState { InBand, OutsideBands, OnHoliday };

/// @param bands     in the order of their start
/// @param holidays  in the order of their first day
TimeState evaluate(const QList<Band> &bands, const QList<Holiday> &holidays, const QDateTime &moment);
