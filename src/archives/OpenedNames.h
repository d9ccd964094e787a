#pragma once

#include "archives/Database.h"
#include "platform/Disk.h"
#include "platform/FileIdentity.h"

#include <array>

/// The names of an archive in write-ahead mode, as they were when it was opened: of its file, of its journal and of the
/// journal's index. Another file may come to stand under each of them while it is open.
class OpenedNames
{
public:
    OpenedNames() = default;
    /// @param name  path of the archive, which may be a link; its journals stand beside the file
    /// @param database  it, looked into already, so that the journal is there
    OpenedNames(const QString &name, const Database &database);

    /// True when another file, or none, stands under the name of the archive itself.
    bool isReplaced() const { return m_names[0].isOther(); }
    /// The same of its name or that of its journal.
    bool hasMoved() const { return isReplaced() || m_names[1].isOther(); }
    /// Before one that has moved is closed: what stands under its names is not its own, but for journals that still
    /// are.
    void giveUp(Database &database, Disk &disk) const;

private:
    struct Named {
        QString path;
        std::optional<FileIdentity> file; ///< nothing when it could not be told
        bool isOther() const;
    };
    std::array<Named, 3> m_names;
};
