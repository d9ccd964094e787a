#pragma once

#include <QString>

#include <optional>

/// By what a file is told to be unchanged without reading it.
struct FileStamp {
    qint64 size = 0;     ///< bytes
    qint64 modified = 0; ///< nanoseconds since 1970
    mode_t rights = 0;   ///< of its owner, where the system has them
    /// Of the same content, as far as a look can tell.
    bool operator==(const FileStamp &other) const { return size == other.size && modified == other.modified; }
};

/// Of the file at @p path, links followed; nothing when there is none, or no regular one.
std::optional<FileStamp> stampOf(const QString &path);
