#pragma once

#include "platform/Descriptor.h"
#include "platform/Disk.h"

#include <QHash>
#include <QString>

#include <vector>

/// The folder that holds all the program's data, and the names below it; and beside it the installation, which is only
/// read: the archive templates that a new folder gets, and what the folder has no pictures and manuals of its own for.
///
/// Names are relative with "/" between the parts ("Archivi/Anagrafico.zeb") and are found without regard to case, since
/// folders that were used under other systems write the same name in several ways.
class ProgramFolder
{
public:
    /// @param root          existing folder; @param disk must outlive this object
    /// @param installation  folder laid like @p root, perhaps the same; "" when nothing was installed
    ProgramFolder(const QString &root, Disk &disk, const QString &installation = {});

    const QString &root() const { return m_root; }
    Disk &disk() const { return m_disk; }

    /// Absolute path of @p name: of the file that exists under it in any case, else as it is written.
    QString path(const QString &name) const;
    bool exists(const QString &name) const;
    bool isFolder(const QString &name) const;
    /// Where a link leads under which there is nothing, a share that is not mounted perhaps; "" for all else.
    QString lostTarget(const QString &name) const;
    /// Path of a picture or manual for a library that opens it by itself: of the installed one where the folder has
    /// none of its own. "" when a folder, pipe or device stands there.
    QString fileToOpen(const QString &name) const;
    /// Absolute path that @p name has in the installation; "" when it was not installed.
    QString installed(const QString &name) const;
    /// True when files can be made in the folder @p name ("" is the program folder itself).
    bool isWritable(const QString &name) const;

    /// Copies what was installed as @p name to the same name of the folder.
    Result<void> copyInstalled(const QString &name);
    Result<void> remove(const QString &name);

private:
    struct Listing {
        qint64 changed = 0;            ///< modification time of the folder, nanoseconds
        qint64 read = 0;               ///< when it was listed, nanoseconds of the same clock
        QHash<QString, QString> names; ///< case-folded name -> name
    };

    QString inFolder(const QString &folder, const QString &name) const;
    QString below(const QString &folder, const QString &name) const;

    QString m_root;
    QString m_installation;
    Disk &m_disk;
    mutable QHash<QString, Listing> m_listings;
};

/// Holds folders for one program; the hold ends with the process, however it ends.
///
/// The folder itself is locked, not a file in it: nothing is written into a folder that is not ours, and nothing stays
/// after a crash.
class FolderLock
{
public:
    /// Takes one folder more; by whatever name, link or mount it is reached, it is the same.
    /// @return AlreadyInUse when another program holds @p folder, NotFound or AccessDenied when it cannot be looked
    /// into, InputOutput when its file system keeps no locks
    Result<void> take(const QString &folder);

private:
    std::vector<Descriptor> m_held;
};
