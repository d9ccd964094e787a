#include "users/TruncatedCodes.h"

#include "codes/CodeRules.h"

#include <algorithm>

TruncatedCodes::TruncatedCodes(Database &database, UserRows users, Protocol protocol)
    : m_database(database), m_users(std::move(users)), m_protocol(protocol), m_transaction(database)
{
    // In the order of the codes, each row would bring another page into a cache that does not hold them all.
    for (qsizetype row = 0; row < count(); ++row)
        m_order.append({m_users.id(row), row});
    std::sort(m_order.begin(), m_order.end());
}

Result<bool> TruncatedCodes::step(const QDeadlineTimer &until)
{
    while (m_done < count()) {
        const auto &[id, row] = m_order[m_done];
        const User user = m_users[row];
        const QString truncated = truncatedCode(user.Codice, m_protocol);
        if (truncated != user.CodTronc) {
            if (const Result<void> stored = store(id, row, truncated); !stored) {
                m_transaction.takeBack();
                return stored.fault();
            }
        }
        if (++m_done < count() && until.hasExpired())
            return false;
    }
    m_update.reset();
    if (!m_changes.isEmpty()) {
        if (const Result<void> stands = m_transaction.commit(); !stands)
            return stands.fault();
    }
    return true;
}

Result<void> TruncatedCodes::store(qint64 id, qsizetype row, const QString &truncated)
{
    if (!m_update) {
        if (Result<void> begun = m_transaction.begin(); !begun)
            return begun;
        Result<Statement> prepared =
            m_database.prepare(QStringLiteral("UPDATE OR ROLLBACK Utenti SET CodTronc=? WHERE rowid=?"));
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
    m_changes.append({row, truncated});
    return {};
}
