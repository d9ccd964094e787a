#pragma once

#include "archives/RecordSet.h"
#include "archives/Transaction.h"

#include <QDeadlineTimer>

#include <optional>

/// Brings the truncated codes of all users in line with a protocol: where it has none they become empty. All of them
/// change, or on a fault none.
class TruncatedCodes
{
public:
    /// @param database  working copy of the register; must outlive this object
    /// @param users     all fields of all its users, as they are now
    TruncatedCodes(Database &database, RecordSet users, int protocol);

    qsizetype count() const { return m_users.recordCount(); }
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
    RecordSet m_users;
    const int m_protocol;
    const int m_code;
    const int m_truncated;
    QList<std::pair<qint64, qsizetype>> m_order; ///< ids and places of the rows, as they lie in the archive
    Transaction m_transaction;
    std::optional<Statement> m_update;
    qsizetype m_done = 0;
    qsizetype m_changes = 0;
};
