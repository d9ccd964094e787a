#pragma once

#include "archives/ArchiveBytes.h"
#include "archives/ArchiveStore.h"
#include "archives/OpenedNames.h"
#include "codes/Event.h"
#include "platform/FileStamp.h"

#include <QList>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

/// The archive of one day, open to be written to, in write-ahead mode.
class DayArchive
{
public:
    /// An event as it stands there.
    struct Row {
        qint64 number = 0; ///< ProgEv
        Event event;
        qint64 copy = 0; ///< it is the n-th of equal ones, counted from 1
    };

    /// Opens the archive of @p day, made from the template when there is none, and begins to read it through: one that
    /// is not large is read when this returns.
    /// @return Damaged, also for what reading finds; TemplateDamaged when the copy just made is no archive
    static Result<std::unique_ptr<DayArchive>> open(ArchiveStore &archives, QDate day);

    QDate day() const { return m_day; }
    Database &database() { return m_database; }

    /// Reads on for so long, once through all that was there when it was opened. @return Damaged when that ends it
    Result<void> readOn(int milliseconds);
    bool isRead() const { return m_reading == Reading::Done; }

    /// Stores an event; on disk when it returns, but for an open transaction.
    /// @param number  its ProgEv, 0 = the next one
    Result<qint64> insert(const Event &event, qint64 number = 0);
    /// The same with its columns as EventRow has them, whatever their form.
    Result<qint64> insert(const SqlValues &columns, qint64 number);
    /// Leaves the numbers up to this one to earlier events, which insert() may be given later.
    void startBehind(qint64 number) { m_last = m_behind = std::max(m_last, number); }
    /// Number of the last event that stands there, 0 without one.
    Result<qint64> highest();
    /// Number of the next event; also of one that insert() has just failed to store, should it be there all the same.
    qint64 next() const { return m_last + 1; }
    /// True when the event stands there under that number.
    Result<bool> holds(const Event &event, qint64 number);
    /// True when no event has that number.
    Result<bool> isFree(qint64 number);
    /// What can be read of archives of the day that were set aside stands in this one.
    Result<void> setRescued();
    /// How many equal events stand there.
    Result<qint64> count(const Event &event);
    /// The first @p most events behind the one of that number, as they were stored.
    Result<QList<Row>> after(qint64 number, qsizetype most);
    /// How many there are behind it, 0 when that cannot be read.
    qsizetype countAfter(qint64 number);

    /// True when another file, or none, stands under the name of this one or of its journal, or somebody has written
    /// over either: what was read of it, and what is stored yet, can be had from this object alone then.
    bool hasMoved() { return m_names.hasMoved() || isOverwritten(); }
    /// True when the file itself was replaced or deleted, not its journal only.
    bool isReplaced() const { return m_isOverwritten || m_names.isReplaced(); }

    /// Brings all rows into the file itself, if there are any that stand in the journal only.
    Result<void> bringTogether();
    /// Ends write-ahead mode before it is closed. @return false when somebody reads: then it stays
    bool leaveLogMode();
    /// Before it is closed: what stands under its names is not its own any more, but for journals that still are.
    void giveUpNames();

private:
    enum class Reading { Table, Index, Done };

    DayArchive(ArchiveStore &archives, QDate day, Database database, Statement insert);
    Result<void> look();
    bool isOverwritten();
    std::optional<QByteArray> beginningOfJournal() const;
    Result<bool> isSeenAnew();
    Result<bool> readPiece();
    Result<bool> readRows();
    Result<bool> readIndex();
    Result<QList<Row>> rows(QStringView sql, const SqlValues &values);

    ArchiveStore &m_archives;
    QDate m_day;
    std::optional<ArchiveBytes> m_given; ///< goes after the database
    Database m_database;
    Statement m_insert;
    OpenedNames m_names;
    qint64 m_last = 0;       ///< highest ProgEv, or the one below
    qint64 m_behind = 0;     ///< events are numbered from here on
    bool m_isDirty = true;   ///< rows may stand in the journal only
    bool m_isLogged = false; ///< rows were stored that stand in the journal

    std::optional<FileStamp> m_stamp; ///< of the file, when it was looked at last
    bool m_isOverwritten = false;

    Reading m_reading = Reading::Table;
    qint64 m_row = 0;             ///< read so far
    std::array<QString, 2> m_key; ///< read so far of the index: Data, Ora
};
