#include "events/DayView.h"

#include "archives/Tables.h"
#include "codes/EventRow.h"

#include <algorithm>

DayView::DayView(ArchiveStore &archives, const Clock &clock)
    : m_archives(archives), m_clock(clock), m_users(archives, ArchiveName::ViewUsers)
{
}

Result<void> DayView::open()
{
    m_today = m_clock.date();
    m_shown = {};
    m_rows.clear();
    return m_users.begin();
}

bool DayView::hasArchive() const
{
    return m_archives.exists(ArchiveName::events(m_today));
}

bool DayView::changeDay()
{
    const QDate today = m_clock.date();
    if (today == m_today || !m_archives.exists(ArchiveName::events(today)))
        return false;
    m_today = today;
    m_shown = {};
    m_rows.clear();
    return true;
}

Result<bool> DayView::refresh(int limit)
{
    const bool changed = changeDay();
    Result<Database> database = m_archives.open(ArchiveName::events(m_today), Database::Use::Safe);
    if (!database && changed)
        return true;
    if (!database)
        return database.fault();
    // Events are numbered as they are stored and never removed: the highest number tells of new ones, at the cost of
    // one page. Those that were rescued may have lower ones: the archive is marked when they are there.
    const Result<qint64> highest = database.value().number(QStringLiteral("SELECT max(ProgEv) FROM Eventi"));
    if (!highest)
        return highest.fault();
    const Result<qint64> mark = database.value().number(QStringLiteral("PRAGMA user_version"));
    if (!mark)
        return mark.fault();
    const Seen seen{highest.value(), mark.value()};
    if (seen == m_shown)
        return changed;
    Result<QList<ListedEvent>> rows = read(database.value(), limit);
    if (!rows)
        return rows.fault();
    m_rows = std::move(rows.value());
    m_shown = seen;
    return true;
}

Result<QList<ListedEvent>> DayView::read(Database &database, int limit) const
{
    QList<ListedEvent> rows;
    const Result<void> done = database.each(
        QStringLiteral("SELECT ProgEv, %1 FROM Eventi ORDER BY Data DESC, Ora DESC, ProgEv DESC LIMIT ?")
            .arg(QLatin1String(EventRow::Columns)),
        {qint64{limit}}, [&](const Statement &row) {
            const Event event = EventRow::read(row, 1);
            const User *user = m_users.find(event.Codice, event.Tipo);
            rows.append({row.integer(0), event, user ? user->Cognome : QString(), user ? user->Nome : QString()});
        });
    if (!done)
        return done.fault();
    std::reverse(rows.begin(), rows.end());
    return rows;
}
