#pragma once

#include "link/DayArchive.h"
#include "platform/Clock.h"
#include "texts/Notices.h"

#include <QSet>
#include <QStringList>

#include <functional>
#include <memory>
#include <utility>

/// The archives of days that are open at a time: the one that live events go to, one of another day for events that
/// waited, and one that has lost its name.
///
/// A damaged archive is set aside, with a notice, and a new one is made.
class DayArchives
{
public:
    /// All must outlive this object.
    /// @param moved  called when another part of the program was about to open a file that stands under the live one's
    /// name
    DayArchives(ArchiveStore &archives, const Clock &clock, Notices &notices, std::function<void()> moved)
        : m_archives(archives), m_clock(clock), m_notices(notices), m_moved(std::move(moved))
    {
    }

    /// What live events go to; null while nothing is open.
    DayArchive *live() const { return m_live.get(); }
    /// What was replaced or deleted while it was open, until giveUpLeft(); null for nothing. It is not live any more.
    DayArchive *left() const { return m_left.get(); }
    /// Times that a live archive was opened.
    int openings() const { return m_openings; }

    /// Makes the archive of today the live one, unless it is or is left. That it cannot be opened is told once.
    void openToday();
    /// Makes the archive of a day the live one. The one before is closed, once the new one is open.
    Result<void> openLive(QDate day);
    /// The archive that takes events of @p day which waited: the live one when it is of that day, or of today.
    Result<DayArchive *> of(QDate day);
    /// Reads on in one of the above; what turns out damaged is replaced, and is another object then.
    Result<void> readOn(DayArchive &archive, int milliseconds);
    /// Sets a damaged one aside and opens a new one in its stead.
    Result<void> replace(const DayArchive &damaged);
    /// Days of which an archive was set aside since this was asked last.
    QSet<QDate> takeSetAside() { return std::exchange(m_setAside, {}); }

    /// Notices when the live archive has lost its name: then it is left.
    void look();
    void giveUpLeft();
    /// Brings archives that somebody was reading when they were closed into one file.
    void leaveLogModes();
    /// Closes the one for events that waited.
    void finishLate() { finish(m_late); }
    void finishLive();

private:
    using Archive = std::unique_ptr<DayArchive>;

    Result<Archive> obtain(QDate day);
    Result<Archive> makeAfresh(QDate day);
    void leaveNumbers(DayArchive &archive);
    qint64 highestOf(const QString &aside, qint64 before);
    void holdName();
    void finish(Archive &archive);

    ArchiveStore &m_archives;
    const Clock &m_clock;
    Notices &m_notices;
    std::function<void()> m_moved;
    Archive m_live;
    Archive m_late;
    Archive m_left;
    QSet<QDate> m_setAside;
    int m_openings = 0;
    QDate m_failedDay;            ///< told that its archive cannot be opened
    QStringList m_stillInLogMode; ///< names of closed archives
};
