#pragma once

#include "archives/Database.h"
#include "platform/FreedInTurns.h"

#include <QDeadlineTimer>
#include <QHash>
#include <QList>

#include <memory>

/// The rows of one statement, in its order, with one of them current.
///
/// The rules, which old grids and their operators rely on:
/// - opened and after requery() the first row is current; an empty set has no current row;
/// - after a deletion the follower is current, and behind the last row the one before;
/// - a find that finds nothing keeps the current row;
/// - a new row stands at the end of the open set, whatever the statement's order, and does not become current;
/// - own edits are seen at once, what other connections did only after requery().
/// Values are held in memory and nothing of the database stays open between two calls.
class RecordSet
{
public:
    enum class Kind { Dynaset, Snapshot };  ///< a snapshot is only read
    using Values = QHash<QString, QString>; ///< field -> value

    /// @param database   must outlive the set
    /// @param statement  "SELECT <fields> FROM <table> ..." on one table
    static Result<RecordSet> open(Database &database, const QString &statement, Kind kind);
    Result<void> requery();
    /// A set without rows, to be read in turns.
    /// @param order  field by whose rising values, and then by ids, the rows are sorted here, since a statement that
    ///               sorts does it in one go; "" = they stay in the order of the statement
    RecordSet(Database &database, QString statement, Kind kind, QString order = {});
    /// The same as requery(), in turns of at least one row. Until it is done, and on a fault, the rows stay as they
    /// were.
    /// @return true when it is done; the next call begins anew
    Result<bool> requery(const QDeadlineTimer &until);
    void stopReading() { m_reading.reset(); }
    /// Of the reading that is under way.
    qsizetype rowsRead() const;

    bool isEmpty() const { return m_rows.isEmpty(); }
    qsizetype recordCount() const { return m_rows.size(); }
    /// Place of the current row, counted from 0; 0 without one.
    qsizetype position() const { return m_position; }

    void moveFirst();
    void moveLast();
    /// @param position  0 to recordCount() - 1
    void moveTo(qsizetype position);

    /// Stays on the current row when it has all of @p wanted, else makes the first row current that has.
    /// @return whether there is one
    bool findFirst(const Values &wanted);

    /// Value of a field of the current row; "" without one.
    QString value(const QString &field) const;
    QString value(int column) const;
    /// Value of any row, which does not become current. @param row  0 to recordCount() - 1
    QString value(qsizetype row, int column) const { return m_rows[row].values.value(column); }
    /// Place of a field among the columns, -1 when the set has none of that name.
    int column(const QString &field) const { return static_cast<int>(m_fields.indexOf(field)); }

    /// What the database knows the current row by, whatever its values and place; 0 without one.
    qint64 rowId() const;
    /// The same of any row. @param row  0 to recordCount() - 1
    qint64 rowId(qsizetype row) const { return m_rows[row].id; }
    /// Makes the row with that id current. @return false, and nothing changes, when the set does not hold it
    bool moveToRow(qint64 id);
    /// Moves a row to where it stands in the order of a set that has one, and makes it current.
    /// @return false, and nothing changes, when the set does not hold it
    bool settle(qint64 id);

    Result<void> addNew(const Values &values);
    /// NotFound without a current row, or when another connection has deleted it.
    Result<void> edit(const Values &values);
    Result<void> remove();
    /// A value of any row that was changed in the database by other means. @param row  0 to recordCount() - 1
    void note(qsizetype row, int column, const QString &value) { m_rows[row].values[column] = value; }
    struct Added {
        qint64 id = 0;
        QStringList values; ///< in the order of the fields that are told with them
    };
    /// Rows that were added in the database by other means, all other fields empty. Each stands where the order of the
    /// set wants it; the current row stays.
    void noteAdded(const QStringList &fields, const QList<Added> &added);

private:
    struct Row {
        qint64 id = 0;
        QStringList values;
    };

    /// The order of the rows; without a column they stay as they are.
    struct Before {
        qsizetype column = -1;
        bool operator()(const Row &a, const Row &b) const;
    };
    struct Reading;

    Before before() const { return {m_fields.indexOf(m_order)}; }
    Result<void> beginReading();
    Result<void> readOn(const QDeadlineTimer &until);
    const Row *current() const;
    Result<QStringList> read(qint64 id) const;

    Database *m_database;
    QString m_statement;
    QString m_fieldList;
    QString m_table;
    Kind m_kind;
    QString m_order;
    QStringList m_fields;
    FreedInTurns<QList<Row>> m_rows;
    qsizetype m_position = 0;
    std::shared_ptr<Reading> m_reading; ///< under way
};
