#pragma once

#include "platform/Descriptor.h"
#include "platform/Result.h"

#include <QByteArray>

// A pipe, a device or a folder may stand where a file should. To open one can hang the program or disturb whatever is
// behind it: what stands there is looked at first, and once more when it is open.

/// @return NotRegularFile when something else than a file stands at @p path, links followed; no fault when nothing does
Result<void> checkRegular(const QString &path);

/// True for a file that nobody but its owner, who must be this user, can read or write; links are followed.
bool isOwnersOnly(const QString &path);

/// The file at the end of the link @p path, or @p path itself when it is no link.
/// @return NotFound when the link leads nowhere
Result<QString> linkFollowed(const QString &path);

/// Opens a file to be read, and nothing else.
Result<Descriptor> openToRead(const QString &path);

/// @return the whole content; TooLarge when it is longer than @p limit bytes
Result<QByteArray> readFile(const QString &path, qsizetype limit);
