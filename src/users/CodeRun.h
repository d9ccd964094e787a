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
    CodeRun(Database &database, const UserRows &users, Protocol protocol, int first, int count);

    /// Goes on with at least one code. @return true when the run stands in the register
    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_done, m_count}; }

    /// First code that was added; "" when none was.
    const QString &firstAdded() const { return m_firstAdded; }
    bool isIncomplete() const { return m_isIncomplete; }

private:
    Result<void> add(const QString &code);

    Database &m_database;
    QSet<QString> m_taken;
    const Protocol m_protocol;
    const int m_first;
    const int m_count;
    Transaction m_transaction;
    std::optional<Statement> m_insert;
    int m_done = 0;
    bool m_isIncomplete = false;
    QString m_firstAdded;
};
