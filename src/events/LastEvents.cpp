#include "events/LastEvents.h"

#include "codes/EventRow.h"

#include <algorithm>

LastEvents::LastEvents(ArchiveStore &archives, const QString &workingName)
    : m_archives(archives), m_reunited(archives, workingName)
{
}

void LastEvents::close()
{
    m_rows.reset();
    m_database.reset();
    m_reunited.clear();
    m_isGathering = false;
}

Result<void> LastEvents::start(const DayFiles &files, qsizetype most)
{
    close();
    m_events.clear();
    m_most = most;
    m_before = 0;
    bool isWhole = files.setAside.isEmpty();
    if (!files.archive.isEmpty()) {
        Result<Database> opened = m_archives.open(files.archive, Database::Use::Safe);
        if (!opened)
            return opened.fault();
        m_database = std::move(opened.value());
        const Result<bool> isRescued = isWhole ? Result<bool>(true) : ReunitedDay::isBroughtInto(*m_database);
        if (!isRescued)
            return isRescued.fault();
        isWhole = isRescued.value();
    }
    if (isWhole)
        return openArchive(files);
    m_database.reset();
    m_isGathering = true;
    return m_reunited.start(files, QStringLiteral("1"), {});
}

Result<void> LastEvents::openArchive(const DayFiles &files)
{
    if (!m_database)
        return Fault{FaultCode::NotFound, files.archive};
    Result<Statement> rows = m_database->prepare(
        QStringLiteral("SELECT ProgEv, %1 FROM Eventi ORDER BY Data DESC, Ora DESC, ProgEv DESC LIMIT %2")
            .arg(QLatin1String(EventRow::Columns))
            .arg(m_most));
    if (!rows)
        return rows.fault();
    m_rows = std::move(rows.value());
    return {};
}

Result<void> LastEvents::openReunited()
{
    m_isGathering = false;
    if (m_reunited.archiveFault())
        return *m_reunited.archiveFault();
    Result<Statement> rows = m_reunited.rows(ReunitedDay::Which::All);
    if (!rows)
        return rows.fault();
    m_rows = std::move(rows.value());
    m_before = std::max<qint64>(0, m_reunited.count() - m_most);
    return {};
}

Result<bool> LastEvents::step(const QDeadlineTimer &until)
{
    if (m_isGathering) {
        Result<bool> gathered = m_reunited.step(until);
        if (!gathered || !gathered.value())
            return gathered;
        if (const Result<void> opened = openReunited(); !opened)
            return opened.fault();
    }
    do {
        Result<bool> stepped = m_rows->step();
        if (!stepped)
            return stepped;
        if (!stepped.value()) {
            // Only those of the archive come newest first.
            if (m_database)
                std::reverse(m_events.begin(), m_events.end());
            close();
            return true;
        }
        if (m_before > 0)
            --m_before;
        else
            m_events.append({m_rows->integer(0), EventRow::read(*m_rows, 1), {}, {}});
    } while (!until.hasExpired());
    return false;
}

QList<ListedEvent> LastEvents::take()
{
    return std::exchange(m_events, {});
}
