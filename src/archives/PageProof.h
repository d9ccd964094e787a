#pragma once

#include <QByteArray>
#include <QString>

/// Whether the pages of an archive file all carry the check sum that they had when they were written under its key, and
/// are as many as its first one says: no bit that counts has changed, and nothing is missing.
///
/// The file is read from its beginning to its end, past the database library: several times as fast as by that. It may
/// not be open there, which would lose its locks.
///
/// @param rawKey  as ArchiveKeys gives it
/// @return false where the library has to be asked: of a page without a check sum it alone knows whether it is in use
bool hasProvenPages(const QString &path, const QByteArray &rawKey);
