#include "link/UsersSnapshot.h"

#include "archives/Tables.h"

Result<void> UsersSnapshot::refresh()
{
    // The copy keeps the register free for others. Where there is no room for it, the register itself is read.
    (void)m_archives.remove(ArchiveName::UsersSnapshot);
    Result<void> done = m_archives.copy(ArchiveName::Users, ArchiveName::UsersSnapshot);
    if (done)
        done = read(ArchiveName::UsersSnapshot, Database::Use::ThrowAway);
    if (!done && done.fault().code != FaultCode::Locked)
        done = read(ArchiveName::Users, Database::Use::Safe);
    if (!done)
        return Fault{done.fault().code, m_archives.folder().path(QStringView(ArchiveName::Users).toString())};
    return {};
}

Result<void> UsersSnapshot::read(QStringView archive, Database::Use use)
{
    Result<Database> database = m_archives.open(archive, use);
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
