#include "users/UsersFetch.h"

#include "archives/Tables.h"
#include "archives/Transaction.h"
#include "platform/FileIdentity.h"

/// The users on their way; all of them or none come into the working copy.
struct UsersFetch::Rows {
    explicit Rows(Database &target) : transaction(target) {}
    Transaction transaction;
    std::optional<Statement> read;
    std::optional<Statement> write;
};

namespace {

/// Columns of the table of users, in small letters; none without such a table.
Result<QStringList> userColumnsOf(Database &database)
{
    QStringList columns;
    const Result<void> read =
        database.each(QStringLiteral("PRAGMA table_info(Utenti)"), {},
                      [&columns](const Statement &row) { columns.append(row.text(1).toLower()); });
    return read ? Result<QStringList>(columns) : Result<QStringList>(read.fault());
}

} // namespace

UsersFetch::UsersFetch(ArchiveStore &archives, QString file, BeginCopy begin)
    : m_archives(archives), m_file(std::move(file)), m_begin(std::move(begin))
{
}

UsersFetch::~UsersFetch()
{
    m_rows.reset();
    m_users.reset();
    // What cannot be removed now is replaced the next time.
    if (m_fetch)
        (void)m_archives.remove(ArchiveName::UsersFetched);
}

Result<bool> UsersFetch::step(const QDeadlineTimer &until)
{
    // What cannot be divided has a turn of its own, deriving a key above all.
    if (!m_isFetched)
        return fetch(until);
    if (!m_users) {
        const Result<void> isRegister = openFetched();
        return isRegister ? Result<bool>(false) : Result<bool>(ofFile(isRegister.fault()));
    }
    if (!m_isWhole) {
        const Result<void> read = m_users->readThrough();
        m_isWhole = read.ok();
        return read ? Result<bool>(false) : Result<bool>(ofFile(read.fault()));
    }
    return m_rows ? copyRows(until) : beginRows();
}

/// The register in force is no way back from itself, and of copies at work nobody knows what they will hold.
Result<void> UsersFetch::checkForeign() const
{
    const std::optional<FileIdentity> chosen = identityOf(m_file);
    for (const auto *own : {ArchiveName::Users, ArchiveName::UsersCopy, ArchiveName::UsersFetched}) {
        const QString path = m_archives.folder().path(QStringView(own).toString());
        if (chosen && chosen->inode != 0 && identityOf(path) == chosen)
            return Fault{FaultCode::OwnRegister, m_file};
    }
    return {};
}

Result<bool> UsersFetch::fetch(const QDeadlineTimer &until)
{
    if (!m_fetch) {
        if (const Result<void> foreign = checkForeign(); !foreign)
            return foreign.fault();
        m_fetch = std::make_unique<ArchiveFetch>(m_archives, m_file, ArchiveName::UsersFetched);
    }
    const Result<bool> fetched = m_fetch->step(until);
    if (!fetched)
        return ofFile(fetched.fault());
    m_isFetched = fetched.value();
    return false;
}

/// Opens the copy, and looks whether it is a register.
Result<void> UsersFetch::openFetched()
{
    Result<Database> opened = m_archives.open(ArchiveName::UsersFetched, Database::Use::ThrowAway);
    if (!opened)
        return opened.fault();
    m_users.emplace(std::move(opened.value()));
    const Result<QStringList> columns = userColumnsOf(*m_users);
    if (!columns)
        return columns.fault();
    m_columns = columns.value();
    const bool isRegister = m_columns.contains(QLatin1String("codice")) && m_columns.contains(QLatin1String("tipo"));
    return isRegister ? Result<void>() : Fault{FaultCode::NoRegister, m_file};
}

Result<bool> UsersFetch::beginRows()
{
    const Result<Database *> begun = m_begin();
    if (!begun)
        return begun.fault();
    Database &target = *begun.value();
    const Result<QStringList> wanted = userColumnsOf(target);
    if (!wanted)
        return wanted.fault();
    QStringList names, values, places;
    for (const QString &column : wanted.value()) {
        if (!m_columns.contains(column))
            continue;
        names.append(column);
        // A register that was made elsewhere may have fields without a value.
        values.append(QStringLiteral("ifnull(%1, '')").arg(column));
        places.append(QStringLiteral("?"));
    }
    Result<Statement> read =
        m_users->prepare(QStringLiteral("SELECT %1 FROM Utenti ORDER BY rowid").arg(values.join(QLatin1Char(','))));
    if (!read)
        return ofFile(read.fault());
    Result<Statement> write = target.prepare(QStringLiteral("INSERT INTO Utenti (%1) VALUES (%2)")
                                                 .arg(names.join(QLatin1Char(',')), places.join(QLatin1Char(','))));
    if (!write)
        return write.fault();
    m_rows = std::make_unique<Rows>(target);
    m_rows->read.emplace(std::move(read.value()));
    m_rows->write.emplace(std::move(write.value()));
    const Result<void> opened = m_rows->transaction.begin();
    return opened ? Result<bool>(false) : Result<bool>(opened.fault());
}

Result<bool> UsersFetch::copyRows(const QDeadlineTimer &until)
{
    Statement &row = *m_rows->read;
    Statement &write = *m_rows->write;
    do {
        const Result<bool> found = row.step();
        if (!found)
            return ofFile(found.fault());
        if (!found.value()) {
            const Result<void> stands = m_rows->transaction.commit();
            return stands ? Result<bool>(true) : Result<bool>(stands.fault());
        }
        for (int column = 0; column < row.columnCount(); ++column)
            write.bind(column + 1, row, column);
        const Result<bool> written = write.step();
        write.reset();
        if (!written)
            return written.fault();
        ++m_copied;
    } while (!until.hasExpired());
    return false;
}
