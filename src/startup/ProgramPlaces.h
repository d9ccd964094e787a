#pragma once

#include "platform/Disk.h"

#include <QString>

/// Where the data of a program are, and what was installed with it.
struct ProgramPlaces {
    QString folder;            ///< program folder
    QString installation = {}; ///< folder with archive templates, pictures and manuals; "" = none
    bool isUsersOwn = false;   ///< the folder is the one that the first start makes in the user's data
};

/// In this order: the folder that was asked for; the one that the programs stand in, if there are archives; the user's
/// own. A folder with programs and archives is its own installation, others are installed beside the programs' folder.
///
/// @param asked     "" when no folder was asked for
/// @param programs  folder of the running program
/// @param userData  folder for the data of all the user's programs
ProgramPlaces programPlaces(const QString &asked, const QString &programs, const QString &userData);

/// Makes @p folder and what is missing above it, for nobody but its owner.
Result<void> makeUsersFolder(const QString &folder, Disk &disk);
