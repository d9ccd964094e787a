#include "users/TruncatedCodes.h"

#include "codes/CodeRules.h"

TruncatedCodes::TruncatedCodes(Database &database, RecordSet users, int protocol)
    : m_database(database),
      m_users(std::move(users)),
      m_protocol(protocol),
      m_code(m_users.column(QStringLiteral("Codice"))),
      m_truncated(m_users.column(QStringLiteral("CodTronc"))),
      m_transaction(database)
{
}

Result<bool> TruncatedCodes::step(QDeadlineTimer budget)
{
    for (; m_row < count(); ++m_row) {
        m_users.moveTo(m_row);
        const QString truncated = truncatedCode(m_users.value(m_code), m_protocol);
        if (truncated != m_users.value(m_truncated)) {
            if (const Result<void> stored = store(m_users.rowId(), truncated); !stored) {
                m_transaction.takeBack();
                return stored.fault();
            }
        }
        if (budget.hasExpired() && m_row + 1 < count()) {
            ++m_row;
            return false;
        }
    }
    m_update.reset();
    if (m_changes > 0) {
        if (const Result<void> stands = m_transaction.commit(); !stands)
            return stands.fault();
    }
    return true;
}

Result<void> TruncatedCodes::store(qint64 id, const QString &truncated)
{
    if (!m_update) {
        if (Result<void> begun = m_transaction.begin(); !begun)
            return begun;
        Result<Statement> prepared = m_database.prepare(QStringLiteral("UPDATE Utenti SET CodTronc=? WHERE rowid=?"));
        if (!prepared)
            return prepared.fault();
        m_update = std::move(prepared.value());
    }
    m_update->bind(1, truncated);
    m_update->bind(2, id);
    const Result<bool> stepped = m_update->step();
    m_update->reset();
    if (!stepped)
        return stepped.fault();
    ++m_changes;
    return {};
}
