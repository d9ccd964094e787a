#pragma once

#include "archives/ArchiveStore.h"
#include "startup/Settings.h"

#include <optional>

/// Why the program cannot start, for one line to the user.
struct StartFault {
    Message message;
};

/// What is told of a users register that is missing, damaged or cannot be read, with the backup as the way back when
/// there is one.
Message registerMessage(const ProgramFolder &folder, const Fault &reason);

/// Looks for everything that would keep the program from working in @p folder, and writes nothing: the folder, its
/// `Archivi`, and the templates of the archives that are not there yet. The template of the day's archive is always
/// needed, since every midnight copies it. A register that is missing from a folder that has been in use is a fault:
/// an empty one in its place would let everybody in and drop every event.
///
/// A folder that is empty, or that has archives but shows no use, may lack `Archivi` and templates if they are
/// installed. In one that has been used they are lost, with a disk that is not mounted perhaps.
std::optional<StartFault> checkProgramFolder(const ProgramFolder &folder);

/// Makes the `Archivi` of a folder that checkProgramFolder() found good, where it is missing.
std::optional<StartFault> makeArchiveFolder(ProgramFolder &folder);

/// Turns a folder that checkProgramFolder() found good into a working one and reads the settings: makes what is missing
/// of templates, backup folder, settings and working archives, and leaves everything else as it is. What does not keep
/// the program from its work is told by notices.
std::optional<StartFault> prepareProgramFolder(ArchiveStore &archives, Settings &settings, int systemLanguage,
                                               Notices &notices);
