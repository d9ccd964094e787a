#pragma once

#include "platform/Disk.h"

#include <QHash>
#include <QString>

/// The folder that holds all the program's data, and the names below it.
///
/// Names are relative with "/" between the parts ("Archivi/Anagrafico.zeb") and are found without regard to case, since
/// folders that were used under other systems write the same name in several ways.
class ProgramFolder
{
public:
    /// @param root  existing folder; @param disk must outlive this object
    ProgramFolder(const QString &root, Disk &disk);

    const QString &root() const { return m_root; }
    Disk &disk() const { return m_disk; }

    /// Absolute path of @p name: of the file that exists under it in any case, else as it is written.
    QString path(const QString &name) const;
    bool exists(const QString &name) const;
    bool isFolder(const QString &name) const;
    /// True when files can be made in the folder @p name ("" is the program folder itself).
    bool isWritable(const QString &name) const;

    Result<void> copy(const QString &source, const QString &target);
    Result<void> remove(const QString &name);

private:
    struct Listing {
        qint64 changed = 0;            ///< modification time of the folder, nanoseconds
        qint64 read = 0;               ///< when it was listed, nanoseconds of the same clock
        QHash<QString, QString> names; ///< case-folded name -> name
    };

    QString inFolder(const QString &folder, const QString &name) const;

    QString m_root;
    Disk &m_disk;
    mutable QHash<QString, Listing> m_listings;
};

/// Holds a program folder for one program; the hold ends with the process, however it ends.
class FolderLock
{
public:
    FolderLock() = default;
    ~FolderLock();
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

    /// @return AlreadyInUse when another program holds @p folder, NotFound or AccessDenied when it cannot be looked
    /// into
    Result<void> take(const QString &folder);

private:
    int m_file = -1;
};
