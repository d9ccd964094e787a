#include "link/UsersSnapshot.h"

#include "archives/Tables.h"

Result<void> UsersSnapshot::refresh()
{
    // The copy keeps the register free for others. Where there is no room for it, the register itself is read.
    (void)m_archives.remove(ArchiveName::UsersSnapshot);
    Result<void> copied = m_archives.copy(ArchiveName::Users, ArchiveName::UsersSnapshot);
    if (!copied && copied.fault().code == FaultCode::Locked)
        return copied;
    Result<Database> database = copied ? m_archives.open(ArchiveName::UsersSnapshot, Database::Use::ThrowAway)
                                       : m_archives.open(ArchiveName::Users, Database::Use::Safe);
    if (!database)
        return database.fault();
    Result<Statement> prepared =
        database.value().prepare(QStringLiteral("SELECT Codice, Tipo, Cognome, Nome FROM Utenti ORDER BY Codice"));
    if (!prepared)
        return prepared.fault();

    QHash<QString, QList<User>> users;
    Statement &row = prepared.value();
    for (;;) {
        const Result<bool> stepped = row.step();
        if (!stepped)
            return stepped.fault();
        if (!stepped.value())
            break;
        users[row.text(0)].append({row.text(1), {row.text(2), row.text(3)}});
    }
    m_users = std::move(users);
    m_known = true;
    return {};
}

UsersSnapshot::Name UsersSnapshot::name(const QString &code, const QString &type) const
{
    const auto found = m_users.constFind(code);
    if (found == m_users.constEnd())
        return {};
    for (const User &user : *found) {
        if (user.Tipo == type)
            return user.name;
    }
    return found->first().name;
}
