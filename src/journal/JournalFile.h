#pragma once

#include "archives/ArchiveStore.h"
#include "archives/OpenedNames.h"
#include "journal/JournalRow.h"

#include <QList>

#include <memory>
#include <optional>

/// The service journal of one year, open to be written to, in write-ahead mode.
class JournalFile
{
public:
    /// Running numbers of a journal that nothing is known of begin here times its year: behind those of any year
    /// before.
    static constexpr qint64 NumbersOfYear = 10'000'000;

    /// What a journal ends with.
    struct End {
        qint64 number = 0;                     ///< of the last row, 0 without one
        JournalKind kind = JournalKind::Ended; ///< of the last row of the supervisor
        std::optional<Moment> alive;           ///< last sign of life
    };

    /// Opens the file of @p year, made when there is none, with a day archive's salt.
    static Result<std::unique_ptr<JournalFile>> open(ArchiveStore &archives, int year);
    /// What the last file that is not of @p year ends with; nothing without another file.
    static Result<std::optional<End>> endOfOther(ArchiveStore &archives, int year);
    /// Years that have a file, in their order.
    static QList<int> years(const ProgramFolder &folder);

    ~JournalFile();
    JournalFile(const JournalFile &) = delete;
    JournalFile &operator=(const JournalFile &) = delete;

    int year() const { return m_year; }
    /// It had no row when it was opened.
    bool isNew() const { return m_end.number == 0; }
    /// As it was when it was opened.
    const End &end() const { return m_end; }
    /// Writes all of @p rows or none, and the sign of life @p alive if there is one; one flush. Their numbers grow by
    /// the rows that another program has written since the last time.
    /// @return number of the last row in the file
    Result<qint64> write(QList<JournalRow> rows, const std::optional<Moment> &alive);
    /// Writes one row for a program that is not the supervisor, which may be at work.
    static Result<void> append(ArchiveStore &archives, JournalRow row);
    /// True when another file, or none, stands under its name or that of its write-ahead journal. Then closing it
    /// leaves alone what is not its own.
    bool hasMoved() const { return m_names.hasMoved(); }

private:
    JournalFile(ArchiveStore &archives, int year, Database database);
    Result<void> insert(const JournalRow &row);

    ArchiveStore &m_archives;
    int m_year;
    Database m_database;
    End m_end;
    qint64 m_last = 0; ///< number of the last row that is known of
    OpenedNames m_names;
};
