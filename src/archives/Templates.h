#pragma once

#include "archives/ArchiveStore.h"

/// Makes the five templates that a new program folder starts from, in its folder Archivi. They share one salt, so that
/// the key of every archive copied from them is derived once. Templates that exist are kept.
Result<void> makeTemplates(ArchiveStore &archives);

/// Copies those templates from the installation that are not in @p folder, whose Archivi must exist. One that is not
/// installed either is left out.
Result<void> layTemplates(ProgramFolder &folder);
