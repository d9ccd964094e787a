#include "link/EventLog.h"

#include "archives/Tables.h"
#include "startup/DateTimeText.h"

#include <QElapsedTimer>

#include <algorithm>

namespace {

constexpr int againMilliseconds = 1000;
/// Longest that storing what waits keeps the event loop.
constexpr qint64 turnMilliseconds = 20;
/// While events are being lost the operator is told how many once a minute.
constexpr int retriesBetweenCounts = 60;

} // namespace

struct EventLog::OpenDay {
    Database database;
    Statement insert;
};

EventLog::EventLog(ArchiveStore &archives, const Clock &clock, Notices &notices, QObject *parent)
    : QObject(parent), m_archives(archives), m_clock(clock), m_notices(notices)
{
    m_again.setInterval(againMilliseconds);
    connect(&m_again, &QTimer::timeout, this, &EventLog::retry);
}

EventLog::~EventLog()
{
    close();
}

void EventLog::open()
{
    const QString day = DataFile(m_clock.date());
    const Result<void> opened = openOrReplace(day);
    if (opened) {
        m_failedDay.clear();
    } else if (m_failedDay != day) {
        m_failedDay = day;
        m_notices.post(Icon::Critical, {OwnText::DayArchiveUnavailable, {ArchiveName::events(day)}, opened.fault()});
    }
}

Result<void> EventLog::openOrReplace(const QString &day)
{
    Result<void> opened = openDay(day);
    if (opened || opened.fault().code != FaultCode::Damaged)
        return opened;
    return replace(day);
}

/// Sets the archive of a day aside and makes a new one.
Result<void> EventLog::replace(const QString &day)
{
    m_open.reset();
    m_day.clear();
    const QString name = ArchiveName::events(day);
    const Result<QString> aside = m_archives.setAside(name);
    if (!aside)
        return aside.fault();
    m_notices.post(Icon::Critical, {OwnText::DayArchiveSetAside, {name, aside.value()}, {}});
    return openDay(day);
}

Result<void> EventLog::openDay(const QString &day)
{
    const QString name = ArchiveName::events(day);
    const bool isNew = !m_archives.exists(name);
    if (isNew) {
        if (Result<void> copied = m_archives.copy(ArchiveName::EventsTemplate, name); !copied)
            return copied;
    }
    Result<OpenDay> opened = openArchive(name);
    if (!opened && isNew && opened.fault().code == FaultCode::Damaged) {
        // It is the template that is damaged: another copy would be no better.
        (void)m_archives.remove(name);
        return Fault{FaultCode::TemplateDamaged, QStringView(ArchiveName::EventsTemplate).toString()};
    }
    if (!opened)
        return opened.fault();
    closeDay();
    m_open = std::make_unique<OpenDay>(std::move(opened.value()));
    m_day = day;
    return {};
}

Result<EventLog::OpenDay> EventLog::openArchive(const QString &name)
{
    Result<Database> database = m_archives.open(name, Database::Use::Log);
    if (!database)
        return database.fault();
    Result<Statement> insert = database.value().prepare(
        QStringLiteral("INSERT INTO Eventi (Codice, Data, Ora, Tipo, Canale, AbCh, KorDis, DataOrd) "
                       "VALUES (?, ?, ?, ?, ?, ?, ?, ?)"));
    if (!insert)
        return insert.fault();
    return OpenDay{std::move(database.value()), std::move(insert.value())};
}

void EventLog::leaveLogModes()
{
    // A search or another program had the day open when it was closed.
    m_stillInLogMode.removeIf([this](const QString &name) {
        Result<Database> database = m_archives.open(name, Database::Use::Safe);
        return database ? database.value().leaveLogMode().ok() : database.fault().code != FaultCode::Locked;
    });
}

bool EventLog::changeDayIfNeeded()
{
    leaveLogModes();
    const bool isDeleted = m_open && !m_archives.exists(ArchiveName::events(m_day));
    if (DataFile(m_clock.date()) == m_day && !isDeleted)
        return false;
    if (isDeleted) {
        // Rows that go into a file without a name are lost when it is closed.
        m_notices.post(Icon::Critical, {OwnText::DayArchiveUnavailable,
                                        {ArchiveName::events(m_day)},
                                        Fault{FaultCode::NotFound, ArchiveName::events(m_day)}});
        m_open.reset();
        m_day.clear();
    }
    const QString before = m_day;
    open();
    return m_day != before;
}

void EventLog::closeDay()
{
    if (!m_open)
        return;
    m_open->insert.reset();
    if (!m_open->database.leaveLogMode())
        m_stillInLogMode.append(ArchiveName::events(m_day));
    m_open.reset();
    m_day.clear();
}

void EventLog::close()
{
    while (!m_waiting.isEmpty() && drain() == false && m_again.interval() == 0) {
    }
    if (!m_waiting.isEmpty()) {
        m_lost += m_waiting.size();
        m_waiting.clear();
        tellLost();
    }
    m_again.stop();
    closeDay();
}

bool EventLog::append(const Event &event)
{
    if (m_waiting.size() >= WaitingLimit) {
        m_waiting.removeFirst();
        ++m_lost;
    }
    m_waiting.enqueue(event);
    return drain();
}

void EventLog::appendLate(const QList<Event> &events)
{
    if (events.isEmpty())
        return;
    m_isWaiting = true;
    m_again.start();
    m_waiting.append(events);
    drain();
}

void EventLog::retry()
{
    if (!m_waiting.isEmpty())
        drain();
    const bool isStuck = m_again.interval() > 0;
    if (isStuck && ++m_retries % retriesBetweenCounts == 0 && m_lost > 0)
        tellLost();
}

/// Stores all that waits. @return false when something still does
bool EventLog::drain()
{
    QElapsedTimer turn;
    turn.start();
    bool isFaultless = true;
    while (!m_waiting.isEmpty() && isFaultless && turn.elapsed() < turnMilliseconds) {
        const Result<void> stored = storeFirst();
        isFaultless = stored.ok();
        if (!stored)
            waitBegins(stored.fault());
    }
    // What can be stored goes on in the next turn of the event loop, what cannot is tried again later.
    m_again.setInterval(isFaultless ? 0 : againMilliseconds);
    if (m_isWaiting) {
        // Late events may have been put into the archive of their own day.
        if (m_open && m_day != DataFile(m_clock.date()))
            open();
        if (m_waiting.isEmpty())
            waitEnds();
    }
    return m_waiting.isEmpty();
}

Result<void> EventLog::storeFirst()
{
    const Event event = m_waiting.first();
    // A live event goes where the clock's last look at the date has put it; one that waited belongs to its own day.
    if (!m_open || (m_isWaiting && m_day != event.Data)) {
        if (Result<void> opened = openOrReplace(event.Data); !opened)
            return opened;
    }
    Result<qint64> row = insert(event);
    if (!row && row.fault().code == FaultCode::Damaged) {
        // Opening reads no more than its first page: what is damaged behind that shows only now.
        if (Result<void> replaced = replace(QString(m_day)); !replaced)
            return replaced;
        row = insert(event);
    }
    if (!row)
        return row.fault();
    m_waiting.removeFirst();
    if (m_isWaiting)
        ++m_hadToWait;
    Q_EMIT stored(event, row.value());
    return {};
}

void EventLog::waitBegins(const Fault &fault)
{
    if (m_isWaiting)
        return;
    m_isWaiting = true;
    m_again.start();
    m_notices.post(Icon::Critical, {OwnText::EventsWait, {}, fault});
}

void EventLog::waitEnds()
{
    m_isWaiting = false;
    m_again.stop();
    m_notices.post(Icon::Information, {OwnText::EventsStoredAgain, {QString::number(m_hadToWait)}, {}});
    m_hadToWait = 0;
    if (m_lost > 0)
        tellLost();
}

void EventLog::tellLost()
{
    m_notices.post(Icon::Critical, {OwnText::EventsLost, {QString::number(m_lost)}, {}});
    m_lost = 0;
}

Result<QList<EventLog::Stored>> EventLog::last(qsizetype most) const
{
    if (!m_open)
        return Fault{FaultCode::NotOpen, ArchiveName::events(DataFile(m_clock.date()))};
    // The statement ends with this call: while it reads, what the writer has put aside cannot be brought together.
    QList<Stored> events;
    const Result<void> read = m_open->database.each(
        QStringLiteral("SELECT ProgEv, Codice, Data, Ora, Tipo, Canale, AbCh, KorDis FROM Eventi "
                       "ORDER BY Data DESC, Ora DESC, ProgEv DESC LIMIT ?"),
        {qint64{most}}, [&events](const Statement &row) {
            events.append(
                {row.text(0),
                 {row.text(1), row.text(2), row.text(3), row.text(4), row.text(5), row.text(6), row.text(7), {}}});
        });
    if (!read)
        return read.fault();
    std::reverse(events.begin(), events.end());
    return events;
}

Result<qint64> EventLog::insert(const Event &event)
{
    Statement &insert = m_open->insert;
    int position = 0;
    for (const QString *value : {&event.Codice, &event.Data, &event.Ora, &event.Tipo, &event.Canale, &event.AbCh,
                                 &event.KorDis, &event.DataOrd})
        insert.bind(++position, *value);
    const Result<bool> stored = insert.step();
    const qint64 row = m_open->database.lastRow();
    insert.reset();
    if (!stored)
        return stored.fault();
    return row;
}
