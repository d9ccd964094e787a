#pragma once

#include "texts/Texts.h"
#include "timeprog/TimeState.h"

#include <optional>

/// When the interface will be enabled or disabled next.
struct NextChange {
    QDateTime moment; ///< local time, on the minute
    /// Holidays are why it comes then: without them the interface would be enabled now and is not, or the other change
    /// would come at another moment.
    bool byHoliday = false;
};

/// The first moment after @p moment at which evaluate() says otherwise; none within a year.
///
/// Moments are those that a clock on the wall goes through: on the day on which it is put back a band may begin twice,
/// and one in the hour that is left out does not begin at all.
/// @param bands, @param holidays  as for evaluate(); @param moment  local time
std::optional<NextChange> nextChange(const QList<Band> &bands, const QList<Holiday> &holidays, const QDateTime &moment);

/// "Enabled until 18:00", "Disabled until Monday 07:30 (holiday)", "Enabled, no change in a year". The times are those
/// that stand in the list of bands: the last minute of one, or the first.
/// @param today  a change of that day needs no name of a day, one that is not within six days behind it needs a date
QString untilSentence(bool enabled, const std::optional<NextChange> &next, QDate today, const Texts &texts);
