#pragma once

#include <QString>

#include <optional>

/// Longest time between two automatic checks of the interface, in minutes: a day.
inline constexpr int LongestCheckInterval = 1440;

/// What the box of the minutes keeps of @p typed: its digits, and the longest interval instead of a longer one.
QString acceptedMinutes(const QString &typed);

/// Minutes between two checks as they are stored: 0 when they are not @p automatic, whatever was typed.
///
/// @param typed  what acceptedMinutes() has kept
/// @return       nothing when the checks are to be automatic without an interval from 1 on
std::optional<int> checkInterval(bool automatic, const QString &typed);
