#pragma once

#include "link/DayArchive.h"
#include "link/SpoolFile.h"
#include "link/SpoolRescue.h"
#include "texts/Notices.h"

#include <optional>
#include <utility>

/// Events that cannot go to the archive of their day yet, in the order in which they came.
///
/// They wait on disk, in a file of their own with one flush an event, and are there at the next start. What the disk
/// does not take waits in memory, behind those on disk; of more than MemoryLimit the oldest are lost, and counted. A
/// damaged file is replaced by one with what can be read of it; until that stands there, whatever comes waits.
class EventSpool
{
public:
    static constexpr qsizetype MemoryLimit = 10'000;
    using Mark = WaitingEvent::Mark;

    /// What became of events that were stored.
    struct Stored {
        QList<std::pair<Event, qint64>> events; ///< with their ProgEv, but for brought ones
        qsizetype brought = 0;                  ///< brought ones that were not there yet
    };
    /// Events that are gone.
    struct Lost {
        qsizetype registered = 0; ///< or brought from an archive
        qsizetype undecided = 0;
    };

    /// Both must outlive this object.
    EventSpool(ArchiveStore &archives, Notices &notices) : m_archives(archives), m_notices(notices) {}

    /// Opens what an earlier run has left, if it has. That it cannot be read is told once.
    void open();
    /// Makes sure that events can be kept on disk; fault() tells why they cannot.
    void prepare() { (void)(m_rescue || put({})); }
    /// Notices that somebody has deleted or replaced the file, and brings over what only the open one still holds.
    void look();
    /// Brings to disk what it takes, and closes. What waits in memory is lost.
    void close();
    /// For every now and then: the file goes when nothing waits any more, else its rows are brought out of its journal.
    void tidy();

    /// Whether a damaged file is being read.
    bool isRescuing() const { return m_rescue != nullptr; }
    /// Goes on with that, once at least.
    void rescueOn(const QDeadlineTimer &until);
    /// Makes room at once for what waits in memory.
    void endRescue();

    /// Keeps an event. @return true when it is on disk
    bool add(WaitingEvent event);
    /// Keeps events on disk, all or none of them.
    Result<void> put(const QList<WaitingEvent> &events);
    /// Brings some of what waits in memory to disk. @return true when there is more, and the disk takes it
    bool spill();

    bool isEmpty() const { return !m_rescue && m_counts.isEmpty(); }
    bool holds(QDate day) const { return m_rescue || m_counts.contains(day); }
    qsizetype count(QDate day, Mark mark) const;
    qsizetype inMemory() const { return m_memory.size(); }
    qsizetype onDisk() const;
    /// Why the disk did not take what it was given last.
    const std::optional<Fault> &fault() const { return m_fault; }
    /// What was lost since this was asked last.
    Lost takeLost() { return std::exchange(m_lost, {}); }

    /// Days that something waits for. @param undecidedToo  so do events that nobody could decide about
    QList<QDate> days(bool undecidedToo) const;
    /// The first events of a day, at most @p most of them.
    Result<QList<WaitingEvent>> first(QDate day, bool undecidedToo, qsizetype most);
    /// Puts events of first() into the archive of their day, those that are not there yet, all or none. They stay in
    /// the spool until remove(); when the program or its power is cut off in between, they are known there again.
    Result<Stored> store(QList<WaitingEvent> events, DayArchive &archive);
    Result<void> remove(const QList<WaitingEvent> &events);

private:
    static QString fileName();
    void tellUnusable(const Fault &fault);
    Result<void> openFile();
    Result<void> tryToPut(const QList<WaitingEvent> &events);
    Result<void> rescue();
    void tellSetAside(const QString &name, qsizetype rescued);
    void moveOver();
    QList<WaitingEvent> all();
    void recount();
    void forget(QDate day);
    Fault ofTheFile(Fault fault);
    Result<void> place(const QList<WaitingEvent> &events);
    void remember(WaitingEvent event);
    void forgetFirst();
    void note(const WaitingEvent &event, qsizetype difference);
    static Result<bool> isThere(const WaitingEvent &waiting, DayArchive &archive);

    ArchiveStore &m_archives;
    Notices &m_notices;
    std::unique_ptr<SpoolFile> m_file;
    std::unique_ptr<SpoolRescue> m_rescue;
    bool m_isRescueVain = false; ///< until the next tidy(): what comes meanwhile waits in memory
    QList<WaitingEvent> m_memory;
    qint64 m_lastInMemory = 0;
    QMap<QDate, SpoolFile::Counts> m_counts; ///< of days that something waits for, on disk and in memory
    std::optional<Fault> m_fault;
    bool m_isFaultTold = false;
    Lost m_lost;
};
