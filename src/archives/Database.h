#pragma once

#include "platform/Result.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

/// One prepared statement of an open database; must not outlive it.
class Statement
{
public:
    explicit Statement(sqlite3_stmt *statement) : m_statement(statement) {}

    /// Positions of parameters count from 1, those of columns from 0.
    void bind(int position, const QString &text);
    void bind(int position, qint64 number);
    /// The value that @p row, on a row of its own, has in @p column.
    void bind(int position, const Statement &row, int column);
    /// True while there is a row.
    Result<bool> step();
    /// Ready to run again; the bound values stay.
    void reset();

    QString text(int column) const;
    qint64 integer(int column) const;
    int columnCount() const;
    QString columnName(int column) const;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt *statement) const;
    };
    std::unique_ptr<sqlite3_stmt, Finalizer> m_statement;
};

/// An open archive: an SQLCipher 3 database with 4096-byte pages.
///
/// Faults are Locked, DiskFull, InputOutput, AccessDenied, NotFound and Damaged; the last also stands for a file that
/// the archive password does not open.
///
/// Statements may sort by name_key(<field>), see nameKey().
class Database
{
public:
    enum class Use {
        Safe,      ///< rollback journal, every change on disk when it is reported done
        Log,       ///< write-ahead journal: one flush a change, readers do not disturb the writer
        ThrowAway, ///< results and working copies: nothing is flushed
    };

    /// Opens the archive file @p path, or makes it when it does not exist and @p create is set. One page has been read
    /// and understood when this succeeds.
    /// @param rawKey  as ArchiveKeys gives it
    static Result<Database> open(const QString &path, const QByteArray &rawKey, Use use, bool create = false);

    /// Runs one or more statements that return no rows.
    Result<void> execute(const QByteArray &sql);
    Result<Statement> prepare(const QString &sql);
    qint64 lastRow() const;
    /// Rows changed by the last statement.
    int changes() const;
    const QString &path() const { return m_path; }

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

    Database(sqlite3 *database, QString path) : m_database(database), m_path(std::move(path)) {}
    Fault fault(int code) const;

    std::unique_ptr<sqlite3, Closer> m_database;
    QString m_path;
};

/// @p text with its quotes doubled, between quotes: for statements and criteria that are put together as text.
QString quoted(const QString &text);
/// field='value', with the quotes of the value doubled.
QString criterion(const QString &field, const QString &value);
