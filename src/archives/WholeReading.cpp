#include "archives/WholeReading.h"

Result<void> WholeReading::list()
{
    m_isListed = true;
    // One look at the journal for all of it.
    if (Result<void> begun = m_database.execute("BEGIN"); !begun)
        return begun;
    return m_database.each(
        QStringLiteral(
            "SELECT type, name, tbl_name FROM sqlite_master WHERE type IN ('table', 'index') AND rootpage > 0"),
        {}, [this](const Statement &row) {
            const QString by = row.text(0) == QStringLiteral("table")
                                   ? QStringLiteral("NOT INDEXED")
                                   : QStringLiteral("INDEXED BY \"%1\"").arg(row.text(1));
            // To count would not do: the library counts a table by its smallest index, whatever it is told.
            m_statements.append(QStringLiteral("SELECT 1 FROM \"%1\" %2").arg(row.text(2), by));
        });
}

Result<bool> WholeReading::step(const QDeadlineTimer &until)
{
    if (!m_isListed) {
        if (const Result<void> listed = list(); !listed)
            return listed.fault();
    }
    do {
        if (!m_rows) {
            if (m_statements.isEmpty()) {
                const Result<void> ended = m_database.execute("COMMIT");
                return ended ? Result<bool>(true) : Result<bool>(ended.fault());
            }
            Result<Statement> rows = m_database.prepare(m_statements.takeFirst());
            if (!rows)
                return rows.fault();
            m_rows = std::move(rows.value());
        }
        const Result<bool> row = m_rows->step();
        if (!row)
            return row.fault();
        if (row.value())
            ++m_read;
        else
            m_rows.reset();
    } while (!until.hasExpired());
    return false;
}
