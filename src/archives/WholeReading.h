#pragma once

#include "archives/Database.h"
#include "platform/Task.h"

/// Reads all pages of an archive that hold anything, in turns: what cannot be read any more is Damaged.
class WholeReading : public Task
{
public:
    /// @param database  must outlive this object
    explicit WholeReading(Database &database) : m_database(database) {}

    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_read, 0}; }

private:
    Result<void> list();

    Database &m_database;
    bool m_isListed = false;
    QStringList m_statements; ///< still to be run, each reads one table or index
    std::optional<Statement> m_rows;
    qint64 m_read = 0;
};
