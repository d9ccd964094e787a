#pragma once

#include <QDate>
#include <QString>

namespace tool {

/// A day of the command line as the boxes of the windows have it: "dd/mm/yyyy".
/// @param typed  "yyyy-mm-dd", "dd/mm/yyyy", "today" or "yesterday"
/// @return       "" for anything else; the length of the month is not checked, see rangeDay()
QString dayText(const QString &typed, QDate today);

/// "hh:mm:ss" of "hh:mm:ss" or "hh:mm"; "" for anything else.
QString timeText(const QString &typed);

} // namespace tool
