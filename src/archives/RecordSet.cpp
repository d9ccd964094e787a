#include "archives/RecordSet.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/// In the order of their fields, as keys() has them.
SqlValues bound(const RecordSet::Values &values)
{
    return SqlValues(values.cbegin(), values.cend());
}

} // namespace

/// Rows that are not shown before all of them are there.
struct RecordSet::Reading {
    explicit Reading(Statement prepared) : statement(std::move(prepared)) {}

    Statement statement;
    QList<Row> rows;
};

RecordSet::RecordSet(Database &database, QString statement, Kind kind)
    : m_database(&database), m_statement(std::move(statement)), m_kind(kind)
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
    m_reading = std::make_shared<Reading>(std::move(prepared.value()));
    return {};
}

Result<bool> RecordSet::requery(const QDeadlineTimer &until)
{
    if (!m_reading) {
        if (const Result<void> begun = beginReading(); !begun)
            return begun.fault();
    }
    Statement &found = m_reading->statement;
    do {
        const Result<bool> stepped = found.step();
        if (!stepped) {
            m_reading.reset();
            return stepped.fault();
        }
        if (!stepped.value()) {
            m_fields.clear();
            for (int column = 1; column < found.columnCount(); ++column)
                m_fields.append(found.columnName(column));
            m_rows = std::move(m_reading->rows);
            m_reading.reset();
            moveFirst();
            return true;
        }
        Row row{found.integer(0), {}};
        row.values.reserve(found.columnCount() - 1);
        for (int column = 1; column < found.columnCount(); ++column)
            row.values.append(found.text(column));
        m_reading->rows.append(std::move(row));
    } while (!until.hasExpired());
    return false;
}

qsizetype RecordSet::rowsRead() const
{
    return m_reading ? m_reading->rows.size() : m_rows.size();
}

void RecordSet::moveFirst()
{
    m_onDeleted = false;
    m_position = 0;
}

void RecordSet::moveLast()
{
    m_onDeleted = false;
    m_position = qMax<qsizetype>(0, m_rows.size() - 1);
}

void RecordSet::moveNext()
{
    // The follower of a deleted row has moved into its place.
    if (m_onDeleted)
        m_onDeleted = false;
    else
        m_position = qMin(m_position + 1, m_rows.size());
}

void RecordSet::moveTo(qsizetype position)
{
    m_onDeleted = false;
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
    const Row *row = m_onDeleted ? nullptr : current();
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
    if (m_onDeleted)
        return &m_deleted;
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

bool RecordSet::settle(qint64 id, const QString &field)
{
    if (!moveToRow(id))
        return false;
    const qsizetype column = m_fields.indexOf(field);
    Row row = m_rows.takeAt(m_position);
    const auto place =
        std::upper_bound(m_rows.cbegin(), m_rows.cend(), row, [column](const Row &settled, const Row &other) {
            const int order = settled.values.value(column).compare(other.values.value(column));
            return order != 0 ? order < 0 : settled.id < other.id;
        });
    m_position = place - m_rows.cbegin();
    m_rows.insert(m_position, std::move(row));
    return true;
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
    const Row *row = m_onDeleted ? nullptr : current();
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
    const Row *row = m_onDeleted ? nullptr : current();
    if (m_kind == Kind::Snapshot || !row)
        return Fault{row ? FaultCode::AccessDenied : FaultCode::NotFound, m_database->path()};
    if (Result<void> removed =
            m_database->execute(QStringLiteral("DELETE FROM %1 WHERE rowid=?").arg(m_table), {row->id});
        !removed)
        return removed;
    m_deleted = m_rows.takeAt(m_position);
    m_onDeleted = true;
    return {};
}
