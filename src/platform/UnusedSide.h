#pragma once

#include <QString>

/// Removes what the database library left beside an archive, unless somebody has the archive open or is opening it: who
/// does so locks the archive before he looks at what stands beside it. No connection of this process may be open on it.
void removeUnlessUsed(const QString &archive, const QString &side);
