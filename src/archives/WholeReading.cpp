#include "archives/WholeReading.h"

#include <QFileInfo>

namespace {

/// Up to here a table is counted, which reads its pages without a look at each row, in less than a turn.
constexpr qint64 smallBytes = 2 << 20;

} // namespace

Result<void> WholeReading::list()
{
    m_isListed = true;
    const QString what =
        QFileInfo(m_database.path()).size() <= smallBytes ? QStringLiteral("count(*)") : QStringLiteral("1");
    return m_database.each(
        QStringLiteral(
            "SELECT type, name, tbl_name FROM sqlite_master WHERE type IN ('table', 'index') AND rootpage > 0"),
        {}, [this, &what](const Statement &row) {
            const QString by = row.text(0) == QStringLiteral("table")
                                   ? QStringLiteral("NOT INDEXED")
                                   : QStringLiteral("INDEXED BY \"%1\"").arg(row.text(1));
            m_statements.append(QStringLiteral("SELECT %1 FROM \"%2\" %3").arg(what, row.text(2), by));
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
            if (m_statements.isEmpty())
                return true;
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
