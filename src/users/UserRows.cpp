#include "users/UserRows.h"

UserRows::UserRows(RecordSet users) : m_users(std::move(users))
{
    for (size_t i = 0; i < userColumns.size(); ++i)
        m_columns.at(i) = m_users.column(QString::fromLatin1(userColumns.at(i).field));
}

User UserRows::operator[](qsizetype row) const
{
    User user;
    for (size_t i = 0; i < userColumns.size(); ++i)
        userColumns.at(i).value.set(user, m_users.value(row, m_columns.at(i)));
    return user;
}

QString UserRows::text(qsizetype row, QString User::*field) const
{
    return m_users.value(row, m_columns.at(userColumnOf(field)));
}

User currentUser(const RecordSet &users)
{
    User user;
    for (const UserColumn &column : userColumns)
        column.value.set(user, users.value(QString::fromLatin1(column.field)));
    return user;
}
