#include "link/EventLog.h"

#include "archives/Tables.h"
#include "startup/DateTimeText.h"

struct EventLog::OpenDay {
    Database database;
    Statement insert;
};

EventLog::EventLog(ArchiveStore &archives, const Clock &clock, Notices &notices)
    : m_archives(archives), m_clock(clock), m_notices(notices)
{
}

EventLog::~EventLog()
{
    close();
}

void EventLog::open()
{
    const QString day = DataFile(m_clock.date());
    const QString name = ArchiveName::events(day);
    Result<void> opened = openDay(day);
    if (!opened && opened.fault().code == FaultCode::Damaged) {
        setAside(name);
        opened = openDay(day);
    }
    if (opened) {
        m_failedDay.clear();
    } else if (m_failedDay != day) {
        m_failedDay = day;
        m_notices.post(Icon::Critical, {OwnText::DayArchiveUnavailable, {name}, opened.fault()});
    }
}

void EventLog::setAside(const QString &name)
{
    const Result<QString> aside = m_archives.setAside(name);
    if (aside)
        m_notices.post(Icon::Critical, {OwnText::DayArchiveSetAside, {name, aside.value()}, {}});
}

Result<void> EventLog::openDay(const QString &day)
{
    const QString name = ArchiveName::events(day);
    if (!m_archives.exists(name)) {
        if (Result<void> copied = m_archives.copy(ArchiveName::EventsTemplate, name); !copied)
            return copied;
    }
    Result<Database> database = m_archives.open(name, Database::Use::Log);
    if (!database)
        return database.fault();
    Result<Statement> insert = database.value().prepare(
        QStringLiteral("INSERT INTO Eventi (Codice, Data, Ora, Tipo, Canale, AbCh, KorDis, DataOrd) "
                       "VALUES (?, ?, ?, ?, ?, ?, ?, ?)"));
    if (!insert)
        return insert.fault();
    close();
    m_open = std::make_unique<OpenDay>(OpenDay{std::move(database.value()), std::move(insert.value())});
    m_day = day;
    return {};
}

bool EventLog::changeDayIfNeeded()
{
    if (DataFile(m_clock.date()) == m_day)
        return false;
    const QString before = m_day;
    open();
    return m_day != before;
}

void EventLog::close()
{
    if (!m_open)
        return;
    m_open->insert.reset();
    // A reader may still have it open; the next program that copies or reads it brings it together then.
    (void)m_open->database.leaveLogMode();
    m_open.reset();
    m_day.clear();
}

Result<qint64> EventLog::append(const Event &event)
{
    if (!m_open)
        return Fault{FaultCode::NotOpen, {}};
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
