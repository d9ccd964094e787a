#include "journal/JournalReading.h"

#include "archives/Tables.h"
#include "journal/JournalFile.h"

#include <algorithm>

namespace {

/// Rows that are read in one go: about a millisecond.
constexpr qint64 rowsAtOnce = 500;

} // namespace

JournalReading::JournalReading(ArchiveStore &archives, int firstYear, int lastYear, Database::Use use)
    : m_archives(archives), m_lastYear(lastYear), m_use(use)
{
    for (const int year : JournalFile::years(archives.folder())) {
        if (year >= firstYear - 1 && year <= lastYear + 1)
            m_years.append(year);
    }
    m_files = m_years.size();
}

Task::Progress JournalReading::progress() const
{
    return {m_files - m_years.size(), m_files};
}

Result<bool> JournalReading::step(const QDeadlineTimer &until)
{
    while (!m_years.isEmpty()) {
        const Result<bool> more = readOn(m_years.constFirst());
        if (!more && !m_unread)
            m_unread = more.fault();
        if (!more || !more.value()) {
            m_database.reset();
            m_number = 0;
            m_years.removeFirst();
            if (m_years.isEmpty())
                sort();
        }
        if (until.hasExpired())
            break;
    }
    return m_years.isEmpty();
}

/// Reads some rows of a year. @return whether there may be more
Result<bool> JournalReading::readOn(int year)
{
    if (!m_database) {
        Result<Database> opened = m_archives.open(ArchiveName::journal(year), m_use);
        if (!opened)
            return opened.fault();
        m_database.emplace(std::move(opened.value()));
    }
    qint64 count = 0;
    const Result<void> read = m_database->each(
        QStringLiteral("SELECT Num, Data, Ora, Scarto, Tipo, Dato1, Dato2 FROM Giornale WHERE Num > ? ORDER BY Num "
                       "LIMIT ?"),
        {m_number, rowsAtOnce}, [this, &count](const Statement &row) {
            ++count;
            m_number = row.integer(0);
            if (const std::optional<Moment> at = momentOf(row.text(1), row.text(2), row.integer(3)))
                m_content.rows.append(
                    {m_number, *at, static_cast<JournalKind>(row.integer(4)), row.text(5), row.text(6)});
        });
    if (!read)
        return read.fault();
    // Of the year behind only how the range ended.
    if (count == rowsAtOnce && year <= m_lastYear)
        return true;
    if (m_number < m_lastNumber)
        return false;
    m_lastNumber = m_number;
    m_content.alive.reset();
    const Result<void> isAlive =
        m_database->each(QStringLiteral("SELECT Data, Ora, Scarto FROM Vita"), {}, [this](const Statement &row) {
            m_content.alive = momentOf(row.text(0), row.text(1), row.integer(2));
        });
    return isAlive ? Result<bool>(false) : isAlive.fault();
}

/// A clock that was set back over New Year has later rows in an earlier year's file.
void JournalReading::sort()
{
    const auto isBefore = [](const JournalRow &a, const JournalRow &b) { return a.number < b.number; };
    QList<JournalRow> &rows = m_content.rows;
    if (!std::is_sorted(rows.cbegin(), rows.cend(), isBefore))
        std::stable_sort(rows.begin(), rows.end(), isBefore);
}
