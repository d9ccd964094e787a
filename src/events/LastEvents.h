#pragma once

#include "archives/ReunitedDay.h"
#include "events/EventColumns.h"

/// The last events of a day by their times, read through a connection of its own. As long as not all that can be read
/// of archives that were set aside stands in the archive of the day, those are among them, each event once.
class LastEvents : public Task
{
public:
    /// @param archives     must outlive this object
    /// @param workingName  of a throw-away archive, which nothing else uses
    LastEvents(ArchiveStore &archives, const QString &workingName);

    /// @param files  of the day. @param most  events
    Result<void> start(const DayFiles &files, qsizetype most);
    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_events.size(), 0}; }

    /// What was read, oldest first, without the names of users; to be asked once it is all.
    QList<ListedEvent> take();

private:
    Result<void> openArchive(const DayFiles &files);
    Result<void> openReunited();
    void close();

    ArchiveStore &m_archives;
    ReunitedDay m_reunited;
    bool m_isGathering = false;
    std::optional<Database> m_database;
    std::optional<Statement> m_rows; ///< goes before the above, which it may read
    qsizetype m_most = 0;
    qint64 m_before = 0; ///< of the gathered rows, those that come before the last ones
    QList<ListedEvent> m_events;
};
