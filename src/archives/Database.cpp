#include "archives/Database.h"

#include "platform/ArchiveUse.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <sqlite3.h>

#include <cerrno>

namespace {

/// Long enough for a reader's short lock, short enough not to be felt at the keyboard.
constexpr int patienceMilliseconds = 20;

/// Some files of its own, the -shm above all, the library cannot make or grow without saying that the disk is full.
bool isDiskFull(int code, sqlite3 *database)
{
    const int kind = code & 0xFF;
    if (kind != SQLITE_IOERR && kind != SQLITE_CANTOPEN)
        return kind == SQLITE_FULL;
    const int reason = sqlite3_system_errno(database);
    return reason == ENOSPC || reason == EDQUOT;
}

Fault faultOf(int code, sqlite3 *database, const QString &path)
{
    if (isDiskFull(code, database))
        return {FaultCode::DiskFull, path};
    switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return {FaultCode::Locked, path};
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
        return {FaultCode::AccessDenied, path};
    case SQLITE_CANTOPEN:
        return {QFile::exists(path) ? FaultCode::AccessDenied : FaultCode::NotFound, path};
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_SCHEMA:
    case SQLITE_ERROR: // a table or column of ours that is not there, or a page that cannot be decrypted
        return {FaultCode::Damaged, path};
    default:
        return {FaultCode::InputOutput, path};
    }
}

/// The format is pinned, so that a library of another generation, with other defaults, reads and writes the same files.
constexpr const char *format = "PRAGMA cipher_compatibility = 3;"
                               "PRAGMA cipher_page_size = 4096;";

const char *journal(Database::Use use)
{
    switch (use) {
    case Database::Use::Log:
        return "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;";
    case Database::Use::ThrowAway:
        return "PRAGMA synchronous = OFF;";
    case Database::Use::Untouched:
        return "PRAGMA query_only = 1;";
    case Database::Use::Safe:
        break;
    }
    return "PRAGMA synchronous = FULL;";
}

} // namespace

void Statement::Finalizer::operator()(sqlite3_stmt *statement) const
{
    sqlite3_finalize(statement);
}

void Statement::bind(int position, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    sqlite3_bind_text(m_statement.get(), position, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
}

void Statement::bind(int position, qint64 number)
{
    sqlite3_bind_int64(m_statement.get(), position, number);
}

void Statement::bind(int position, const Statement &row, int column)
{
    sqlite3_bind_value(m_statement.get(), position, sqlite3_column_value(row.m_statement.get(), column));
}

void Statement::bind(const SqlValues &values)
{
    int position = 0;
    for (const auto &value : values) {
        ++position;
        std::visit([this, position](const auto &bound) { bind(position, bound); }, value);
    }
}

Result<bool> Statement::step()
{
    const int code = sqlite3_step(m_statement.get());
    if (code == SQLITE_ROW)
        return true;
    if (code == SQLITE_DONE)
        return false;
    sqlite3 *database = sqlite3_db_handle(m_statement.get());
    return faultOf(code, database, QFile::decodeName(sqlite3_db_filename(database, "main")));
}

void Statement::reset()
{
    sqlite3_reset(m_statement.get());
}

Result<void> Statement::walk(const std::function<Result<bool>(const Statement &)> &take)
{
    Result<bool> more = true;
    while (more && more.value()) {
        more = step();
        if (more && more.value())
            more = take(*this);
    }
    reset();
    return more ? Result<void>() : Result<void>(more.fault());
}

QString Statement::text(int column) const
{
    const auto *utf8 = reinterpret_cast<const char *>(sqlite3_column_text(m_statement.get(), column));
    return QString::fromUtf8(utf8, sqlite3_column_bytes(m_statement.get(), column));
}

QByteArrayView Statement::utf8(int column) const
{
    const auto *utf8 = reinterpret_cast<const char *>(sqlite3_column_text(m_statement.get(), column));
    return {utf8, sqlite3_column_bytes(m_statement.get(), column)};
}

qint64 Statement::integer(int column) const
{
    return sqlite3_column_int64(m_statement.get(), column);
}

int Statement::columnCount() const
{
    return sqlite3_column_count(m_statement.get());
}

QString Statement::columnName(int column) const
{
    return QString::fromUtf8(sqlite3_column_name(m_statement.get(), column));
}

void Database::Closer::operator()(sqlite3 *database) const
{
    sqlite3_close_v2(database);
}

void Database::Remover::operator()(const QString *archive) const
{
    removeUnlessUsed(*archive, *archive + QStringLiteral("-shm"));
    delete archive;
}

Database::Stamps Database::stampsOf(const QString &path)
{
    return {stampOf(path), stampOf(path + QStringLiteral("-wal"))};
}

bool Database::hasChanged() const
{
    return m_stamps && *m_stamps != stampsOf(m_path);
}

Result<Database> Database::open(const QString &path, const QByteArray &rawKey, Use use, bool create)
{
    sqlite3 *handle = nullptr;
    QByteArray name = QFile::encodeName(path);
    // Each is used by one thread alone: the library need not lock itself for every value.
    int flags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READWRITE | (create ? SQLITE_OPEN_CREATE : 0);
    std::unique_ptr<const QString, Remover> laidBeside;
    std::optional<Stamps> stamps;
    if (use == Use::Untouched) {
        flags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
        name = QUrl::fromLocalFile(path).toEncoded(QUrl::FullyEncoded);
        const QFileInfo journal(path + QStringLiteral("-wal"));
        const bool hasIndex = QFile::exists(path + QStringLiteral("-shm"));
        if (journal.size() == 0 && !(hasIndex && journal.exists())) {
            // Nobody has it open, and without rows in its journal the library needs nothing beside it.
            name += "?immutable=1";
            stamps = stampsOf(path);
        } else if (!hasIndex) {
            // The library makes an index of the journal, which is made anew whenever it is missing.
            laidBeside.reset(new QString(path));
        }
    }
    const int opened = sqlite3_open_v2(name.constData(), &handle, flags, nullptr);
    Database database(handle, path);
    database.m_laidBeside = std::move(laidBeside);
    database.m_stamps = stamps;
    if (opened != SQLITE_OK)
        return database.fault(opened);
    sqlite3_extended_result_codes(handle, 1);
    sqlite3_busy_timeout(handle, patienceMilliseconds);
    if (sqlite3_key(handle, rawKey.constData(), static_cast<int>(rawKey.size())) != SQLITE_OK)
        return Fault{FaultCode::Damaged, path};
    // The key proves itself only when a page is read.
    for (const char *sql : {format, "SELECT count(*) FROM sqlite_master;", journal(use)}) {
        if (const Result<void> done = database.execute(sql); !done)
            return done.fault();
    }
    return database;
}

Fault Database::fault(int code) const
{
    return faultOf(code, m_database.get(), m_path);
}

Result<void> Database::execute(const QByteArray &sql)
{
    const int code = sqlite3_exec(m_database.get(), sql.constData(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        return fault(code);
    return {};
}

Result<void> Database::execute(const QString &sql, const SqlValues &values)
{
    return each(sql, values, [](const Statement &) {});
}

Result<qint64> Database::number(const QString &sql, const SqlValues &values)
{
    qint64 found = 0;
    const Result<void> read = each(sql, values, [&found](const Statement &row) {
        found = row.integer(0);
        return false;
    });
    return read ? Result<qint64>(found) : read.fault();
}

Result<Statement> Database::prepare(const QString &sql)
{
    const QByteArray utf8 = sql.toUtf8();
    sqlite3_stmt *statement = nullptr;
    const int code =
        sqlite3_prepare_v2(m_database.get(), utf8.constData(), static_cast<int>(utf8.size()), &statement, nullptr);
    if (code != SQLITE_OK)
        return fault(code);
    return Statement(statement);
}

qint64 Database::lastRow() const
{
    return sqlite3_last_insert_rowid(m_database.get());
}

int Database::changes() const
{
    return sqlite3_changes(m_database.get());
}

Result<void> Database::readThrough()
{
    bool isWhole = false;
    Result<void> read = each(QStringLiteral("PRAGMA quick_check(1)"), {},
                             [&isWhole](const Statement &row) { isWhole = row.text(0) == QStringLiteral("ok"); });
    if (read && !isWhole)
        read = Fault{FaultCode::Damaged, m_path};
    return read;
}

Result<void> Database::readPages()
{
    QStringList statements;
    const QString parts = QStringLiteral(
        "SELECT type, name, tbl_name FROM sqlite_master WHERE type IN ('table', 'index') AND rootpage > 0");
    // One look at locks and journals for all of them.
    Result<void> read = execute("BEGIN");
    if (!read)
        return read;
    read = each(parts, {}, [&statements](const Statement &row) {
        const QString by = row.text(0) == QStringLiteral("table")
                               ? QStringLiteral("NOT INDEXED")
                               : QStringLiteral("INDEXED BY \"%1\"").arg(row.text(1));
        // A plain count would not do: the library counts a table by its smallest index, whatever it is told.
        statements.append(QStringLiteral("SELECT total(1) FROM \"%1\" %2").arg(row.text(2), by));
    });
    for (auto statement = statements.cbegin(); read && statement != statements.cend(); ++statement)
        read = execute(*statement, {});
    const Result<void> ended = execute("COMMIT");
    return read ? ended : read;
}

Result<void> Database::readEnds()
{
    QList<std::array<QString, 2>> parts; // table, index or ""
    Result<void> read = each(QStringLiteral("SELECT type, name, tbl_name FROM sqlite_master "
                                            "WHERE type IN ('table', 'index') AND rootpage > 0"),
                             {}, [&parts](const Statement &row) {
                                 const bool isIndex = row.text(0) == QStringLiteral("index");
                                 parts.append({row.text(2), isIndex ? row.text(1) : QString()});
                             });
    for (const auto &[table, index] : std::as_const(parts)) {
        QString last = QStringLiteral("SELECT * FROM \"%1\" NOT INDEXED ORDER BY rowid DESC LIMIT 1").arg(table);
        if (read && !index.isEmpty())
            read = each(QStringLiteral("PRAGMA index_info(\"%1\")").arg(index), {},
                        [&last, table = table, index = index](const Statement &row) {
                            last = QStringLiteral(
                                       "SELECT \"%3\" FROM \"%1\" INDEXED BY \"%2\" ORDER BY \"%3\" DESC LIMIT 1")
                                       .arg(table, index, row.text(2));
                            return false;
                        });
        if (read)
            read = execute(last, {});
    }
    return read;
}

Result<void> Database::checkpoint()
{
    const Result<qint64> isBusy = number(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
    if (!isBusy)
        return isBusy.fault();
    return isBusy.value() == 0 ? Result<void>() : Fault{FaultCode::Locked, m_path};
}

void Database::keepSideFiles()
{
    int keep = 1;
    sqlite3_file_control(m_database.get(), "main", SQLITE_FCNTL_PERSIST_WAL, &keep);
}

Result<void> Database::leaveLogMode()
{
    return execute("PRAGMA journal_mode = DELETE;");
}
