#pragma once

#include "archives/Transaction.h"
#include "users/UserRows.h"

#include <QDeadlineTimer>

#include <optional>

/// Brings the truncated codes of all users in line with a protocol: where it has none they become empty. All of them
/// change, or on a fault none.
class TruncatedCodes
{
public:
    /// @param database  working copy of the register; must outlive this object
    TruncatedCodes(Database &database, UserRows users, int protocol);

    qsizetype count() const { return m_users.count(); }
    /// Users that have been looked at.
    qsizetype done() const { return m_done; }

    /// Goes on with at least one user until @p budget is spent.
    /// @return true when all are in line
    Result<bool> step(QDeadlineTimer budget);
    /// Users whose truncated code was another one.
    qsizetype changes() const { return m_changes; }

private:
    Result<void> store(qint64 id, const QString &truncated);

    Database &m_database;
    const UserRows m_users;
    const int m_protocol;
    QList<std::pair<qint64, qsizetype>> m_order; ///< ids and places of the rows, as they lie in the archive
    Transaction m_transaction;
    std::optional<Statement> m_update;
    qsizetype m_done = 0;
    qsizetype m_changes = 0;
};
