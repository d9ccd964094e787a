#pragma once

#include "archives/RecordSet.h"
#include "archives/Transaction.h"
#include "platform/Task.h"
#include "startup/Protocol.h"

#include <optional>

/// Brings the truncated codes of all users in line with a protocol: where it has none they become empty. All of them
/// change, in the archive and in the set, or on a fault and where this object goes before its end, none.
class TruncatedCodes : public Task
{
public:
    /// @param database  working copy of the register; @param users  its rows, which nobody else changes meanwhile. Both
    /// must outlive this object
    TruncatedCodes(Database &database, RecordSet &users, Protocol protocol);
    ~TruncatedCodes() override { takeBack(); }

    /// Goes on with at least one user. @return true when all are in line
    Result<bool> step(const QDeadlineTimer &until) override;
    /// Users that have been looked at.
    Progress progress() const override { return {m_done, count()}; }

private:
    struct Change {
        qsizetype row = 0;
        QString before;
    };

    qsizetype count() const { return m_users.recordCount(); }
    Result<void> bringInLine(qsizetype row);
    Result<void> store(qint64 id, const QString &truncated);
    void takeBack();

    Database &m_database;
    RecordSet &m_users;
    const int m_code; ///< columns
    const int m_truncated;
    const Protocol m_protocol;
    QList<std::pair<qint64, qsizetype>> m_order; ///< ids and places of the rows, as they lie in the archive
    Transaction m_transaction;
    std::optional<Statement> m_update;
    qsizetype m_done = 0;
    FreedInTurns<QList<Change>> m_changes; ///< until they stand
};
