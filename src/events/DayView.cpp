#include "events/DayView.h"

#include "archives/Tables.h"

namespace {

/// Longest that one look takes.
constexpr int lookMilliseconds = 15;
const QString viewGathering = QStringLiteral("Archivi/Vista.$$$");

} // namespace

DayView::DayView(ArchiveStore &archives, const Clock &clock)
    : m_archives(archives), m_clock(clock), m_users(archives, ArchiveName::ViewUsers), m_last(archives, viewGathering)
{
}

Result<void> DayView::open()
{
    begin(m_clock.date());
    return m_users.begin();
}

void DayView::begin(QDate day)
{
    m_today = day;
    m_archive.reset();
    m_shown = {};
    m_isReading = false;
    m_rows.clear();
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
    begin(today);
    return true;
}

Result<bool> DayView::refresh(int limit)
{
    const bool changed = changeDay();
    if (!m_isReading) {
        const Result<Seen> found = look();
        if (!found)
            return changed ? Result<bool>(true) : found.fault();
        if (found.value() == m_shown)
            return changed;
        m_found = found.value();
        if (const Result<void> begun = m_last.start(m_files, limit); !begun)
            return begun.fault();
        m_isReading = true;
    }
    const Result<bool> read = readOn();
    return read ? Result<bool>(changed || read.value()) : read;
}

/// Which files the day has can only change with its archive.
Result<void> DayView::findFiles()
{
    const std::optional<FileIdentity> archive = identityOf(m_archives.folder().path(ArchiveName::events(m_today)));
    if (archive && archive == m_archive)
        return {};
    Result<DayFiles> files = filesOfDay(m_archives.folder(), m_today);
    if (!files)
        return files.fault();
    m_files = std::move(files.value());
    m_archive = archive;
    m_shown = {};
    return {};
}

/// Events are numbered as they are stored and never removed: the highest number tells of new ones, at the cost of one
/// page. Those that were rescued may have lower ones: the archive is marked when they are there.
Result<DayView::Seen> DayView::look()
{
    if (const Result<void> found = findFiles(); !found)
        return found.fault();
    Result<Database> database = m_archives.open(ArchiveName::events(m_today), Database::Use::Safe);
    if (!database)
        return database.fault();
    const Result<qint64> highest = database.value().number(QStringLiteral("SELECT max(ProgEv) FROM Eventi"));
    if (!highest)
        return highest.fault();
    const Result<bool> isBrought = ReunitedDay::isBroughtInto(database.value());
    if (!isBrought)
        return isBrought.fault();
    return Seen{highest.value(), isBrought.value(), !m_files.setAside.isEmpty()};
}

/// @return true when all has been read
Result<bool> DayView::readOn()
{
    Result<bool> read = m_last.step(QDeadlineTimer(lookMilliseconds));
    m_isReading = read && !read.value();
    if (!read || m_isReading)
        return read;
    m_rows = m_last.take();
    for (ListedEvent &row : m_rows) {
        if (const User *user = m_users.find(row.event.Codice, row.event.Tipo))
            std::tie(row.Cognome, row.Nome) = std::pair(user->Cognome, user->Nome);
    }
    m_shown = m_found;
    return true;
}
