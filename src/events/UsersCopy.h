#pragma once

#include "archives/ArchiveStore.h"

#include <QHash>

/// The users as they were when a window opened: read from a private copy of the register, so that the register stays
/// free, and held in memory, so that a look-up costs the same with one user and with fifty thousand.
class UsersCopy
{
public:
    struct User {
        QString Codice;
        QString Tipo;
        QString Cognome;
        QString Nome;
    };

    /// @param archives  must outlive this object; @param copy  name of the copy, relative to the program folder
    UsersCopy(ArchiveStore &archives, QString copy) : m_archives(archives), m_copy(std::move(copy)) {}
    /// Removes the copy.
    ~UsersCopy();
    UsersCopy(const UsersCopy &) = delete;
    UsersCopy &operator=(const UsersCopy &) = delete;

    /// Copies the register and reads it. On a fault no user is known.
    Result<void> open();

    /// All users in the order of their codes.
    const QList<User> &users() const { return m_users; }
    /// The user of exactly this code and type, null when there is none.
    const User *find(const QString &code, const QString &type) const;
    /// The first user with this code, whatever its type, null when there is none.
    const User *findCode(const QString &code) const;

    /// Places in users() of those that have a surname (a first name), sorted by it as nameKey() says.
    QList<int> bySurname() const { return sorted(&User::Cognome); }
    QList<int> byFirstName() const { return sorted(&User::Nome); }

private:
    QList<int> sorted(QString User::*name) const;

    ArchiveStore &m_archives;
    const QString m_copy;
    QList<User> m_users;
    QHash<QString, int> m_firstOfCode; ///< those with the same code follow it
};
