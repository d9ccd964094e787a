#pragma once

#include "archives/ArchiveStore.h"
#include "journal/Coverage.h"
#include "platform/Task.h"

#include <memory>

/// Reads in turns the rows that tell about a range of years: theirs, those of the year before, from which what stood
/// goes on, and the first ones of the year behind. Rows that cannot be read are missing: see coverage().
class JournalReading : public Task
{
public:
    /// @param archives  must outlive this object
    JournalReading(ArchiveStore &archives, int firstYear, int lastYear, Database::Use use = Database::Use::Safe);

    /// Never fails: a file that cannot be read is passed over, and stands in unread().
    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override;

    /// The rows, when all has been read.
    const JournalContent &content() const { return m_content; }
    /// Why the first file that could not be read could not be.
    const std::optional<Fault> &unread() const { return m_unread; }

private:
    Result<bool> readOn(int year);
    void sort();

    ArchiveStore &m_archives;
    int m_lastYear;
    Database::Use m_use;
    QList<int> m_years; ///< still to be read
    qsizetype m_files;
    std::optional<Database> m_database; ///< of the first of them
    qint64 m_number = 0;                ///< read so far in it
    JournalContent m_content;
    qint64 m_lastNumber = 0; ///< in the file that the sign of life comes from
    std::optional<Fault> m_unread;
};
