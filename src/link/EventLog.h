#pragma once

#include "link/DayRescue.h"
#include "link/WaitingNotices.h"

#include <QObject>
#include <QSet>
#include <QTimer>

#include <functional>
#include <optional>

/// The day's archive of events: opened at start, replaced when the date changes, closed at the end.
///
/// An event that cannot be stored waits in the spool, in its order and with its own time, until it can; so do events
/// that nobody can decide about yet. The operator is told when waiting begins and when it has ended.
class EventLog : public QObject
{
    Q_OBJECT

public:
    /// Whether a code is registered; nothing while nobody knows.
    using Decide = std::function<std::optional<bool>(const QString &code)>;

    /// All must outlive this object.
    EventLog(ArchiveStore &archives, const Clock &clock, Notices &notices, QObject *parent = nullptr);
    ~EventLog() override;

    /// @param decide  of the events that were appended undecided, by this run or an earlier one; {} = they wait
    void decideBy(Decide decide) { m_decide = std::move(decide); }

    /// Opens the archive of today, made from the template when there is none. A damaged one is set aside, with a
    /// notice, and a new one is made, into which what can still be read is brought by and by. When it cannot be opened
    /// a notice tells why, and changeDayIfNeeded() tries again. What an earlier run has left waiting is stored by and
    /// by.
    void open();
    /// Opens the archive of the new day when the date has changed. The old one stays open when the new one cannot be
    /// opened, and is written to until it can. The events of an archive that somebody has deleted or replaced are
    /// brought into the one that takes its place. After a minute without events what stands in the archive's journal
    /// goes into its file.
    /// @return true when another archive was opened
    bool changeDayIfNeeded();
    /// Stores what still waits if it can, tells what is left and what is lost, and closes the archive.
    void close();

    /// Stores an event, behind those that wait for the same archive. @return true when it is there, false when it waits
    bool append(const Event &event);
    /// Keeps an event that nobody can decide about yet, until retry() finds that somebody can.
    /// @param isForAMoment  that will be soon: the end of the wait is not worth a word
    void appendUndecided(const Event &event, bool isForAMoment);
    /// Tries again to store what waits, each event in the archive of its own day; also done once a second by itself.
    void retry();

    /// Events that would be lost if the program ended now.
    qsizetype unsaved();
    /// That events wait, and where, or that none is stored; nothing when all is well.
    std::optional<Message> waits() const;
    /// Why events that come cannot be stored, or decided about, now and not for a moment only; nothing when they can.
    std::optional<FaultCode> storingFault() const { return m_told.storingFault(); }

    /// Day of the open archive; not valid while none is open.
    QDate day() const { return m_days.live() ? m_days.live()->day() : QDate(); }

Q_SIGNALS:
    /// An event is on disk, in the archive of its day. @param row  its ProgEv
    void stored(const Event &event, qint64 row);
    /// Events are gone for good.
    void eventsLost(qsizetype count);
    /// waits() and storingFault() may tell something else.
    void waitingChanged();

private:
    bool isDecidable() const { return m_decide && m_decide({}).has_value(); }
    Result<qint64> insert(const Event &event);
    void keep(WaitingEvent event);
    void openToday();
    void drain();
    bool work();
    bool hasWork() const { return m_spool.isRescuing() || nextDay().has_value(); }
    bool isReading() const { return m_days.live() && !m_days.live()->isRead(); }
    std::optional<QDate> nextDay() const;
    Result<void> bringOver();
    Result<void> storeWaiting(QDate day);
    void tellLost();

    const Clock &m_clock;
    Notices &m_notices;
    EventSpool m_spool;
    WaitingNotices m_told;
    Decide m_decide;
    DayArchives m_days;
    DayRescue m_rescue;
    qint64 m_broughtTo = 0;  ///< ProgEv of the last event that was brought out of an archive that lost its name
    qint64 m_lastStored = 0; ///< monotonic, milliseconds

    QSet<QDate> m_stuck; ///< days that nothing can be done for until the next retry
    bool m_isOpen = false;
    int m_retries = 0;
    QTimer m_again;
};
