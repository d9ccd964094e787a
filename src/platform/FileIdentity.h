#pragma once

#include <QString>

#include <optional>

/// Which file it is that stands under a name, whatever it is called. One that is open keeps its identity to itself.
struct FileIdentity {
    quint64 device = 0;
    quint64 inode = 0; ///< 0 = no file
    bool operator==(const FileIdentity &) const = default;
};

/// The file at @p path, links followed; nothing when that cannot be told for now, as of a share that does not answer.
std::optional<FileIdentity> identityOf(const QString &path);
