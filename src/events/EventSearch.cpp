#include "events/EventSearch.h"

#include "archives/ReadableRows.h"
#include "archives/Tables.h"
#include "codes/Event.h"
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
    /// @return false when one is missing that is never left out
    bool findColumns();
};

namespace {

/// A name of its own: events of a day may be rescued meanwhile.
const QString searchGathering = QStringLiteral("Archivi/Riuniti.$$$");

/// How often a day is read again that somebody changes meanwhile, who does so a few times a day at most.
constexpr int mostChanges = 5;
constexpr int rowsOfSink = 50;

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

bool EventSearch::OpenDay::findColumns()
{
    columns = SearchResults::columnsOf(row());
    return std::min({columns.Codice, columns.Data, columns.AbCh, columns.KorDis}) >= 0;
}

std::optional<QSet<QDate>> daysThatWait(ArchiveStore &archives, Database::Use use)
{
    QSet<QDate> days;
    if (!archives.exists(ArchiveName::Waiting))
        return days;
    // One that cannot be read now has been told by the log, which keeps it.
    Result<Database> spool = archives.open(ArchiveName::Waiting, use);
    if (!spool || !spool.value().each(QStringLiteral("SELECT DISTINCT Giorno FROM Attesa"), {},
                                      [&days](const Statement &row) { days.insert(dayOfFile(row.text(0))); }))
        return std::nullopt;
    return days;
}

EventSearch::EventSearch(ArchiveStore &archives, const UserDirectory &users)
    : m_archives(archives), m_users(users), m_reunited(archives, searchGathering)
{
    m_results.emplace(archives);
}

EventSearch::EventSearch(ArchiveStore &archives, const UserDirectory &users, EventSink &sink)
    : m_archives(archives),
      m_users(users),
      m_sink(&sink),
      m_use(Database::Use::Untouched),
      m_reunited(archives, {}, m_use)
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
    m_isLeft = false;
    if (m_results) {
        if (Result<void> cleared = m_results->clear(); !cleared)
            return cleared;
    }
    m_counts.begin(query.firstDay, query.lastDay);
    m_condition = dayCondition(query);
    Result<QHash<QDate, DayFiles>> files = filesOfDays(m_archives.folder());
    if (!files)
        return files.fault();
    m_files = std::move(files.value());
    const std::optional<QSet<QDate>> waiting = daysThatWait(m_archives, m_use);
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
        // A day that is opened only to be left again would never end.
        if (m_isLeft)
            openAgain();
        if (!m_running)
            break;
        if (m_isGathering)
            gather(until);
        else if (m_open)
            copyRows();
        else if (!openDay())
            nextDay();
        if (until.hasExpired())
            break;
    }
    release();
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
    m_last = m_kept = 0;
    m_changes = 0;
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
    Result<Database> database = m_archives.open(name, m_use);
    if (!database)
        return database.fault();
    auto day = std::make_unique<OpenDay>();
    day->database = std::move(database.value());
    const QString table = QStringLiteral("Eventi");
    DayCondition condition = m_condition;
    if (m_kept != 0) {
        condition.values.append(m_kept);
        condition.where += QStringLiteral(" AND rowid > ?%1").arg(condition.values.size());
    }
    Result<ReadableRows> rows = ReadableRows::open(*day->database, table, condition.where, condition.values);
    if (!rows)
        return rows.fault();
    day->rows = std::move(rows.value());
    if (!day->findColumns())
        return Fault{FaultCode::Damaged, day->database->path()};
    if (m_sink)
        return day;
    // For the progress only: whatever keeps the rows from being counted shows again when they are read.
    const QString count = QStringLiteral("SELECT count(*) FROM %1 WHERE %2").arg(table, m_condition.where);
    if (const Result<qint64> matches = day->database->number(count, m_condition.values); matches)
        day->matches = static_cast<int>(matches.value());
    return day;
}

/// Reads on in a day that was left.
void EventSearch::openAgain()
{
    m_isLeft = false;
    Result<std::unique_ptr<OpenDay>> opened = open(m_files.value(m_day).archive);
    if (opened) {
        m_open = std::move(opened.value());
        return;
    }
    m_hasLost = true;
    nextDay();
}

/// Leaves the archive of the day for as long as the sink's owner writes. Behind damage the way back would be too long.
void EventSearch::release()
{
    if (!m_sink || !m_open)
        return;
    if (m_open->gathered)
        m_sink->keep();
    if (!m_open->rows || !m_open->rows->isSound())
        return;
    (void)settle();
    m_open.reset();
    m_isLeft = true;
}

/// What was read of an open day counts, unless it was changed meanwhile: then it is to be read again.
/// @return false when it is
bool EventSearch::settle()
{
    if (!m_sink)
        return true;
    if (m_open && m_open->database && m_open->database->hasChanged() && ++m_changes < mostChanges) {
        m_sink->takeBack();
        return false;
    }
    m_sink->keep();
    m_kept = m_last;
    noteExtent();
    return true;
}

void EventSearch::noteExtent()
{
    if (!m_open || !m_open->rows)
        return;
    const ReadableRows::Extent extent = m_open->rows->extent();
    m_hasRead |= extent != ReadableRows::Extent::Nothing;
    m_hasLost |= extent != ReadableRows::Extent::Whole;
}

void EventSearch::gather(const QDeadlineTimer &until)
{
    // Its files stay open until all of them are read.
    const Result<bool> isDone = m_reunited.step(m_sink ? QDeadlineTimer(QDeadlineTimer::Forever) : until);
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

/// To a sink that takes a part of a microsecond for each, some before the clock is looked at.
void EventSearch::copyRows()
{
    for (int rows = m_sink ? rowsOfSink : 1; rows > 0 && m_open; --rows)
        copyRow();
}

void EventSearch::copyRow()
{
    const Result<ReadableRows::Found> found = m_open->step();
    if (!found && m_open->gathered)
        return fail(found.fault());
    if (!found || found.value() == ReadableRows::Found::End) {
        if (settle())
            return nextDay();
        m_open.reset();
        m_isLeft = true;
        return;
    }
    if (found.value() == ReadableRows::Found::Nothing)
        return;
    if (const Result<void> added = deliver(m_open->row()); !added)
        return fail(added.fault());
    ++m_position;
}

Result<void> EventSearch::deliver(const Statement &row)
{
    const SearchResults::Columns &columns = m_open->columns;
    m_last = row.integer(0);
    if (m_sink)
        return m_sink->add(row, columns);
    const User *user = m_users.find(row.text(columns.Codice), typeOf(row.text(columns.Tipo)));
    Result<void> added = m_results->add(row, columns, user ? user->Cognome : QString(), user ? user->Nome : QString());
    if (added)
        count(row);
    else
        m_counts.keepFirst(m_results->count());
    return added;
}

void EventSearch::count(const Statement &row)
{
    const SearchResults::Columns &columns = m_open->columns;
    const QString mark = markText(true);
    const int hour = m_counts.isByHour() && columns.Ora >= 0 ? timeOf(row.text(columns.Ora)).hour() : 0;
    m_counts.add(m_day, hour, row.text(columns.AbCh) != mark && row.text(columns.KorDis) != mark);
}

/// Notes what could not be read of the day.
void EventSearch::closeDay()
{
    noteExtent();
    m_isUnread |= m_hasLost && !m_hasRead;
    m_isIncomplete |= m_hasLost && m_hasRead;
    m_hasRead = m_hasLost = false;
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
