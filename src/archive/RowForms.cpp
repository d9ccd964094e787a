#include "archive/RowForms.h"

#include "codes/CodeRules.h"
#include "journal/JournalRow.h"
#include "texts/DateTimeText.h"

#include <algorithm>
#include <array>

namespace tool {

namespace {

constexpr qint64 daySeconds = 86'400;
constexpr qint64 hour = 3'600;

/// Zeros in front are never stored; of a code that is zero nothing is left.
bool isCode(const QString &text)
{
    return text.size() <= LongestCode && !text.startsWith(QLatin1Char('0')) &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

bool isType(const QString &text)
{
    return text == typeText(CodeType::Transmitter) || text == typeText(CodeType::Keypad);
}

bool isMark(const QString &text)
{
    return text.isEmpty() || text == QStringLiteral("X");
}

bool isChannel(const QString &text)
{
    return text.size() == 1 && text[0] >= u'A' && text[0] <= u'D';
}

bool isEvent(const Statement &row)
{
    return row.integer(0) > 0 && isCode(row.text(1)) && dayOfFile(row.text(2)).isValid() &&
           timeOf(row.text(3)).isValid() && isType(row.text(4)) && isChannel(row.text(5)) && isMark(row.text(6)) &&
           isMark(row.text(7)) && row.text(8) == DataOrdinabile(row.text(2));
}

bool isUser(const Statement &row)
{
    return isCode(row.text(1)) && isType(row.text(2));
}

bool isJournalRow(const Statement &row)
{
    return momentOf(row.text(1), row.text(2), row.integer(3)) && row.integer(4) > 0;
}

bool isBand(const Statement &row)
{
    return OraBreveValida(row.text(1)) && OraBreveValida(row.text(2));
}

bool isHoliday(const Statement &row)
{
    return DataValida(row.text(1)) && DataValida(row.text(2)) && row.text(3) == DataOrdinabile(row.text(1)) &&
           row.text(4) == DataOrdinabile(row.text(2));
}

struct TableForm {
    const char *table;
    const char *columns; ///< the row's number first
    bool (*isRight)(const Statement &row);
};

constexpr std::array forms = {
    TableForm{"Eventi", "rowid, Codice, Data, Ora, Tipo, Canale, AbCh, KorDis, DataOrd", isEvent},
    TableForm{"Attesa", "rowid, Codice, Data, Ora, Tipo, Canale, AbCh, KorDis, DataOrd", isEvent},
    TableForm{"Utenti", "rowid, Codice, Tipo", isUser},
    TableForm{"Giornale", "rowid, Data, Ora, Scarto, Tipo", isJournalRow},
    TableForm{"Fascie", "rowid, Da, A", isBand},
    TableForm{"Giorni", "rowid, DalGiorno, AlGiorno, DalGiornoOrd, AlGiornoOrd", isHoliday},
};

/// Whether the events of a file fit to its name and follow each other.
class DayOrder
{
public:
    explicit DayOrder(QDate day) : m_day(day) {}

    std::optional<RowFault::Kind> look(const Statement &row)
    {
        const QDate day = dayOfFile(row.text(2));
        if (day != m_day && day != m_day.addDays(1))
            return RowFault::Kind::Date;
        const qint64 at = day.toJulianDay() * daySeconds + timeOf(row.text(3)).msecsSinceStartOfDay() / 1000;
        const bool isEarlier = at + hour < m_latest;
        m_latest = std::max(m_latest, at);
        return isEarlier ? std::optional(RowFault::Kind::Order) : std::nullopt;
    }

private:
    const QDate m_day;
    qint64 m_latest = 0;
};

} // namespace

Result<QList<RowFault>> faultsOfRows(Database &database, QDate day)
{
    QStringList tables;
    Result<void> read = database.each(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'"), {},
                                      [&tables](const Statement &row) { tables.append(row.text(0)); });
    QList<RowFault> faults;
    for (const TableForm &form : forms) {
        if (!read || !tables.contains(QLatin1String(form.table)))
            continue;
        DayOrder order(day);
        read = database.each(QStringLiteral("SELECT %1 FROM %2 ORDER BY rowid")
                                 .arg(QLatin1String(form.columns), QLatin1String(form.table)),
                             {}, [&](const Statement &row) {
                                 if (!form.isRight(row))
                                     faults.append({RowFault::Kind::Form, row.integer(0)});
                                 else if (const auto kind = day.isValid() ? order.look(row) : std::nullopt)
                                     faults.append({*kind, row.integer(0)});
                             });
    }
    return read ? Result<QList<RowFault>>(faults) : read.fault();
}

} // namespace tool
