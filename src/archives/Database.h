#pragma once

#include "platform/FileStamp.h"
#include "platform/Result.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <variant>

struct sqlite3;
struct sqlite3_stmt;

/// What is bound to the parameters of a statement, in their order.
using SqlValues = QList<std::variant<QString, qint64>>;

/// One prepared statement of an open database; must not outlive it.
///
/// Whoever reads all rows does so by each(); step() is for what may stop at any of them.
class Statement
{
public:
    explicit Statement(sqlite3_stmt *statement) : m_statement(statement) {}

    /// Positions of parameters count from 1, those of columns from 0.
    void bind(int position, const QString &text);
    void bind(int position, qint64 number);
    /// The value that @p row, on a row of its own, has in @p column.
    void bind(int position, const Statement &row, int column);
    void bind(const SqlValues &values);
    /// True while there is a row.
    Result<bool> step();
    /// Ready to run again; the bound values stay.
    void reset();

    /// Runs the statement and hands over its rows one after the other; afterwards it is ready to run again.
    /// @param take  of a const Statement &, the row. Returns nothing, or a bool that is false when no more rows are
    ///              wanted, or a Result<void> whose fault ends the reading and is returned
    template<class Take>
    Result<void> each(Take take);
    /// The same in turns: reads on until @p until, at least one row. @return true when there are no more
    template<class Take>
    Result<bool> each(const QDeadlineTimer &until, Take take);

    QString text(int column) const;
    /// The same as it stands in the archive, until the next step().
    QByteArrayView utf8(int column) const;
    qint64 integer(int column) const;
    int columnCount() const;
    QString columnName(int column) const;

private:
    Result<void> walk(const std::function<Result<bool>(const Statement &)> &take);

    struct Finalizer {
        void operator()(sqlite3_stmt *statement) const;
    };
    std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
};

template<class Take>
Result<void> Statement::each(Take take)
{
    return walk([&take](const Statement &row) -> Result<bool> {
        using Taken = std::invoke_result_t<Take &, const Statement &>;
        if constexpr (std::is_void_v<Taken>) {
            take(row);
            return true;
        } else if constexpr (std::is_same_v<Taken, bool>) {
            return take(row);
        } else {
            const Result<void> taken = take(row);
            return taken ? Result<bool>(true) : Result<bool>(taken.fault());
        }
    });
}

template<class Take>
Result<bool> Statement::each(const QDeadlineTimer &until, Take take)
{
    do {
        const Result<bool> stepped = step();
        if (!stepped || !stepped.value())
            return stepped ? Result<bool>(true) : stepped;
        take(std::as_const(*this));
    } while (!until.hasExpired());
    return false;
}

/// An open archive: an SQLCipher 3 database with 4096-byte pages.
///
/// Faults are Locked, DiskFull, InputOutput, AccessDenied, NotFound and Damaged; the last also stands for a file that
/// the archive password does not open.
class Database
{
public:
    enum class Use {
        Safe,      ///< rollback journal, every change on disk when it is reported done
        Log,       ///< write-ahead journal: one flush a change, readers do not disturb the writer
        ThrowAway, ///< results and working copies: nothing is flushed
        Untouched, ///< read only: neither the file nor its journal changes, and nothing stays beside it
    };

    /// Opens the archive file @p path, or makes it when it does not exist and @p create is set. One page has been read
    /// and understood when this succeeds.
    /// @param rawKey  as ArchiveKeys gives it
    static Result<Database> open(const QString &path, const QByteArray &rawKey, Use use, bool create = false);

    /// Runs one or more statements that return no rows.
    Result<void> execute(const QByteArray &sql);
    /// Runs one statement with @p values bound to its parameters.
    Result<void> execute(const QString &sql, const SqlValues &values);
    /// The same with a statement that returns rows, which are handed over as Statement::each() does.
    template<class Take>
    Result<void> each(const QString &sql, const SqlValues &values, Take take);
    /// The number in the first column of the first row; 0 without a row.
    Result<qint64> number(const QString &sql, const SqlValues &values = {});
    Result<Statement> prepare(const QString &sql);
    qint64 lastRow() const;
    /// Rows changed by the last statement.
    int changes() const;
    const QString &path() const { return m_path; }
    /// Whether an archive that is open as Use::Untouched was changed since: where it has no journal it is read without
    /// a lock, and what was read may be of two states then.
    bool hasChanged() const;

    /// Reads the archive from its first page to its last, as far as it holds anything.
    /// @return Damaged when something cannot be read or does not fit together
    Result<void> readThrough();
    /// Reads all pages that hold anything, each one proved by its check sum: less than readThrough(), which looks at
    /// each value as well, and several times as fast.
    /// @return Damaged when one cannot be read
    Result<void> readPages();

    /// Reads the first page and the last one of each table and index: where an archive was cut short, or stopped being
    /// written, it shows there. @return Damaged when one cannot be read
    Result<void> readEnds();

    /// Brings what stands in the write-ahead journal into the archive file and empties the journal.
    /// @return Locked while somebody reads; all that he does not hold back has been brought over then
    Result<void> checkpoint();
    /// From here on, closing leaves the side files where they are: they may belong to another file by now.
    void keepSideFiles();
    /// Ends write-ahead mode: all rows are in the archive file itself and its side files are gone.
    Result<void> leaveLogMode();

private:
    struct Closer {
        void operator()(sqlite3 *database) const;
    };

    friend class PageCopy;
    Database(sqlite3 *database, QString path) : m_database(database), m_path(std::move(path)) {}
    Fault fault(int code) const;

    /// Removes what the library laid beside an untouched archive.
    struct Remover {
        void operator()(const QString *archive) const;
    };
    /// Of an archive and of its journal.
    using Stamps = std::array<std::optional<FileStamp>, 2>;
    static Stamps stampsOf(const QString &path);

    std::unique_ptr<const QString, Remover> m_laidBeside; ///< archive that has something to be removed
    std::optional<Stamps> m_stamps;                       ///< when it was opened, if it is read without a lock
    std::unique_ptr<sqlite3, Closer> m_database;
    QString m_path;
};

template<class Take>
Result<void> Database::each(const QString &sql, const SqlValues &values, Take take)
{
    Result<Statement> prepared = prepare(sql);
    if (!prepared)
        return prepared.fault();
    prepared.value().bind(values);
    return prepared.value().each(std::move(take));
}
