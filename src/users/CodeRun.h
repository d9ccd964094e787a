#pragma once

#include "archives/Transaction.h"
#include "platform/Task.h"
#include "startup/Protocol.h"
#include "users/UserRows.h"

#include <QSet>

#include <optional>

/// Registers transmitters whose codes follow each other. A code that a user has already, of whatever type, is left out;
/// the others are added, or on a fault none.
class CodeRun : public Task
{
public:
    /// @param database  working copy of the register; must outlive this object
    /// @param first     first code of the run, from 1
    /// @param count     number of codes, 1 to 9999
    CodeRun(Database &database, UserRows users, Protocol protocol, int first, int count);

    /// Goes on with at least one code. @return true when the run stands in the register
    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_done, m_count}; }

    struct Added {
        qint64 id = 0; ///< of his row
        QString code;
        QString truncated;
    };
    /// The transmitters that were added, in the order of the run.
    const QList<Added> &added() const { return m_added; }
    bool isIncomplete() const { return m_isIncomplete; }

private:
    bool look(const QDeadlineTimer &until);
    Result<void> add(const QString &code);

    Database &m_database;
    const UserRows m_users;
    QSet<QString> m_taken;
    qsizetype m_looked = 0; ///< users whose codes are in it
    const Protocol m_protocol;
    const int m_first;
    const int m_count;
    Transaction m_transaction;
    std::optional<Statement> m_insert;
    int m_done = 0;
    bool m_isIncomplete = false;
    QList<Added> m_added;
};
