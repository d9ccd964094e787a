#include "archives/ReadableRows.h"

#include <algorithm>

namespace {

constexpr qint64 highest = std::numeric_limits<qint64>::max();

/// Steps are this part of what was lost: below the rows of a page for as long as a damaged place has fewer pages.
constexpr qint64 stepsOfADamage = 128;

bool isDamage(FaultCode code)
{
    return code == FaultCode::Damaged || code == FaultCode::InputOutput;
}

} // namespace

Result<ReadableRows> ReadableRows::open(Database &database, const QString &table, const QString &condition,
                                        const SqlValues &values)
{
    Result<Statement> wanted =
        database.prepare(QStringLiteral("SELECT rowid, * FROM %1 WHERE %2 ORDER BY rowid").arg(table, condition));
    if (!wanted)
        return wanted.fault();
    wanted.value().bind(values);
    return ReadableRows(database, std::move(wanted.value()), table, condition, values);
}

Result<ReadableRows::Found> ReadableRows::step()
{
    Statement &rows = m_all ? *m_all : m_wanted;
    const Result<bool> stepped = rows.step();
    if (!stepped && !isDamage(stepped.fault().code)) {
        m_hasLost = true;
        return stepped.fault();
    }
    if (!stepped)
        return passOver(stepped.fault().code);
    const bool hasRow = stepped.value();
    // Pages that do not belong together could lead in a circle.
    if (hasRow && rows.integer(0) < m_next)
        return passOver(FaultCode::Damaged);
    if (m_gap && m_next > m_bad + 1) {
        m_good = m_next;
        return seek(m_bad + (m_next - m_bad) / 2);
    }
    m_gap.reset();
    m_good.reset();
    return hasRow ? found(rows) : Found::End;
}

ReadableRows::Found ReadableRows::found(Statement &rows)
{
    m_hasRead = true;
    m_next = std::min(rows.integer(0), highest - 1) + 1;
    return !m_all || rows.integer(rows.columnCount() - 1) != 0 ? Found::Row : Found::Nothing;
}

/// Here the condition is a column: reading stops at each row, and what is lost begins behind the last of them.
Result<void> ReadableRows::prepareAll()
{
    Result<Statement> all =
        m_database->prepare(QStringLiteral("SELECT rowid, *, (%2) FROM %1 WHERE rowid >= ?%3 ORDER BY rowid")
                                .arg(m_table, m_condition)
                                .arg(firstNumber()));
    if (!all)
        return all.fault();
    all.value().bind(m_values);
    m_wanted.reset();
    m_all.emplace(std::move(all.value()));
    return {};
}

Result<ReadableRows::Found> ReadableRows::passOver(FaultCode damage)
{
    if (!m_all) {
        // Between the last row that was wanted and the damage there are others: the second statement tells where it is.
        const Result<void> prepared = prepareAll();
        m_hasLost |= !prepared;
        return prepared ? Result<Found>(seek(m_next)) : prepared.fault();
    }
    m_hasLost = true;
    // Rows are numbered from 1.
    m_bad = std::max<qint64>(m_next, 0);
    if (!m_gap)
        m_gap = m_bad;
    if (m_good && *m_good > m_bad)
        return seek(m_bad + std::max<qint64>(1, (*m_good - m_bad) / 2));
    // A device that fails takes its time for each try.
    const qint64 lost = m_bad - *m_gap;
    const qint64 step = 1 + (damage == FaultCode::InputOutput ? lost : lost / stepsOfADamage);
    return m_bad > highest - step ? Found::End : seek(m_bad + step);
}

ReadableRows::Found ReadableRows::seek(qint64 number)
{
    m_next = number;
    m_all->reset();
    m_all->bind(firstNumber(), number);
    return Found::Nothing;
}

ReadableRows::Extent ReadableRows::extent() const
{
    if (!m_hasLost)
        return Extent::Whole;
    return m_hasRead ? Extent::Part : Extent::Nothing;
}
