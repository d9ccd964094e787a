#include "archives/RecordSet.h"

#include "platform/SortInTurns.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/// In the order of their fields, as keys() has them.
SqlValues bound(const RecordSet::Values &values)
{
    return SqlValues(values.cbegin(), values.cend());
}

} // namespace

bool RecordSet::Before::operator()(const Row &a, const Row &b) const
{
    if (column < 0)
        return false;
    const int order = a.values[column].compare(b.values[column]);
    return order != 0 ? order < 0 : a.id < b.id;
}

/// Rows that are not shown before all of them are there, each in its place.
struct RecordSet::Reading {
    std::optional<Statement> statement; ///< none when all are read
    QStringList fields;
    SortInTurns<Row, Before> rows;
};

RecordSet::RecordSet(Database &database, QString statement, Kind kind, QString order)
    : m_database(&database), m_statement(std::move(statement)), m_kind(kind), m_order(std::move(order))
{
    static const QRegularExpression form(QStringLiteral(R"(^SELECT\s+(.+?)\s+FROM\s+(\w+))"));
    const QRegularExpressionMatch match = form.match(m_statement);
    m_fieldList = match.captured(1);
    m_table = match.captured(2);
}

Result<RecordSet> RecordSet::open(Database &database, const QString &statement, Kind kind)
{
    RecordSet set(database, statement, kind);
    if (const Result<void> read = set.requery(); !read)
        return read.fault();
    return set;
}

Result<void> RecordSet::requery()
{
    m_reading.reset();
    const Result<bool> read = requery(QDeadlineTimer(QDeadlineTimer::Forever));
    return read ? Result<void>() : Result<void>(read.fault());
}

Result<void> RecordSet::beginReading()
{
    Result<Statement> prepared =
        m_database->prepare(QStringLiteral("SELECT rowid, ") + m_statement.sliced(m_statement.indexOf(m_fieldList)));
    if (!prepared)
        return prepared.fault();
    QStringList fields;
    for (int column = 1; column < prepared.value().columnCount(); ++column)
        fields.append(prepared.value().columnName(column));
    const Before before{fields.indexOf(m_order)};
    m_reading.reset(new Reading{std::move(prepared.value()), std::move(fields), SortInTurns<Row, Before>(before)});
    return {};
}

Result<bool> RecordSet::requery(const QDeadlineTimer &until)
{
    if (!m_reading) {
        if (const Result<void> begun = beginReading(); !begun)
            return begun.fault();
    }
    if (m_reading->statement) {
        if (const Result<void> read = readOn(until); !read) {
            m_reading.reset();
            return read.fault();
        }
    }
    if (m_reading->statement || !m_reading->rows.step(until))
        return false;
    m_fields = std::move(m_reading->fields);
    std::vector<Row> sorted = m_reading->rows.take();
    m_rows = QList<Row>(std::move_iterator(sorted.begin()), std::move_iterator(sorted.end()));
    m_reading.reset();
    moveFirst();
    return true;
}

Result<void> RecordSet::readOn(const QDeadlineTimer &until)
{
    const Result<bool> isAll = m_reading->statement->each(until, [this](const Statement &found) {
        Row row{found.integer(0), {}};
        row.values.reserve(found.columnCount() - 1);
        for (int column = 1; column < found.columnCount(); ++column)
            row.values.append(found.text(column));
        m_reading->rows.add(std::move(row));
    });
    if (!isAll)
        return isAll.fault();
    if (isAll.value())
        m_reading->statement.reset();
    return {};
}

qsizetype RecordSet::rowsRead() const
{
    return m_reading ? static_cast<qsizetype>(m_reading->rows.count()) : m_rows.size();
}

void RecordSet::moveFirst()
{
    m_position = 0;
}

void RecordSet::moveLast()
{
    m_position = qMax<qsizetype>(0, m_rows.size() - 1);
}

void RecordSet::moveTo(qsizetype position)
{
    m_position = position;
}

bool RecordSet::findFirst(const Values &wanted)
{
    QList<std::pair<qsizetype, QString>> cells;
    for (auto cell = wanted.cbegin(); cell != wanted.cend(); ++cell)
        cells.append({m_fields.indexOf(cell.key()), cell.value()});
    const auto matches = [&cells](const Row &row) {
        return std::all_of(cells.cbegin(), cells.cend(),
                           [&row](const auto &cell) { return row.values.value(cell.first) == cell.second; });
    };
    const Row *row = current();
    if (row && matches(*row))
        return true;
    const auto found = std::find_if(m_rows.cbegin(), m_rows.cend(), matches);
    if (found == m_rows.cend())
        return false;
    moveTo(found - m_rows.cbegin());
    return true;
}

const RecordSet::Row *RecordSet::current() const
{
    return m_position < m_rows.size() ? &m_rows[m_position] : nullptr;
}

QString RecordSet::value(const QString &field) const
{
    return value(static_cast<int>(m_fields.indexOf(field)));
}

QString RecordSet::value(int column) const
{
    const Row *row = current();
    return row ? row->values.value(column) : QString();
}

qint64 RecordSet::rowId() const
{
    const Row *row = current();
    return row ? row->id : 0;
}

bool RecordSet::moveToRow(qint64 id)
{
    const auto found = std::find_if(m_rows.cbegin(), m_rows.cend(), [id](const Row &row) { return row.id == id; });
    if (found == m_rows.cend())
        return false;
    moveTo(found - m_rows.cbegin());
    return true;
}

bool RecordSet::settle(qint64 id)
{
    if (!moveToRow(id))
        return false;
    Row row = m_rows.takeAt(m_position);
    const auto place = std::upper_bound(m_rows.cbegin(), m_rows.cend(), row, before());
    m_position = place - m_rows.cbegin();
    m_rows.insert(m_position, std::move(row));
    return true;
}

void RecordSet::noteAdded(const QStringList &fields, const QList<Added> &added)
{
    std::vector<Row> rows;
    rows.reserve(static_cast<std::size_t>(added.size()));
    for (const Added &one : added) {
        Row row{one.id, QStringList(m_fields.size())};
        for (qsizetype i = 0; i < fields.size(); ++i)
            row.values[m_fields.indexOf(fields[i])] = one.values[i];
        rows.push_back(std::move(row));
    }
    std::stable_sort(rows.begin(), rows.end(), before());
    const qint64 current = rowId();
    QList<Row> all;
    all.reserve(m_rows.size() + added.size());
    std::merge(std::move_iterator(m_rows.begin()), std::move_iterator(m_rows.end()), std::move_iterator(rows.begin()),
               std::move_iterator(rows.end()), std::back_inserter(all), before());
    m_rows = std::move(all);
    moveToRow(current);
}

Result<QStringList> RecordSet::read(qint64 id) const
{
    QStringList values;
    const Result<void> read =
        m_database->each(QStringLiteral("SELECT %1 FROM %2 WHERE rowid=?").arg(m_fieldList, m_table), {id},
                         [&values](const Statement &row) {
                             for (int column = 0; column < row.columnCount(); ++column)
                                 values.append(row.text(column));
                         });
    if (!read)
        return read.fault();
    if (values.isEmpty())
        return Fault{FaultCode::NotFound, m_database->path()};
    return values;
}

Result<void> RecordSet::addNew(const Values &values)
{
    if (m_kind == Kind::Snapshot)
        return Fault{FaultCode::AccessDenied, m_database->path()};
    const QStringList names = values.keys();
    const QStringList marks(names.size(), QStringLiteral("?"));
    const QString sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(m_table, names.join(QLatin1Char(',')), marks.join(QLatin1Char(',')));
    if (Result<void> added = m_database->execute(sql, bound(values)); !added)
        return added;
    const qint64 id = m_database->lastRow();
    Result<QStringList> row = read(id);
    if (!row)
        return row.fault();
    m_rows.append({id, row.value()});
    return {};
}

Result<void> RecordSet::edit(const Values &values)
{
    const Row *row = current();
    if (m_kind == Kind::Snapshot || !row)
        return Fault{row ? FaultCode::AccessDenied : FaultCode::NotFound, m_database->path()};
    QStringList assignments;
    const QStringList names = values.keys();
    for (const QString &name : names)
        assignments.append(name + QStringLiteral("=?"));
    const QString sql =
        QStringLiteral("UPDATE %1 SET %2 WHERE rowid=?").arg(m_table, assignments.join(QLatin1Char(',')));
    if (Result<void> changed = m_database->execute(sql, bound(values) << row->id); !changed)
        return changed;
    if (m_database->changes() == 0)
        return Fault{FaultCode::NotFound, m_database->path()};
    const Result<QStringList> fresh = read(row->id);
    if (!fresh)
        return fresh.fault();
    m_rows[m_position].values = fresh.value();
    return {};
}

Result<void> RecordSet::remove()
{
    const Row *row = current();
    if (m_kind == Kind::Snapshot || !row)
        return Fault{row ? FaultCode::AccessDenied : FaultCode::NotFound, m_database->path()};
    if (Result<void> removed =
            m_database->execute(QStringLiteral("DELETE FROM %1 WHERE rowid=?").arg(m_table), {row->id});
        !removed)
        return removed;
    m_rows.removeAt(m_position);
    if (m_position == m_rows.size())
        moveLast();
    return {};
}
