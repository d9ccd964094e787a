#pragma once

#include <QString>

#include <optional>

/// By what a file is told to be unchanged without reading it.
struct FileStamp {
    qint64 size = 0;     ///< bytes
    qint64 modified = 0; ///< nanoseconds since 1970
    bool operator==(const FileStamp &) const = default;
};

/// Of the file at @p path, links followed; nothing when there is none, or no regular one.
std::optional<FileStamp> stampOf(const QString &path);
