#pragma once

#include "archives/ArchiveStore.h"
#include "link/EventRecord.h"
#include "platform/Clock.h"
#include "texts/Notices.h"

#include <QQueue>
#include <QTimer>

#include <memory>

/// The day's archive of events: opened at start, replaced when the date changes, closed at the end.
///
/// An event that cannot be stored waits in memory, in its order and with its own time, until it can; the oldest of more
/// than WaitingLimit are lost, and told so. The operator is told when waiting begins and when it has ended.
class EventLog : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype WaitingLimit = 10'000;

    /// All must outlive this object.
    EventLog(ArchiveStore &archives, const Clock &clock, Notices &notices, QObject *parent = nullptr);
    ~EventLog() override;

    /// Opens the archive of today, made from the template when there is none. A damaged one is set aside, with a
    /// notice, and a new one is made. When it cannot be opened a notice tells why, and changeDayIfNeeded() tries again.
    void open();
    /// Opens the archive of the new day when the date has changed. The old one stays open when the new one cannot be
    /// opened, and is written to until it can. An archive that somebody has deleted is made anew.
    /// @return true when another archive was opened
    bool changeDayIfNeeded();
    /// Stores what still waits if it can, tells what is lost, and closes the archive.
    void close();

    /// Stores an event, behind those that wait. @return true when it is on disk, false when it waits
    bool append(const Event &event);
    /// Stores events of an earlier time, behind those that wait, each in the archive of its own day.
    void appendLate(const QList<Event> &events);
    /// Tries again to store what waits; also done once a second by itself.
    void retry();
    qsizetype waiting() const { return m_waiting.size(); }

    /// Day of the open archive, "dd-mm-yyyy"; "" while none is open.
    const QString &day() const { return m_day; }

    /// A stored event as it is read back.
    struct Stored {
        QString ProgEv;
        Event event; ///< without DataOrd
    };
    /// The last @p most events of the open archive, or all of them when there are fewer, by their date and time; those
    /// that wait are not among them. @return NotOpen while no archive is open; the subject is the archive
    Result<QList<Stored>> last(qsizetype most) const;

Q_SIGNALS:
    /// An event is on disk. @param row  its ProgEv
    void stored(const Event &event, qint64 row);

private:
    struct OpenDay;

    Result<void> openDay(const QString &day);
    Result<OpenDay> openArchive(const QString &name);
    Result<void> replace(const QString &day);
    Result<void> openOrReplace(const QString &day);
    Result<qint64> insert(const Event &event);
    Result<void> storeFirst();
    bool drain();
    void waitBegins(const Fault &fault);
    void waitEnds();
    void tellLost();
    void closeDay();
    void leaveLogModes();

    ArchiveStore &m_archives;
    const Clock &m_clock;
    Notices &m_notices;
    QString m_day;
    QString m_failedDay; ///< told once that its archive cannot be opened
    std::unique_ptr<OpenDay> m_open;
    QStringList m_stillInLogMode; ///< archives of closed days, to be brought into one file yet
    QQueue<Event> m_waiting;
    bool m_isWaiting = false;  ///< told that events wait
    qsizetype m_hadToWait = 0; ///< stored late since then
    qsizetype m_lost = 0;      ///< not yet told
    int m_retries = 0;
    QTimer m_again;
};
