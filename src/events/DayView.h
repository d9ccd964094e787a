#pragma once

#include "codes/UserDirectory.h"
#include "events/LastEvents.h"
#include "platform/Clock.h"
#include "platform/FileIdentity.h"

/// The latest events of the day, as they are read again and again from its archive while the log appends to it.
///
/// The archive is opened for each look at it: the log is never kept from closing the day, and an archive that was
/// replaced is seen at the next look. What can be read of archives of the day that were set aside is among the events.
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

    /// Looks for new events and, once the new day has an archive, goes over to it. Works for a turn at most.
    /// @param limit  most rows to hold, 1 to 1000
    /// @return true when rows() have changed
    Result<bool> refresh(int limit);
    /// Whether there are new events that are still being read: refresh() is to be called again at once.
    bool isReading() const { return m_isReading; }

    /// The latest events, oldest first.
    const QList<ListedEvent> &rows() const { return m_rows; }

private:
    /// What tells that there is more than was shown.
    struct Seen {
        qint64 highest = 0;       ///< number of an event
        bool isBrought = false;   ///< what was set aside stands in the archive
        bool hasSetAside = false; ///< whether there is any such file
        bool operator==(const Seen &) const = default;
    };

    bool changeDay();
    void begin(QDate day);
    Result<void> findFiles();
    Result<Seen> look();
    Result<bool> readOn();

    ArchiveStore &m_archives;
    const Clock &m_clock;
    UserDirectory m_users;
    QDate m_today;
    DayFiles m_files;
    std::optional<FileIdentity> m_archive; ///< the one that the files were looked for with
    Seen m_shown;
    Seen m_found; ///< what is being read
    bool m_isReading = false;
    LastEvents m_last;
    QList<ListedEvent> m_rows;
};
