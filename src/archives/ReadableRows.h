#pragma once

#include "archives/Database.h"

#include <limits>
#include <optional>

/// Reads the rows of a table in the order of their numbers, also around pages that are damaged.
///
/// A sound table costs what its statement costs. From a damaged page on, rows are looked for behind it: number by
/// number at first, then in steps that grow with what is lost, so that damage of any size comes to its end. Rows
/// between two damaged places are missed only when they are fewer than a 128th of the numbers lost in front of them.
class ReadableRows
{
public:
    enum class Found { Row, Nothing, End };
    /// How much of what was passed so far could be read.
    enum class Extent { Whole, Part, Nothing };

    /// @param database   must stay open, where it is, as long as this object is there
    /// @param condition  of the rows that are wanted, its parameters numbered (?1, ?2, ...); @param values  of them
    static Result<ReadableRows> open(Database &database, const QString &table, const QString &condition,
                                     const SqlValues &values);

    /// Does one piece of work: finds a row, or tries one number in or behind a damaged place.
    /// @return a fault when reading is not possible for now, because of a lock above all; damage is none
    Result<Found> step();

    /// The row that was found, with the columns of its table, known by their names.
    const Statement &row() const { return m_all ? *m_all : m_wanted; }
    Extent extent() const;
    /// Whether no damage has been met so far.
    bool isSound() const { return !m_all; }

private:
    ReadableRows(Database &database, Statement wanted, QString table, QString condition, SqlValues values)
        : m_database(&database),
          m_table(std::move(table)),
          m_condition(std::move(condition)),
          m_values(std::move(values)),
          m_wanted(std::move(wanted))
    {
    }

    Result<void> prepareAll();
    Found found(Statement &rows);
    Result<Found> passOver(FaultCode damage);
    Found seek(qint64 number);
    /// Parameter of the statement for all rows: the number to begin with.
    int firstNumber() const { return static_cast<int>(m_values.size()) + 1; }

    Database *m_database;
    QString m_table;
    QString m_condition;
    SqlValues m_values;
    Statement m_wanted;             ///< number and columns of the rows that are wanted
    std::optional<Statement> m_all; ///< behind damage: of all rows from a number on, and whether they are wanted
    qint64 m_next = std::numeric_limits<qint64>::min(); ///< lowest number that the next row may have
    bool m_hasRead = false;
    bool m_hasLost = false;

    /// Within a damaged place: its first number, the last one that could not be read, and the lowest one behind it
    /// that could.
    std::optional<qint64> m_gap;
    qint64 m_bad = 0;
    std::optional<qint64> m_good;
};
