#pragma once

#include "codes/UserDirectory.h"
#include "events/EventColumns.h"
#include "platform/Clock.h"

/// The latest events of the day, as they are read again and again from its archive while the log appends to it.
///
/// The archive is opened for each look at it: the log is never kept from closing the day, and an archive that was
/// replaced is seen at the next look.
class DayView
{
public:
    /// @param archives, @param clock  must outlive this object
    DayView(ArchiveStore &archives, const Clock &clock);

    /// Takes today as the day shown. Its users are to be read then, before refresh().
    Result<void> open();
    Task &users() { return m_users; }
    /// Whether the day shown has an archive.
    bool hasArchive() const;

    /// Looks for new events and, once the new day has an archive, goes over to it.
    /// @param limit  most rows to hold, 1 to 1000
    /// @return true when rows() have changed
    Result<bool> refresh(int limit);

    /// The latest events, oldest first.
    const QList<ListedEvent> &rows() const { return m_rows; }

private:
    /// What tells that there is more than was shown.
    struct Seen {
        qint64 highest = 0; ///< number of an event
        qint64 mark = 0;    ///< of an archive that events were rescued into
        bool operator==(const Seen &) const = default;
    };

    bool changeDay();
    Result<QList<ListedEvent>> read(Database &database, int limit) const;

    ArchiveStore &m_archives;
    const Clock &m_clock;
    UserDirectory m_users;
    QDate m_today;
    Seen m_shown;
    QList<ListedEvent> m_rows;
};
