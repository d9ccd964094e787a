#pragma once

#include <QString>

#include <optional>

/// Most rows that the view of the day's events can have.
inline constexpr int HighestDailyEventCount = 1000;

/// What a text typed as number of rows becomes: its digits, or "1000" when they make a higher number.
QString acceptedEventCount(const QString &typed);
/// The number of rows that a text stands for, 1 to 1000; none when it is no number of them.
std::optional<int> dailyEventCount(const QString &text);
