#pragma once

#include <QStringList>

/// The libraries that the program stands on, each with the version that is really loaded ("Qt 6.4.2"), or by its name
/// alone when it does not tell.
QStringList libraryVersions();
