#pragma once

#include "archives/ArchiveStore.h"
#include "link/EventRecord.h"
#include "platform/Clock.h"
#include "texts/Notices.h"

#include <optional>

/// The day's archive of events: opened at start, replaced when the date changes, closed at the end.
class EventLog
{
public:
    /// All must outlive this object.
    EventLog(ArchiveStore &archives, const Clock &clock, Notices &notices);
    ~EventLog();
    EventLog(const EventLog &) = delete;
    EventLog &operator=(const EventLog &) = delete;

    /// Opens the archive of today, made from the template when there is none. A damaged one is set aside, with a
    /// notice, and a new one is made. When it cannot be opened a notice tells why, and changeDayIfNeeded() tries again.
    void open();
    /// Opens the archive of the new day when the date has changed. The old one stays open when the new one cannot be
    /// opened, and is written to until it can.
    /// @return true when another archive was opened
    bool changeDayIfNeeded();
    void close();

    /// @return ProgEv of the new row, which is on disk when this returns
    Result<qint64> append(const Event &event);

    /// Day of the open archive, "dd-mm-yyyy"; "" while none is open.
    const QString &day() const { return m_day; }

private:
    struct OpenDay;

    Result<void> openDay(const QString &day);
    void setAside(const QString &name);

    ArchiveStore &m_archives;
    const Clock &m_clock;
    Notices &m_notices;
    QString m_day;
    QString m_failedDay; ///< told once that its archive cannot be opened
    std::unique_ptr<OpenDay> m_open;
};
