#pragma once

#include "archives/Transaction.h"
#include "platform/Task.h"
#include "startup/Protocol.h"
#include "users/ImportCheck.h"
#include "users/UserChanges.h"

#include <optional>

/// Brings the lines of a dry run into the register: new users, and other names of those that are there. All of them
/// come in with commit(); on a fault, and where this object goes before, none.
class UserImport : public Task
{
public:
    /// @param database  working copy of the register, as it was at the dry run; must outlive this object
    /// @param lines     refused ones are passed over
    UserImport(Database &database, FreedInTurns<QList<ImportLine>> lines, Protocol protocol);

    /// Goes on with at least one line. @return true when all can be read from the register
    Result<bool> step(const QDeadlineTimer &until) override;
    Result<void> commit() { return m_transaction.commit(); }
    Progress progress() const override { return {m_done, m_lines.size()}; }
    /// What has been done so far; it counts with commit().
    const UserChanges &changes() const { return m_changes; }

private:
    Result<void> begin();
    Result<void> take(const ImportLine &line);

    Database &m_database;
    const FreedInTurns<QList<ImportLine>> m_lines;
    const Protocol m_protocol;
    Transaction m_transaction;
    std::optional<Statement> m_insert;
    std::optional<Statement> m_update;
    UserChanges m_changes;
    qsizetype m_done = 0;
};
