#pragma once

#include "archives/ArchiveStore.h"
#include "platform/CsvFile.h"
#include "startup/Protocol.h"
#include "users/UserRows.h"

#include <memory>
#include <optional>

class Texts;

/// What an export of users writes, and where to.
struct UserExport {
    QString target; ///< absolute path
    char separator = ',';
    /// The truncated codes are those of this one, whatever the register holds.
    Protocol protocol = Protocol::NotKnown;

    /// Writes a header in the language of @p texts, then the users in their order. @param disk  must outlive the task
    std::unique_ptr<Task> task(Disk &disk, const Texts &texts, UserRows users) const;
};

/// Reads the users of the register as it is saved, in turns, from a private copy.
class SavedUsers : public Task
{
public:
    /// @param archives  must outlive this object
    explicit SavedUsers(ArchiveStore &archives) : m_archives(archives) {}
    ~SavedUsers() override;
    SavedUsers(const SavedUsers &) = delete;
    SavedUsers &operator=(const SavedUsers &) = delete;

    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_set ? m_set->rowsRead() : 0, 0}; }

    /// In the order of the register's window; only when they have been read.
    UserRows users() const { return UserRows(*m_set); }

private:
    ArchiveStore &m_archives;
    std::optional<Database> m_database;
    std::optional<RecordSet> m_set;
};
