#include "events/EventSearch.h"

#include "archives/Tables.h"
#include "startup/DateTimeText.h"

#include <QDate>

#include <algorithm>

/// An archive being read. The statement must go before its database does.
struct EventSearch::OpenDay {
    Database database;
    Statement rows;
    SearchResults::Columns columns;
    int matches;
};

EventSearch::EventSearch(ArchiveStore &archives, const UserDirectory &users)
    : m_archives(archives), m_users(users), m_results(archives)
{
}

EventSearch::~EventSearch() = default;

Result<void> EventSearch::start(const EventQuery &query)
{
    m_open.reset();
    m_unread.clear();
    m_fault.reset();
    m_running = false;
    if (Result<void> cleared = m_results.clear(); !cleared)
        return cleared;
    m_condition = dayCondition(query);
    m_day = query.firstDay;
    m_lastKey = DataOrdinabile(query.lastDay);
    m_running = true;
    return {};
}

bool EventSearch::step(const QDeadlineTimer &until)
{
    while (m_running) {
        if (m_open)
            copyRow();
        else if (!openDay())
            nextDay();
        if (until.hasExpired())
            break;
    }
    return m_running;
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
    // The 31st of a shorter month is accepted as an end of the range, but no archive is named after it.
    if (!QDate::fromString(m_day, QStringLiteral("dd/MM/yyyy")).isValid())
        return false;
    const QString name = ArchiveName::events(DataTrattini(m_day));
    if (!m_archives.exists(name))
        return false;
    Result<OpenDay> opened = open(name);
    if (!opened) {
        m_unread.append(m_day);
        return false;
    }
    m_matches = opened.value().matches;
    m_open = std::make_unique<OpenDay>(std::move(opened.value()));
    return true;
}

Result<EventSearch::OpenDay> EventSearch::open(const QString &name) const
{
    Result<Database> database = m_archives.open(name, Database::Use::Safe);
    if (!database)
        return database.fault();
    int matches = 0;
    const Result<void> counted = database.value().each(
        QStringLiteral("SELECT count(*) FROM Eventi WHERE ") + m_condition.where, m_condition.values,
        [&matches](const Statement &row) { matches = static_cast<int>(row.integer(0)); });
    if (!counted)
        return counted.fault();
    Result<Statement> rows =
        database.value().prepare(QStringLiteral("SELECT * FROM Eventi WHERE ") + m_condition.where);
    if (!rows)
        return rows.fault();
    rows.value().bind(m_condition.values);
    QHash<QString, int> places;
    for (int column = 0; column < rows.value().columnCount(); ++column)
        places.insert(rows.value().columnName(column), column);
    const auto place = [&places](const char *field) { return places.value(QString::fromLatin1(field), -1); };
    const SearchResults::Columns columns = {place("Codice"), place("Tipo"), place("Data"),  place("Ora"),
                                            place("Canale"), place("AbCh"), place("KorDis")};
    if (std::min({columns.Codice, columns.Data, columns.AbCh, columns.KorDis}) < 0)
        return Fault{FaultCode::Damaged, database.value().path()};
    return OpenDay{std::move(database.value()), std::move(rows.value()), columns, matches};
}

void EventSearch::copyRow()
{
    const Result<bool> stepped = m_open->rows.step();
    if (!stepped)
        m_unread.append(m_day);
    if (!stepped || !stepped.value())
        return nextDay();
    const SearchResults::Columns &columns = m_open->columns;
    const User *user = m_users.find(m_open->rows.text(columns.Codice), m_open->rows.text(columns.Tipo));
    const Result<void> added =
        m_results.add(m_open->rows, columns, user ? user->Cognome : QString(), user ? user->Nome : QString());
    if (!added) {
        m_fault = added.fault();
        return finish();
    }
    ++m_position;
}

void EventSearch::nextDay()
{
    m_open.reset();
    const QString next = GiornoSeguente(m_day);
    const QString key = DataOrdinabile(next);
    // Behind the last day that can be written with four digits of the year there is none.
    if (key > m_lastKey || key <= DataOrdinabile(m_day) || next.size() != m_day.size())
        return finish();
    m_day = next;
}

void EventSearch::finish()
{
    m_running = false;
    m_open.reset();
    if (const Result<void> kept = m_results.finish(); !kept && !m_fault)
        m_fault = kept.fault();
}
