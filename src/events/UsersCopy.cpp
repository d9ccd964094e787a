#include "events/UsersCopy.h"

#include "archives/Tables.h"
#include "texts/NameKey.h"

#include <algorithm>

UsersCopy::~UsersCopy()
{
    // What cannot be removed now is replaced when the window opens the next time.
    (void)m_archives.remove(m_copy);
}

Result<void> UsersCopy::open()
{
    m_users.clear();
    m_firstOfCode.clear();
    if (Result<void> removed = m_archives.remove(m_copy); !removed)
        return removed;
    if (Result<void> copied = m_archives.copy(ArchiveName::Users, m_copy); !copied)
        return copied;
    Result<Database> database = m_archives.open(m_copy, Database::Use::ThrowAway);
    if (!database)
        return database.fault();
    Result<Statement> prepared = database.value().prepare(
        QStringLiteral("SELECT Codice, Tipo, Cognome, Nome FROM Utenti ORDER BY Codice, rowid"));
    if (!prepared)
        return prepared.fault();
    QList<User> users;
    Statement &row = prepared.value();
    for (;;) {
        const Result<bool> stepped = row.step();
        if (!stepped)
            return stepped.fault();
        if (!stepped.value())
            break;
        users.append({row.text(0), row.text(1), row.text(2), row.text(3)});
    }
    m_users = std::move(users);
    for (int i = static_cast<int>(m_users.size()) - 1; i >= 0; --i)
        m_firstOfCode.insert(m_users[i].Codice, i);
    return {};
}

const UsersCopy::User *UsersCopy::find(const QString &code, const QString &type) const
{
    for (int i = m_firstOfCode.value(code, static_cast<int>(m_users.size()));
         i < m_users.size() && m_users[i].Codice == code; ++i) {
        if (m_users[i].Tipo == type)
            return &m_users[i];
    }
    return nullptr;
}

const UsersCopy::User *UsersCopy::findCode(const QString &code) const
{
    const auto found = m_firstOfCode.constFind(code);
    return found == m_firstOfCode.constEnd() ? nullptr : &m_users[*found];
}

QList<int> UsersCopy::sorted(QString User::*name) const
{
    QList<std::pair<QString, int>> keys;
    for (int i = 0; i < m_users.size(); ++i) {
        if (!(m_users[i].*name).isEmpty())
            keys.append({nameKey(m_users[i].*name), i});
    }
    std::sort(keys.begin(), keys.end());
    QList<int> places;
    places.reserve(keys.size());
    for (const auto &[key, place] : keys)
        places.append(place);
    return places;
}
