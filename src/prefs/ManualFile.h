#pragma once

#include "platform/ProgramFolder.h"

/// Path of the manual @p name ("mansw") in a language: of "mansw_de.pdf", or, where there is none, of "mansw.pdf",
/// which is in Italian, or in several languages in a folder that is older than the others. The file need not exist.
/// @param language  see Texts
QString manualFile(const ProgramFolder &folder, const QString &name, int language);
