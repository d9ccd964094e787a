#pragma once

#include "archives/ArchiveFetch.h"

#include <functional>
#include <memory>

/// Puts the users of another register into a working copy that has none yet, in turns. Its passwords are left alone.
///
/// Columns are known by their names, in whatever order. What the working copy has no column for is left out, what the
/// other register lacks stays empty; without Codice or Tipo it is no register.
class UsersFetch : public Task
{
public:
    /// Makes the working copy. @return the copy, which must outlive this object
    using BeginCopy = std::function<Result<Database *>()>;

    /// @param archives  must outlive this object
    /// @param file      absolute path of the other register; nothing is written there
    /// @param begin     asked once the other register has been read through
    UsersFetch(ArchiveStore &archives, QString file, BeginCopy begin);
    ~UsersFetch() override;

    /// @return OwnRegister, NoRegister, Damaged and those of ArchiveFetch, with the path of the file as their subject;
    /// faults of the working copy with another one
    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_copied, 0}; }

private:
    struct Rows;

    Result<void> checkForeign() const;
    Result<bool> fetch(const QDeadlineTimer &until);
    Result<void> openFetched();
    Result<bool> beginRows();
    Result<bool> copyRows(const QDeadlineTimer &until);
    Fault ofFile(const Fault &fault) const { return {fault.code, m_file}; }

    ArchiveStore &m_archives;
    const QString m_file;
    const BeginCopy m_begin;
    std::unique_ptr<ArchiveFetch> m_fetch;
    bool m_isFetched = false;
    std::optional<Database> m_users; ///< a copy of the other register
    QStringList m_columns;           ///< of its users, in small letters
    bool m_isWhole = false;
    std::unique_ptr<Rows> m_rows;
    qint64 m_copied = 0;
};
