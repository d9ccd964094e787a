#include "users/UserRegister.h"

#include "archives/Tables.h"
#include "users/UsersFetch.h"

#include <algorithm>
#include <string_view>

namespace {

QString text(QStringView name)
{
    return name.toString();
}

const QString &codeField()
{
    static const QString field = QStringLiteral("Codice");
    return field;
}

RecordSet::Values codeValues(const QString &code, CodeType type, Protocol protocol)
{
    return {{codeField(), code},
            {QStringLiteral("Tipo"), typeText(type)},
            {QStringLiteral("CodTronc"), truncatedCode(code, protocol)}};
}

/// The passwords as they stand in a register.
Result<SqlValues> passwordsIn(Database &users)
{
    SqlValues passwords;
    const Result<void> read = users.each(QStringLiteral("SELECT PassProg, PassUte, PassUtility FROM Password LIMIT 1"),
                                         {}, [&passwords](const Statement &row) {
                                             passwords = {row.text(0), row.text(1), row.text(2)};
                                         });
    if (!read)
        return read.fault();
    if (passwords.isEmpty())
        return Fault{FaultCode::Damaged, users.path()};
    return passwords;
}

static_assert(std::all_of(userColumns.begin(), userColumns.end(), [](const UserColumn &column) {
    return !column.isTyped || std::string_view(column.widest).size() == UserRegister::LongestText;
}));

} // namespace

QString limitedText(const QString &text)
{
    // Pasted letters may come in two parts, and the last one may be half a character.
    QString limited = text.normalized(QString::NormalizationForm_C).left(UserRegister::LongestText);
    if (!limited.isEmpty() && limited.back().isHighSurrogate())
        limited.chop(1);
    return limited;
}

UserRegister::UserRegister(ArchiveStore &archives, std::function<Protocol()> protocol)
    : m_archives(archives),
      m_protocol(std::move(protocol)),
      m_editor(archives, {text(ArchiveName::Users), text(ArchiveName::UsersCopy),
                          QStringLiteral("SELECT * FROM Utenti"), text(ArchiveName::UsersBackup), codeField()})
{
}

class UserRegister::Reading : public Task
{
public:
    explicit Reading(UserRegister &users) : m_users(users) {}

    Result<bool> step(const QDeadlineTimer &until) override
    {
        if (!m_surnames) {
            Result<bool> read = m_users.m_editor.read(until);
            if (!read || !read.value())
                return read;
            const UserRows rows(m_users.users());
            m_surnames.emplace(m_users.m_surnames.sort(rows));
            m_firstNames.emplace(m_users.m_firstNames.sort(rows));
            return false;
        }
        for (NameSort *names : {&*m_surnames, &*m_firstNames}) {
            Result<bool> sorted = names->step(until);
            if (!sorted || !sorted.value())
                return sorted;
        }
        m_users.m_surnames.set(m_surnames->take());
        m_users.m_firstNames.set(m_firstNames->take());
        return true;
    }
    Progress progress() const override { return {m_users.m_editor.set().rowsRead(), 0}; }

private:
    UserRegister &m_users;
    std::optional<NameSort> m_surnames;
    std::optional<NameSort> m_firstNames;
};

std::unique_ptr<Task> UserRegister::reading()
{
    return std::make_unique<Reading>(*this);
}

class UserRegister::Restoring : public Task
{
public:
    Restoring(UserRegister &users, const QString &file)
        : m_users(users),
          m_fetch(std::make_unique<UsersFetch>(users.m_archives, file, [&users] { return users.beginAnew(); })),
          m_reading(users)
    {
    }

    Result<bool> step(const QDeadlineTimer &until) override
    {
        if (!m_fetch)
            return m_reading.step(until);
        Result<bool> fetched = m_fetch->step(until);
        if (fetched && !fetched.value())
            return false;
        m_fetch.reset();
        if (!fetched) {
            m_users.discard();
            return fetched;
        }
        m_users.setChanged();
        return false;
    }
    Progress progress() const override { return m_fetch ? m_fetch->progress() : m_reading.progress(); }

private:
    UserRegister &m_users;
    std::unique_ptr<UsersFetch> m_fetch; ///< none when all users are in the working copy
    Reading m_reading;
};

std::unique_ptr<Task> UserRegister::restoring(const QString &file)
{
    return std::make_unique<Restoring>(*this, file);
}

/// A working copy without users, with the passwords in force.
Result<Database *> UserRegister::beginAnew()
{
    Result<Database> archive = m_archives.open(ArchiveName::Users, Database::Use::Safe);
    if (!archive)
        return archive.fault();
    const Result<SqlValues> passwords = passwordsIn(archive.value());
    if (!passwords)
        return passwords.fault();
    Result<void> begun = m_editor.beginAnew(TableLayout::Users);
    if (begun)
        begun = m_editor.database()->execute(
            QStringLiteral("INSERT INTO Password (PassProg, PassUte, PassUtility) VALUES (?,?,?)"), passwords.value());
    return begun ? Result<Database *>(m_editor.database()) : Result<Database *>(begun.fault());
}

std::unique_ptr<Task> UserRegister::saving()
{
    return m_editor.saving([this] { return keepPasswords(); });
}

/// The passwords stand in the same archive and may have been set since it was copied.
Result<void> UserRegister::keepPasswords()
{
    Database *copy = m_editor.database();
    // One that is not at hand after a save that failed has got them then.
    if (!copy)
        return {};
    Result<Database> archive = m_archives.open(ArchiveName::Users, Database::Use::Safe);
    if (!archive) {
        // Without an archive those of the copy are the latest. One that is only out of reach may hold others.
        const FaultCode code = archive.fault().code;
        const bool isGone = code == FaultCode::NotFound || code == FaultCode::Damaged;
        return isGone ? Result<void>() : Result<void>(archive.fault());
    }
    const Result<SqlValues> passwords = passwordsIn(archive.value());
    if (!passwords)
        return passwords.fault();
    return copy->execute(QStringLiteral("UPDATE Password SET PassProg = ?, PassUte = ?, PassUtility = ?"),
                         passwords.value());
}

void UserRegister::discard()
{
    m_editor.discard();
}

QList<User> UserRegister::all()
{
    const UserRows rows(users());
    QList<User> all;
    all.reserve(rows.count());
    for (qsizetype row = 0; row < rows.count(); ++row)
        all.append(rows[row]);
    return all;
}

bool UserRegister::find(const QString &code)
{
    return users().findFirst({{codeField(), code}});
}

bool UserRegister::contains(const QString &code, CodeType type) const
{
    return m_editor.contains({{codeField(), code}, {QStringLiteral("Tipo"), typeText(type)}});
}

Result<void> UserRegister::add(const QString &code, CodeType type)
{
    if (Result<void> added = m_editor.add(codeValues(code, type, m_protocol())); !added)
        return added;
    const qint64 id = m_editor.database()->lastRow();
    m_changes.add(id);
    users().settle(id);
    return {};
}

Result<void> UserRegister::changeCode(qint64 id, const QString &code, CodeType type)
{
    if (!users().moveToRow(id))
        return Fault{FaultCode::NotFound, archive()};
    if (Result<void> changed = m_editor.edit(codeValues(code, type, m_protocol())); !changed)
        return changed;
    m_changes.change(id);
    users().settle(id);
    return {};
}

Result<void> UserRegister::remove()
{
    const qint64 id = users().rowId();
    const User user = current();
    if (Result<void> removed = m_editor.remove(); !removed)
        return removed;
    m_changes.remove(id);
    m_surnames.change(id, user.Cognome, {});
    m_firstNames.change(id, user.Nome, {});
    return {};
}

Result<void> UserRegister::setText(qsizetype row, QString User::*field, const QString &text)
{
    RecordSet &all = users();
    const QString limited = limitedText(text);
    const QString before = UserRows(all).text(row, field);
    if (limited == before)
        return {};
    const qsizetype current = all.position();
    all.moveTo(row);
    const qint64 id = all.rowId();
    const QString name = QString::fromLatin1(userColumns.at(userColumnOf(field)).field);
    Result<void> stored = m_editor.edit({{name, limited}});
    all.moveTo(current);
    if (stored) {
        m_changes.change(id);
        for (NameList *names : {&m_surnames, &m_firstNames}) {
            if (names->name() == field)
                names->change(id, before, limited);
        }
    }
    return stored;
}

std::unique_ptr<TruncatedCodes> UserRegister::truncatedCodes()
{
    return std::make_unique<TruncatedCodes>(*m_editor.database(), users(), m_protocol());
}

Result<std::unique_ptr<CodeRun>> UserRegister::codeRun(int first, int count)
{
    if (!m_editor.database())
        return Fault{FaultCode::NotOpen, archive()};
    return std::make_unique<CodeRun>(*m_editor.database(), UserRows(users()), m_protocol(), first, count);
}

void UserRegister::codeRunEnded(const QList<CodeRun::Added> &added)
{
    setChanged();
    if (added.isEmpty())
        return;
    QList<RecordSet::Added> rows;
    rows.reserve(added.size());
    for (const auto &[id, code, truncated] : added) {
        m_changes.add(id);
        rows.append({id, {code, typeText(CodeType::Transmitter), truncated}});
    }
    users().noteAdded({codeField(), QStringLiteral("Tipo"), QStringLiteral("CodTronc")}, rows);
    find(added.constFirst().code);
}

/// The rows are read before they stand: when either fails, the window and the working copy have what they had.
class UserRegister::Importing : public Task
{
public:
    Importing(UserRegister &users, std::unique_ptr<UserImport> import) : m_users(users), m_import(std::move(import)) {}

    Result<bool> step(const QDeadlineTimer &until) override
    {
        if (!m_reading) {
            Result<bool> imported = m_import->step(until);
            if (!imported)
                return imported;
            if (imported.value())
                m_reading.emplace(m_users);
            return false;
        }
        Result<bool> read = m_reading->step(until);
        if (!read || !read.value())
            return read;
        if (m_fault)
            return *m_fault;
        if (const Result<void> stands = m_import->commit(); !stands) {
            m_fault = stands.fault();
            m_reading.emplace(m_users);
            return false;
        }
        m_users.m_changes.follow(m_import->changes());
        m_users.setChanged();
        return true;
    }
    Progress progress() const override { return m_reading ? m_reading->progress() : m_import->progress(); }

private:
    UserRegister &m_users;
    std::unique_ptr<UserImport> m_import;
    std::optional<Reading> m_reading; ///< when all have been taken
    std::optional<Fault> m_fault;     ///< why they do not stand
};

Result<std::unique_ptr<Task>> UserRegister::importing(const FreedInTurns<QList<ImportLine>> &lines)
{
    if (!m_editor.database())
        return Fault{FaultCode::NotOpen, archive()};
    auto import = std::make_unique<UserImport>(*m_editor.database(), lines, m_protocol());
    return std::unique_ptr<Task>(std::make_unique<Importing>(*this, std::move(import)));
}
