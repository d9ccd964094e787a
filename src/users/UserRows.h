#pragma once

#include "archives/RecordSet.h"
#include "codes/UserColumns.h"

/// The rows of the register as users, whatever the order of the set's columns.
class UserRows
{
public:
    /// @param users  as they are now: what is changed in the set afterwards is not seen
    explicit UserRows(RecordSet users);

    qsizetype count() const { return m_users.recordCount(); }
    /// @param row  0 to count() - 1
    User operator[](qsizetype row) const;
    /// One field of a user, where the others are not wanted.
    QString text(qsizetype row, QString User::*field) const;
    qint64 id(qsizetype row) const { return m_users.rowId(row); }

private:
    RecordSet m_users;
    std::array<int, userColumns.size()> m_columns{};
};

/// The user of the current row; nobody's fields without one.
User currentUser(const RecordSet &users);
