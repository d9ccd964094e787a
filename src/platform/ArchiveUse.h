#pragma once

#include <QString>

// Who has an archive open locks some bytes of it before he looks at what stands beside it. Closing a file drops a
// program's own locks on it: no connection of this process may be open on the archive.

/// Whether another program has the archive open.
bool isInUse(const QString &archive);

/// Removes what the database library left beside an archive, unless somebody has that open.
void removeUnlessUsed(const QString &archive, const QString &side);
