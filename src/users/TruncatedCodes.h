#pragma once

#include "archives/Transaction.h"
#include "platform/Task.h"
#include "startup/Protocol.h"
#include "users/UserRows.h"

#include <optional>

/// Brings the truncated codes of all users in line with a protocol: where it has none they become empty. All of them
/// change, or on a fault none.
class TruncatedCodes : public Task
{
public:
    /// @param database  working copy of the register; must outlive this object
    TruncatedCodes(Database &database, UserRows users, Protocol protocol);

    /// Goes on with at least one user. @return true when all are in line
    Result<bool> step(const QDeadlineTimer &until) override;
    /// Users that have been looked at.
    Progress progress() const override { return {m_done, count()}; }
    struct Change {
        qsizetype row = 0; ///< among the users
        QString truncated;
    };
    /// Users whose truncated code was another one.
    const QList<Change> &changes() const { return m_changes; }

private:
    qsizetype count() const { return m_users.count(); }
    Result<void> store(qint64 id, qsizetype row, const QString &truncated);

    Database &m_database;
    const UserRows m_users;
    const Protocol m_protocol;
    QList<std::pair<qint64, qsizetype>> m_order; ///< ids and places of the rows, as they lie in the archive
    Transaction m_transaction;
    std::optional<Statement> m_update;
    qsizetype m_done = 0;
    QList<Change> m_changes;
};
