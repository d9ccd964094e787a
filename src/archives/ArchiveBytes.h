#pragma once

#include "platform/Result.h"

#include <QByteArray>

#include <memory>

struct sqlite3_file;

/// A file that may be an archive as bytes, read through the database library.
///
/// The system drops every lock that a program has on a file as soon as the program closes that file anywhere, and with
/// its lock the open day would lose its journal to the next reader that leaves. The library knows of its locks and
/// closes later.
class ArchiveBytes
{
public:
    /// @param path  regular file. @return NotFound, AccessDenied
    static Result<ArchiveBytes> open(const QString &path);

    /// Keeps others from changing the file as long as this object is there, where the file system keeps locks.
    /// @return Locked while somebody is changing it
    Result<void> hold();

    /// Bytes in the file. @return InputOutput
    Result<qint64> size() const;

    /// @return at most @p count bytes from @p position on: fewer at the end of the file, none behind it
    Result<QByteArray> read(qint64 position, qsizetype count);

private:
    struct Closer {
        void operator()(sqlite3_file *file) const;
    };
    ArchiveBytes(sqlite3_file *file, QString path) : m_file(file), m_path(std::move(path)) {}

    std::unique_ptr<sqlite3_file, Closer> m_file;
    QString m_path;
};
