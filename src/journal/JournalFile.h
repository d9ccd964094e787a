#pragma once

#include "archives/ArchiveStore.h"
#include "journal/JournalRow.h"
#include "platform/FileIdentity.h"

#include <QList>

#include <array>
#include <memory>
#include <optional>

/// The service journal of one year, open to be written to, in write-ahead mode.
class JournalFile
{
public:
    /// What a journal ends with.
    struct End {
        qint64 number = 0; ///< of the last row, 0 without one
        JournalKind kind = JournalKind::Ended;
        std::optional<Moment> alive; ///< last sign of life
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
    /// Writes all of @p rows or none, and the sign of life @p alive; one flush.
    Result<void> write(const QList<JournalRow> &rows, const Moment &alive);
    /// True when another file, or none, stands under its name or that of its write-ahead journal. Then closing it
    /// leaves alone what is not its own.
    bool hasMoved() const;

private:
    struct Named {
        QString path;
        std::optional<FileIdentity> file; ///< nothing when it could not be told
        bool isOther() const;
    };

    JournalFile(ArchiveStore &archives, int year, Database database);

    ArchiveStore &m_archives;
    int m_year;
    Database m_database;
    End m_end;
    std::array<Named, 3> m_names; ///< file, journal and its index as they were when it was opened
};
