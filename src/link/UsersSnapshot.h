#pragma once

#include "archives/ArchiveStore.h"

#include <QHash>

/// The users that the road of events knows: read from a private copy of the register, Anagrafica.evn, and held in
/// memory so that a look-up costs the same with one user and with fifty thousand.
class UsersSnapshot
{
public:
    struct Name {
        QString Cognome;
        QString Nome;
    };

    /// @param archives  must outlive this object
    explicit UsersSnapshot(ArchiveStore &archives) : m_archives(archives) {}

    /// Copies the register anew and reads it. When that fails the users known so far stay, and the fault is the
    /// register's.
    Result<void> refresh();

    /// What is known is out of date: nobody is decided about until the register has been read again.
    void forget() { m_known = false; }
    /// True once the register has been read, until it is forgotten.
    bool isKnown() const { return m_known; }
    /// True when a user has the code, whatever its type.
    bool contains(const QString &code) const { return m_users.contains(code); }
    /// The user with this code and type; else the first with the code alone; empty names without one.
    Name name(const QString &code, const QString &type) const;

private:
    struct User {
        QString Tipo;
        Name name;
    };

    Result<void> read(QStringView archive, Database::Use use);

    ArchiveStore &m_archives;
    QHash<QString, QList<User>> m_users;
    bool m_known = false;
};
