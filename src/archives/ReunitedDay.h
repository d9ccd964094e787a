#pragma once

#include "archives/ArchiveStore.h"
#include "archives/DayFiles.h"
#include "archives/ReadableRows.h"
#include "platform/Task.h"

#include <optional>

/// All that can be read of a day of which archives were set aside: the rows of its files, each event once, in the order
/// of their times.
///
/// Rows are the same event when all that is stored of them is equal, their number as well: an event keeps it when it is
/// brought from one file to another. Where another event has the number, it does without: then each is the same as the
/// n-th of equal ones of the other file, so that what stands twice in one and once in another is two events. The files
/// set aside are only read. The rows are gathered in a throw-away archive, so that a day of any size takes little
/// memory.
class ReunitedDay : public Task
{
public:
    /// @param archives     must outlive this object
    /// @param workingName  of the throw-away archive, which nothing else uses; "" = it has no name
    /// @param use          of the day's archive
    ReunitedDay(ArchiveStore &archives, QString workingName, Database::Use use = Database::Use::Safe);
    ~ReunitedDay() override;
    ReunitedDay(const ReunitedDay &) = delete;
    ReunitedDay &operator=(const ReunitedDay &) = delete;

    /// Whether all that can be read of the files set aside stands in the archive of the day, as markBrought() notes.
    static Result<bool> isBroughtInto(Database &archive);
    static Result<void> markBrought(Database &archive) { return archive.execute("PRAGMA user_version = 1"); }

    /// Begins to gather. The archive is read first: what is added to it from then on is not among the rows.
    /// @param condition  of the rows that are wanted, its parameters numbered (?1, ?2, ...); @param values  of them
    Result<void> start(const DayFiles &files, const QString &condition, const SqlValues &values);
    /// Gathers on. A file that cannot be read, or not all of it, is no fault: see archiveFault() and hasRead().
    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_gathered, 0}; }
    /// Gives up what was gathered.
    void clear();

    /// Why the archive itself was not read as a whole; nothing when it was, or when there is none.
    const std::optional<Fault> &archiveFault() const { return m_archiveFault; }
    /// A file set aside that somebody has locked, so that it may be read another time.
    const std::optional<Fault> &lock() const { return m_lock; }
    /// Whether any file could be read, in part at least.
    bool hasRead() const { return m_hasRead; }

    /// Rows, once all are gathered.
    qint64 count() const { return m_gathered; }
    /// Rows that stand in files set aside, be they in the archive or not.
    Result<qint64> countSetAside();
    enum class Which {
        All,
        NotInArchive, ///< those that stand in files set aside only
    };
    /// The rows: number in the file that it was read from first, then the columns of an event by their names. Must go
    /// before this object does, or clear().
    Result<Statement> rows(Which which);

private:
    /// A file being read. The rows must go before their database does.
    struct Reading {
        Database database;
        std::optional<ReadableRows> rows;
        std::array<int, 8> columns{};
    };

    Result<Database> makeWorking();
    Result<void> make();
    Result<void> openNext();
    Result<std::unique_ptr<Reading>> open(const QString &name, Database::Use use);
    Result<void> readOn();
    Result<void> take(const Statement &row);
    void finishFile(const std::optional<Fault> &fault);

    ArchiveStore &m_archives;
    QString m_workingName;
    Database::Use m_use;
    QStringList m_files; ///< the archive first, "" when there is none
    QString m_condition;
    SqlValues m_values;
    std::optional<Database> m_working;
    std::optional<Statement> m_claim;
    std::optional<Statement> m_insert;
    std::unique_ptr<Reading> m_reading;
    qsizetype m_file = 0; ///< place of the one that is read, or next
    qint64 m_gathered = 0;
    bool m_hasRead = false;
    std::optional<Fault> m_archiveFault;
    std::optional<Fault> m_lock;
};
