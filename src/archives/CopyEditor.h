#pragma once

#include "archives/ArchiveStore.h"
#include "archives/RecordSet.h"
#include "platform/Pieces.h"

#include <optional>

/// An archive edited in a copy of its own, which takes the archive's place when it is saved.
///
/// The working copy exists from open() to save() or discard(). Nothing else writes to the archive meanwhile, but for
/// passwords, which go into the register where it stands; otherwise it is only replaced as a whole: whatever goes
/// wrong, the old or the new content stands there.
class CopyEditor
{
public:
    /// Names as in ArchiveName.
    struct Source {
        QString archive;
        QString copy;
        QString statement;   ///< of the set that is edited, as for RecordSet
        QString backup = {}; ///< keeps what a save replaces, in Archivi/Backup; "" = nothing does
        QString order = {};  ///< of the set, as for RecordSet
    };

    /// @param archives  must outlive this object
    CopyEditor(ArchiveStore &archives, Source source);
    /// Discards what was not saved.
    ~CopyEditor();
    CopyEditor(const CopyEditor &) = delete;
    CopyEditor &operator=(const CopyEditor &) = delete;

    /// Makes the working copy, in place of one that was left by a program that was cut off. On a fault none is left.
    /// @return Locked also while another program has the archive itself locked
    Result<void> open();
    /// The same in turns: makes the working copy, whose set has no rows yet; then reads them.
    Result<void> begin();
    /// As begin(), but the working copy has the tables of @p layout, without any rows, and the salt of the archive.
    Result<void> beginAnew(const char *layout);
    /// @return true when all are read; on a fault no working copy is left
    Result<bool> read(const QDeadlineTimer &until);
    /// Puts the working copy in the archive's place, once it has been read through, and ends the work. On a fault the
    /// work goes on where it was, with the same current row, and can be saved again.
    /// @return Damaged when the copy is: the archive and its backup stay as they are
    Result<void> save();
    /// The same in turns, in which nobody may change anything. Between two pieces it may be given up, without a trace
    /// but a new backup; it must be gone before this object.
    /// @param before  done at the beginning, and again just before the archive is replaced: things may have happened
    ///                between two turns
    std::unique_ptr<Task> saving(Pieces::Piece before = {});
    /// Ends the work without a trace of it.
    void discard();

    /// Whether the operator has changed something.
    bool isChanged() const { return m_changed; }
    void setChanged() { m_changed = true; }
    const QString &archive() const { return m_source.archive; }

    /// The rows, to be read and moved in; valid after open(), and past the end of the work as they were then. Changes
    /// go through this object.
    RecordSet &set() { return *m_set; }
    const RecordSet &set() const { return *m_set; }

    /// The working copy, for work on many rows at once; null when there is none at hand. It goes with save() and
    /// discard(), and what hangs on it must be gone before.
    Database *database() { return m_database ? &*m_database : nullptr; }

    /// Whether any row has all of @p wanted; the current row stays.
    bool contains(const RecordSet::Values &wanted) const;

    // As of RecordSet, and NotOpen when there is no working copy at hand.
    Result<void> requery();
    Result<void> add(const RecordSet::Values &values);
    Result<void> edit(const RecordSet::Values &values);
    Result<void> remove();

private:
    Result<void> beginWith(const std::function<Result<void>()> &makeCopy);
    Result<void> checkArchive() const;
    Result<void> checkToReplace();
    Result<void> openCopy();
    Result<void> keepBackup();
    Result<void> replace();
    template<class Change>
    Result<void> change(Change make);
    Fault notOpen() const { return {FaultCode::NotOpen, m_source.copy}; }

    ArchiveStore &m_archives;
    const Source m_source;
    /// Opened anew in the same place after a save that failed, so that the set stays on it with its rows.
    std::optional<Database> m_database;
    std::optional<RecordSet> m_set;
    bool m_working = false;
    bool m_changed = false;
    bool m_isOldWhole = false; ///< the archive that is about to be replaced can be read
};
