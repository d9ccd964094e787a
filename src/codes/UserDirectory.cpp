#include "codes/UserDirectory.h"

#include "archives/Tables.h"

#include <algorithm>

/// A register being read, row by row, then from its last user to its first for the look-up by code.
struct UserDirectory::Reading {
    Database database;
    std::optional<Statement> rows; ///< none when all are read
    bool isCopy = true;
    FreedInTurns<QList<User>> users;
    QHash<QString, int> firstOfCode;
    QList<int> next;
    int indexed = 0;
};

UserDirectory::UserDirectory(ArchiveStore &archives, QStringView copy, Copy atEnd)
    : m_archives(archives), m_copy(copy.toString()), m_atEnd(atEnd)
{
}

UserDirectory::~UserDirectory()
{
    m_reading.reset();
    // What cannot be removed now is replaced the next time.
    if (m_atEnd == Copy::Removed)
        (void)m_archives.remove(m_copy);
}

Result<void> UserDirectory::open()
{
    if (Result<void> begun = begin(); !begun)
        return begun;
    return finish(*this);
}

Result<void> UserDirectory::begin()
{
    m_reading.reset();
    if (m_copy.isEmpty())
        return openArchive(ArchiveName::Users, Database::Use::Untouched);
    (void)m_archives.remove(m_copy);
    Result<void> begun = m_archives.copy(ArchiveName::Users, m_copy);
    if (begun)
        begun = openArchive(m_copy, Database::Use::ThrowAway);
    return begun ? begun : readRegister(begun.fault());
}

Result<void> UserDirectory::openArchive(QStringView name, Database::Use use)
{
    m_reading.reset();
    Result<Database> database = m_archives.open(name, use);
    if (!database)
        return database.fault();
    // In the order in which they lie there: sorting them would be one long turn.
    Result<Statement> rows =
        database.value().prepare(QStringLiteral("SELECT Codice, Tipo, Cognome, Nome FROM Utenti ORDER BY rowid"));
    if (!rows)
        return rows.fault();
    m_reading.reset(new Reading{std::move(database.value()), std::move(rows.value()), name == m_copy, {}, {}, {}, 0});
    return {};
}

/// Begins anew with the register itself, unless somebody is changing it.
Result<void> UserDirectory::readRegister(const Fault &ofCopy)
{
    const Result<void> begun =
        ofCopy.code == FaultCode::Locked ? Result<void>(ofCopy) : openArchive(ArchiveName::Users, Database::Use::Safe);
    if (begun)
        return {};
    return Fault{begun.fault().code, m_archives.folder().path(QStringView(ArchiveName::Users).toString())};
}

Result<bool> UserDirectory::step(const QDeadlineTimer &until)
{
    if (!m_reading)
        return Fault{FaultCode::NotOpen, m_copy};
    if (m_reading->rows) {
        const Result<void> read = readOn(until);
        if (!read) {
            const bool isCopy = m_reading->isCopy;
            m_reading.reset();
            const Result<void> begun = isCopy ? readRegister(read.fault()) : read;
            return begun ? step(until) : Result<bool>(begun.fault());
        }
    }
    if (m_reading->rows || !index(until))
        return false;
    m_users = std::move(m_reading->users);
    m_firstOfCode = std::move(m_reading->firstOfCode);
    m_next = std::move(m_reading->next);
    m_reading.reset();
    m_known = true;
    return true;
}

Result<void> UserDirectory::readOn(const QDeadlineTimer &until)
{
    const Result<bool> isAll = m_reading->rows->each(until, [&](const Statement &row) {
        m_reading->users.append({row.text(0), typeOf(row.text(1)), row.text(2), row.text(3), {}, {}});
    });
    if (!isAll)
        return isAll.fault();
    if (isAll.value())
        m_reading->rows.reset();
    return {};
}

/// @return true when all are indexed
bool UserDirectory::index(const QDeadlineTimer &until)
{
    Reading &reading = *m_reading;
    const int count = static_cast<int>(reading.users.size());
    if (reading.indexed == 0) {
        reading.firstOfCode.reserve(count);
        reading.next.fill(-1, count);
    }
    while (reading.indexed < count) {
        const int place = count - ++reading.indexed;
        int &first = reading.firstOfCode[reading.users[place].Codice];
        // New in the hash it is 0, which comes last of all places and so is nobody's follower.
        reading.next[place] = first > 0 ? first : -1;
        first = place;
        if (until.hasExpired() && reading.indexed < count)
            return false;
    }
    return true;
}

const User *UserDirectory::find(const QString &code, std::optional<CodeType> type) const
{
    for (int place = m_firstOfCode.value(code, -1); place >= 0; place = m_next[place]) {
        if (m_users[place].Tipo == type)
            return &m_users[place];
    }
    return nullptr;
}

const User *UserDirectory::findCode(const QString &code) const
{
    const auto found = m_firstOfCode.constFind(code);
    return found == m_firstOfCode.constEnd() ? nullptr : &m_users[*found];
}

User UserDirectory::nearest(const QString &code, std::optional<CodeType> type) const
{
    const User *exact = find(code, type);
    const User *user = exact ? exact : findCode(code);
    return user ? *user : User();
}

NameSort UserDirectory::names(QString User::*name) const
{
    return NameSort([this] { return m_users.size(); },
                    [this, name](qsizetype place) {
                        const User &user = m_users[place];
                        return NameSort::Person{user.*name, user.Codice, place};
                    });
}

Task::Progress UserDirectory::progress() const
{
    return {m_reading ? m_reading->users.size() : m_users.size(), 0};
}
