#include "users/TruncatedCodes.h"

#include "codes/CodeRules.h"

#include <algorithm>

TruncatedCodes::TruncatedCodes(Database &database, RecordSet &users, Protocol protocol)
    : m_database(database),
      m_users(users),
      m_code(users.column(QStringLiteral("Codice"))),
      m_truncated(users.column(QStringLiteral("CodTronc"))),
      m_protocol(protocol),
      m_transaction(database)
{
    // In the order of the codes, each row would bring another page into a cache that does not hold them all.
    m_order.reserve(count());
    for (qsizetype row = 0; row < count(); ++row)
        m_order.append({m_users.rowId(row), row});
    std::sort(m_order.begin(), m_order.end());
}

Result<bool> TruncatedCodes::step(const QDeadlineTimer &until)
{
    while (m_done < count()) {
        if (const Result<void> done = bringInLine(m_order[m_done].second); !done) {
            takeBack();
            return done.fault();
        }
        if (++m_done < count() && until.hasExpired())
            return false;
    }
    if (std::exchange(m_update, std::nullopt)) {
        if (const Result<void> stands = m_transaction.commit(); !stands) {
            takeBack();
            return stands.fault();
        }
        m_changes = {};
    }
    return true;
}

Result<void> TruncatedCodes::bringInLine(qsizetype row)
{
    const QString before = m_users.value(row, m_truncated);
    const QString truncated = truncatedCode(m_users.value(row, m_code), m_protocol);
    if (truncated == before)
        return {};
    if (Result<void> stored = store(m_users.rowId(row), truncated); !stored)
        return stored;
    m_users.note(row, m_truncated, truncated);
    m_changes.append({row, before});
    return {};
}

Result<void> TruncatedCodes::store(qint64 id, const QString &truncated)
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
    return stepped ? Result<void>() : Result<void>(stepped.fault());
}

void TruncatedCodes::takeBack()
{
    m_update.reset();
    m_transaction.takeBack();
    for (const Change &change : std::as_const(m_changes))
        m_users.note(change.row, m_truncated, change.before);
    m_changes = {};
}
