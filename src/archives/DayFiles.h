#pragma once

#include "platform/ProgramFolder.h"

#include <QDate>
#include <QHash>
#include <QStringList>

/// The files that hold the events of one day, by their names below the program folder.
struct DayFiles {
    QString archive;      ///< "" when the day has none
    QStringList setAside; ///< damaged archives that made room for it, oldest first
};

/// The files of every day that has any, as they are now.
/// @return NotFound or AccessDenied when the folder of the archives cannot be listed
Result<QHash<QDate, DayFiles>> filesOfDays(const ProgramFolder &folder);
/// Those of one day.
Result<DayFiles> filesOfDay(const ProgramFolder &folder, QDate day);
