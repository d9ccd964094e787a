#include "events/EventSearch.h"

#include "archives/ReadableRows.h"
#include "archives/Tables.h"
#include "texts/DateTimeText.h"

#include <algorithm>

/// An archive being read, or what was gathered of several. The rows must go before their database does.
struct EventSearch::OpenDay {
    std::optional<Database> database;
    std::optional<ReadableRows> rows;
    std::optional<Statement> gathered; ///< in place of the above
    SearchResults::Columns columns{};
    int matches = 0;

    const Statement &row() const { return gathered ? *gathered : rows->row(); }
    Result<ReadableRows::Found> step();
    bool findColumns();
};

namespace {

/// Days that events wait for which could not go to their archive yet.
/// @return nothing when what waits cannot be read; the log, which keeps it, has told so
std::optional<QSet<QDate>> daysThatWait(ArchiveStore &archives)
{
    QSet<QDate> days;
    if (!archives.exists(ArchiveName::Waiting))
        return days;
    Result<Database> spool = archives.open(ArchiveName::Waiting, Database::Use::Safe);
    if (!spool || !spool.value().each(QStringLiteral("SELECT DISTINCT Giorno FROM Attesa"), {},
                                      [&days](const Statement &row) { days.insert(dayOfFile(row.text(0))); }))
        return std::nullopt;
    return days;
}

/// A name of its own: events of a day may be rescued meanwhile.
const QString gatheringName = QStringLiteral("Archivi/Riuniti.$$$");

} // namespace

Result<ReadableRows::Found> EventSearch::OpenDay::step()
{
    if (!gathered)
        return rows->step();
    const Result<bool> stepped = gathered->step();
    if (!stepped)
        return stepped.fault();
    return stepped.value() ? ReadableRows::Found::Row : ReadableRows::Found::End;
}

/// @return false when one is missing that is never left out
bool EventSearch::OpenDay::findColumns()
{
    QHash<QString, int> places;
    for (int column = 0; column < row().columnCount(); ++column)
        places.insert(row().columnName(column), column);
    const auto place = [&places](const char *field) { return places.value(QString::fromLatin1(field), -1); };
    columns = {place("Codice"), place("Tipo"), place("Data"),  place("Ora"),
               place("Canale"), place("AbCh"), place("KorDis")};
    return std::min({columns.Codice, columns.Data, columns.AbCh, columns.KorDis}) >= 0;
}

EventSearch::EventSearch(ArchiveStore &archives, const UserDirectory &users)
    : m_archives(archives), m_users(users), m_results(archives), m_reunited(archives, gatheringName)
{
}

EventSearch::~EventSearch() = default;

Result<void> EventSearch::start(const EventQuery &query)
{
    m_open.reset();
    m_reunited.clear();
    m_isGathering = false;
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
    Result<QHash<QDate, DayFiles>> files = filesOfDays(m_archives.folder());
    if (!files)
        return files.fault();
    m_files = std::move(files.value());
    const std::optional<QSet<QDate>> waiting = daysThatWait(m_archives);
    m_waiting = waiting.value_or(QSet<QDate>());
    m_isMoreKept = !waiting || (m_keptElsewhere && m_keptElsewhere());
    m_day = query.firstDay;
    m_lastDay = query.lastDay;
    m_running = true;
    return {};
}

Result<bool> EventSearch::step(const QDeadlineTimer &until)
{
    while (m_running) {
        if (m_isGathering)
            gather(until);
        else if (m_open)
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
    if (!files.setAside.isEmpty()) {
        m_isGathering = true;
        if (const Result<void> begun = m_reunited.start(files, m_condition.where, m_condition.values); !begun)
            fail(begun.fault());
        return true;
    }
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
    auto day = std::make_unique<OpenDay>();
    day->database = std::move(database.value());
    const QString table = QStringLiteral("Eventi");
    Result<ReadableRows> rows = ReadableRows::open(*day->database, table, m_condition.where, m_condition.values);
    if (!rows)
        return rows.fault();
    day->rows = std::move(rows.value());
    // For the progress only: whatever keeps the rows from being counted shows again when they are read.
    const QString count = QStringLiteral("SELECT count(*) FROM %1 WHERE %2").arg(table, m_condition.where);
    if (const Result<qint64> matches = day->database->number(count, m_condition.values); matches)
        day->matches = static_cast<int>(matches.value());
    if (!day->findColumns())
        return Fault{FaultCode::Damaged, day->database->path()};
    return day;
}

void EventSearch::gather(const QDeadlineTimer &until)
{
    const Result<bool> isDone = m_reunited.step(until);
    if (!isDone)
        return fail(isDone.fault());
    if (!isDone.value())
        return;
    m_isGathering = false;
    m_isUnread = m_reunited.archiveFault() && !m_reunited.hasRead();
    Result<std::unique_ptr<OpenDay>> opened = openReunited();
    if (!opened)
        return fail(opened.fault());
    m_open = std::move(opened.value());
    m_matches = m_open->matches;
}

Result<std::unique_ptr<EventSearch::OpenDay>> EventSearch::openReunited()
{
    Result<Statement> rows = m_reunited.rows(ReunitedDay::Which::All);
    if (!rows)
        return rows.fault();
    auto day = std::make_unique<OpenDay>();
    day->gathered = std::move(rows.value());
    day->matches = static_cast<int>(m_reunited.count());
    (void)day->findColumns();
    return day;
}

/// The search has come to its end early; what it has found stays.
void EventSearch::fail(const Fault &fault)
{
    m_fault = fault;
    finish();
}

void EventSearch::copyRow()
{
    const Result<ReadableRows::Found> found = m_open->step();
    if (!found && m_open->gathered)
        return fail(found.fault());
    if (!found || found.value() == ReadableRows::Found::End)
        return nextDay();
    if (found.value() == ReadableRows::Found::Nothing)
        return;
    const Statement &row = m_open->row();
    const SearchResults::Columns &columns = m_open->columns;
    const User *user = m_users.find(row.text(columns.Codice), row.text(columns.Tipo));
    const Result<void> added =
        m_results.add(row, columns, user ? user->Cognome : QString(), user ? user->Nome : QString());
    if (!added)
        return fail(added.fault());
    ++m_position;
}

/// Notes what could not be read of the day.
void EventSearch::closeDay()
{
    if (m_open && m_open->rows) {
        const ReadableRows::Extent extent = m_open->rows->extent();
        m_isUnread |= extent == ReadableRows::Extent::Nothing;
        m_isIncomplete |= extent == ReadableRows::Extent::Part;
    }
    m_open.reset();
    m_reunited.clear();
    m_isGathering = false;
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
