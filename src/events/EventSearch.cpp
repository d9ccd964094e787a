#include "events/EventSearch.h"

#include "archives/ReadableRows.h"
#include "archives/Tables.h"
#include "texts/DateTimeText.h"

#include <algorithm>

/// An archive being read. The rows must go before their database does.
struct EventSearch::OpenDay {
    explicit OpenDay(Database opened) : database(std::move(opened)) {}

    Database database;
    std::optional<ReadableRows> rows;
    SearchResults::Columns columns{};
    int matches = 0;
};

namespace {

/// Days that events wait for which could not go to their archive yet.
QSet<QDate> daysThatWait(ArchiveStore &archives)
{
    QSet<QDate> days;
    if (!archives.exists(ArchiveName::Waiting))
        return days;
    // One that cannot be read now has been told by the log, which keeps it.
    if (Result<Database> spool = archives.open(ArchiveName::Waiting, Database::Use::Safe); spool)
        (void)spool.value().each(QStringLiteral("SELECT DISTINCT Giorno FROM Attesa"), {},
                                 [&days](const Statement &row) { days.insert(dayOfFile(row.text(0))); });
    return days;
}

} // namespace

EventSearch::EventSearch(ArchiveStore &archives, const UserDirectory &users)
    : m_archives(archives), m_users(users), m_results(archives)
{
}

EventSearch::~EventSearch() = default;

Result<void> EventSearch::start(const EventQuery &query)
{
    m_open.reset();
    m_unread.clear();
    m_incomplete.clear();
    m_fault.reset();
    m_position = 0;
    m_matches = 0;
    m_running = false;
    m_isAtEnd = false;
    m_isUnread = false;
    m_isIncomplete = false;
    if (Result<void> cleared = m_results.clear(); !cleared)
        return cleared;
    m_condition = dayCondition(query);
    m_files = filesOfDays(m_archives.folder());
    m_waiting = daysThatWait(m_archives);
    m_day = query.firstDay;
    m_lastDay = query.lastDay;
    m_running = true;
    return {};
}

Result<bool> EventSearch::step(const QDeadlineTimer &until)
{
    while (m_running) {
        if (m_open)
            copyRow();
        else if (!openDay())
            nextDay();
        if (until.hasExpired())
            break;
    }
    return m_fault ? Result<bool>(*m_fault) : Result<bool>(!m_running);
}

void EventSearch::stop()
{
    if (m_running)
        finish();
}

bool EventSearch::openDay()
{
    m_position = 0;
    m_matches = 0;
    // Of a range between two days that their month has not, no day is left.
    if (m_day > m_lastDay)
        return false;
    const DayFiles files = m_files.value(m_day);
    m_isIncomplete = !files.setAside.isEmpty() || m_waiting.contains(m_day);
    if (files.archive.isEmpty())
        return false;
    Result<std::unique_ptr<OpenDay>> opened = open(files.archive);
    if (!opened) {
        m_isUnread = true;
        return false;
    }
    m_open = std::move(opened.value());
    m_matches = m_open->matches;
    return true;
}

Result<std::unique_ptr<EventSearch::OpenDay>> EventSearch::open(const QString &name) const
{
    Result<Database> database = m_archives.open(name, Database::Use::Safe);
    if (!database)
        return database.fault();
    auto day = std::make_unique<OpenDay>(std::move(database.value()));
    const QString table = QStringLiteral("Eventi");
    Result<ReadableRows> rows = ReadableRows::open(day->database, table, m_condition.where, m_condition.values);
    if (!rows)
        return rows.fault();
    day->rows = std::move(rows.value());
    // For the progress only: whatever keeps the rows from being counted shows again when they are read.
    const QString count = QStringLiteral("SELECT count(*) FROM %1 WHERE %2").arg(table, m_condition.where);
    if (const Result<qint64> matches = day->database.number(count, m_condition.values); matches)
        day->matches = static_cast<int>(matches.value());
    const Statement &row = day->rows->row();
    QHash<QString, int> places;
    for (int column = 0; column < row.columnCount(); ++column)
        places.insert(row.columnName(column), column);
    const auto place = [&places](const char *field) { return places.value(QString::fromLatin1(field), -1); };
    day->columns = {place("Codice"), place("Tipo"), place("Data"),  place("Ora"),
                    place("Canale"), place("AbCh"), place("KorDis")};
    if (std::min({day->columns.Codice, day->columns.Data, day->columns.AbCh, day->columns.KorDis}) < 0)
        return Fault{FaultCode::Damaged, day->database.path()};
    return day;
}

void EventSearch::copyRow()
{
    const Result<ReadableRows::Found> found = m_open->rows->step();
    if (!found || found.value() == ReadableRows::Found::End)
        return nextDay();
    if (found.value() == ReadableRows::Found::Nothing)
        return;
    const Statement &row = m_open->rows->row();
    const SearchResults::Columns &columns = m_open->columns;
    const User *user = m_users.find(row.text(columns.Codice), row.text(columns.Tipo));
    const Result<void> added =
        m_results.add(row, columns, user ? user->Cognome : QString(), user ? user->Nome : QString());
    if (!added) {
        m_fault = added.fault();
        return finish();
    }
    ++m_position;
}

/// Notes what could not be read of the day.
void EventSearch::closeDay()
{
    if (m_open) {
        const ReadableRows::Extent extent = m_open->rows->extent();
        m_isUnread |= extent == ReadableRows::Extent::Nothing;
        m_isIncomplete |= extent == ReadableRows::Extent::Part;
        m_open.reset();
    }
    if (m_isUnread)
        m_unread.append(m_day);
    else if (m_isIncomplete)
        m_incomplete.append(m_day);
    m_isUnread = false;
    m_isIncomplete = false;
}

void EventSearch::nextDay()
{
    closeDay();
    if (m_day >= m_lastDay) {
        m_isAtEnd = true;
        return finish();
    }
    m_day = m_day.addDays(1);
}

void EventSearch::finish()
{
    m_running = false;
    closeDay();
}
