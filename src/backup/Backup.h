#pragma once

#include "archives/ArchiveStore.h"
#include "backup/FileCopy.h"
#include "platform/Task.h"
#include "texts/Texts.h"

#include <QSet>
#include <QStringList>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

class QDirIterator;
class QFileInfo;

/// Copies the program folder into another folder while the program is at work. The copy is a program folder as well.
///
/// What differs is copied, by size and time of modification. Files are copied in lots: a lot is written beside what is
/// there, where it is an archive read through, flushed as a whole, and only then put in place; meanwhile the next one
/// is written. So each file of the copy is whole whenever the work is cut off. What the program folder does not have
/// any more stays in the copy.
class Backup : public Task
{
public:
    /// @param archives  of the program folder; must outlive this object
    /// @param target    existing folder that the copy stands in
    Backup(ArchiveStore &archives, const QString &target);

    ~Backup() override;

    /// Takes the target for itself; nothing is written yet.
    /// @return NotFound; AccessDenied; AlreadyInUse when a program is at work in the target; OwnFolder when it is the
    /// program folder or lies in it
    Result<void> begin();

    /// @return after the last file, the fault of the first one that could not be read, or is damaged; all others have
    /// been copied then. A fault of the target ends the work at once.
    Result<bool> step(const QDeadlineTimer &until) override;
    /// @return what the operator is told of such a fault; nothing of one that ended the work
    std::optional<Message> incomplete(const Fault &fault) const;
    /// Bytes; those of files that need not be copied do not count.
    Progress progress() const override { return {m_bytesDone, m_bytes}; }
    /// Ends the work; the lot that was being written is dropped.
    void stop() override;

    /// File that is being copied, relative to the program folder; "" between files.
    QString file() const { return m_copy ? m_copy->name() : QString(); }
    /// Files that were copied.
    int copied() const { return m_copied; }

private:
    struct Source {
        QString name; ///< relative to the program folder
        qint64 size = 0;
    };

    Result<bool> list();
    Result<bool> listEntry(const QFileInfo &entry);
    Result<void> makeFolder(const QString &name);
    QString pathOfCopy(const QString &name) const;
    static Result<void> copyLink(const QString &leadsTo, const QString &link);
    bool isLotFull() const;
    void beginFile();
    Result<bool> copyOn(const QDeadlineTimer &until);
    void addToLot();
    void finishLot();
    Result<bool> awaitCheck(const QDeadlineTimer &until);
    Result<void> putFile();
    Result<void> flushNames();
    void miss(const Fault &fault);

    ArchiveStore &m_archives;
    ProgramFolder m_folder; ///< the target
    QString m_real;         ///< where the target really is
    ArchiveStore m_target;
    FolderLock m_lock;
    QStringList m_folders{QString()}; ///< still to be listed, "" = the program folder itself
    QSet<QString> m_seen;             ///< where folders really are, so that links lead in no circle
    QString m_listed;                 ///< folder whose entries are being looked at
    std::unique_ptr<QDirIterator> m_listing;
    std::vector<Source> m_sources; ///< still to be copied, last first
    bool m_isListed = false;
    std::unique_ptr<FileCopy> m_copy;
    size_t m_lotFiles;                            ///< most of a lot
    std::vector<std::unique_ptr<FileCopy>> m_lot; ///< written
    std::unique_ptr<LotCheck> m_lotCheck;         ///< of these
    qint64 m_lotBytes = 0;
    std::deque<std::unique_ptr<FileCopy>> m_checked; ///< the lot before it: being flushed, then put in place
    std::unique_ptr<LotCheck> m_check;               ///< of that one
    QSet<QString> m_changedFolders;                  ///< whose names are not flushed yet
    std::optional<Fault> m_missed;                   ///< the first one
    int m_missedFiles = 0;
    qint64 m_bytesOfFile = 0;
    bool m_isStopped = false;
    int m_copied = 0;
    qint64 m_bytes = 0;
    qint64 m_bytesDone = 0;
};
