#include "link/EventLog.h"

#include "archives/Tables.h"
#include "texts/OwnText.h"

#include <QElapsedTimer>

namespace {

constexpr int againMilliseconds = 1000;
/// Longest that storing what waits keeps the event loop, but for the last piece.
constexpr int turnMilliseconds = 20;
/// Longest that the end of the program is spent on what waits on disk: it can be stored at the next start as well.
constexpr qint64 endMilliseconds = 2000;
/// Without an event for so long, all rows are brought into the archive file.
constexpr qint64 quietMilliseconds = 60'000;
/// Events that go from one file to another in one go.
constexpr qsizetype pieceRows = 200;
/// While events are being lost the operator is told how many once a minute.
constexpr int retriesBetweenCounts = 60;

} // namespace

EventLog::EventLog(ArchiveStore &archives, const Clock &clock, Notices &notices, QObject *parent)
    : QObject(parent),
      m_clock(clock),
      m_notices(notices),
      m_spool(archives, notices),
      m_told(m_spool, notices),
      m_days(archives, clock, notices,
             [this] {
                 QMetaObject::invokeMethod(
                     this, [this] { changeDayIfNeeded(); }, Qt::QueuedConnection);
             }),
      m_rescue(archives, m_days, notices)
{
    connect(&m_again, &QTimer::timeout, this, [this] {
        if (m_again.interval() > 0)
            retry();
        else
            drain();
    });
}

EventLog::~EventLog()
{
    close();
}

void EventLog::open()
{
    m_isOpen = true;
    m_stuck.clear();
    m_spool.open();
    if (!m_spool.isEmpty())
        m_told.tellEndLater();
    m_rescue.find();
    openToday();
    drain();
}

void EventLog::openToday()
{
    m_days.openToday();
    if (m_days.live() || m_days.left()) {
        m_told.tellNothingIsStored(false);
        return;
    }
    // Whether events that come can be kept is known before the first of them does.
    m_spool.prepare();
    if (m_spool.fault())
        m_told.tellNothingIsStored(true);
}

bool EventLog::changeDayIfNeeded()
{
    m_days.leaveLogModes();
    const int before = m_days.openings();
    m_days.look();
    openToday();
    if (m_days.live() && m_clock.monotonic() - m_lastStored >= quietMilliseconds)
        (void)m_days.live()->bringTogether();
    if (m_days.live() || !m_spool.isEmpty()) {
        // A spool that was locked at the start is read now.
        const bool wasEmpty = m_spool.isEmpty();
        m_spool.tidy();
        if (wasEmpty && !m_spool.isEmpty())
            m_told.tellEndLater();
    }
    m_stuck.clear();
    m_rescue.retry();
    drain();
    return m_days.openings() != before;
}

void EventLog::close()
{
    m_isOpen = false;
    m_days.look();
    m_spool.look();
    m_stuck.clear();
    QElapsedTimer end;
    end.start();
    do {
        drain();
    } while ((hasWork() || m_rescue.hasWork()) && end.elapsed() < endMilliseconds);
    m_rescue.close();
    m_spool.endRescue();
    while (m_spool.spill()) {
    }
    if (m_days.left()) {
        m_told.lost(m_days.left()->countAfter(m_broughtTo));
        m_days.giveUpLeft();
    }
    const qsizetype onDisk = m_spool.onDisk();
    m_spool.close();
    if (onDisk > 0)
        m_notices.post(Icon::Exclamation, {OwnText::EventsWaitOnDisk, {QString::number(onDisk)}, {}});
    tellLost();
    m_days.finishLate();
    m_days.finishLive();
    m_again.stop();
    m_told.reset();
    Q_EMIT waitingChanged();
}

// Events -------------------------------------------------------------------------------------------------------------

bool EventLog::append(const Event &event)
{
    WaitingEvent waiting{event.Data, event};
    Result<void> ready;
    if (!m_days.live() && !m_days.left() && !m_spool.holds(event.Data))
        ready = m_days.openLive(event.Data);
    // One that may be damaged is not written to, nor one whose earlier events still wait.
    const DayArchive *live = m_days.live();
    if (live && live->isRead() && !m_spool.holds(live->day())) {
        const Result<qint64> row = insert(event);
        if (row) {
            m_lastStored = m_clock.monotonic();
            Q_EMIT stored(event, row.value());
            return true;
        }
        ready = row.fault();
        // It may be there all the same, if the device failed in the middle.
        if (m_days.live() && m_days.live()->day() == waiting.day)
            waiting.place = m_days.live()->next();
    }
    if (!ready) {
        m_stuck.insert(waiting.day);
        m_told.failed(ready.fault());
    }
    keep(std::move(waiting));
    return false;
}

void EventLog::appendUndecided(const Event &event, bool isForAMoment)
{
    if (!isForAMoment)
        m_told.tellEndLater();
    keep({event.Data, event, EventSpool::Mark::Undecided});
}

void EventLog::keep(WaitingEvent event)
{
    m_spool.add(std::move(event));
    if (!m_again.isActive())
        m_again.start(hasWork() ? 0 : againMilliseconds);
    m_told.tellWaiting();
    Q_EMIT waitingChanged();
}

Result<qint64> EventLog::insert(const Event &event)
{
    Result<qint64> row = m_days.live()->insert(event);
    if (row || row.fault().code != FaultCode::Damaged)
        return row;
    // Damage that came after it had been read through.
    if (Result<void> replaced = m_days.replace(*m_days.live()); !replaced)
        return replaced.fault();
    m_again.start(0);
    return m_days.live()->insert(event);
}

void EventLog::retry()
{
    m_stuck.clear();
    m_rescue.retry();
    drain();
    const bool isStuck = m_again.isActive() && m_again.interval() > 0;
    if (isStuck && ++m_retries % retriesBetweenCounts == 0)
        tellLost();
}

/// Does what can be done now, for one turn of the event loop.
void EventLog::drain()
{
    QElapsedTimer turn;
    turn.start();
    while (work() && turn.elapsed() < turnMilliseconds) {
    }
    // What no archive takes is safer on disk.
    while (!hasWork() && m_spool.spill() && turn.elapsed() < turnMilliseconds) {
    }
    // What has its place already comes last.
    if (!hasWork())
        m_rescue.step(QDeadlineTimer(std::max<qint64>(0, turnMilliseconds - turn.elapsed())));
    const bool isMore = hasWork() || m_rescue.hasWork();
    if (!isMore)
        m_days.finishLate();
    m_told.tellBrought(m_days.left() ? m_days.left()->day() : QDate());
    if (isMore)
        m_again.start(0);
    else if (!m_spool.isEmpty() || m_days.left() || isReading() || m_rescue.isPending())
        m_again.start(againMilliseconds);
    else
        m_again.stop();
    if (!hasWork() && m_spool.isEmpty() && !m_days.left() && !isReading()) {
        m_told.tellEnd();
        tellLost();
    }
    m_told.tellWaiting();
    Q_EMIT waitingChanged();
}

/// One piece of it. @return whether there is more
bool EventLog::work()
{
    if (m_spool.isRescuing()) {
        m_spool.rescueOn(QDeadlineTimer(turnMilliseconds));
        return hasWork();
    }
    const std::optional<QDate> next = nextDay();
    if (!next)
        return false;
    const QDate day = *next;
    const bool isLive = m_days.live() && m_days.live()->day() == day;
    const Result<void> done = m_days.left() && m_days.left()->day() == day ? bringOver()
                              : isLive && isReading() ? m_days.readOn(*m_days.live(), turnMilliseconds)
                                                      : storeWaiting(day);
    if (!done) {
        // Other days need not wait for this one.
        m_stuck.insert(day);
        m_told.failed(done.fault());
    }
    return hasWork();
}

/// The day that something can be done for now.
std::optional<QDate> EventLog::nextDay() const
{
    QList<QDate> days = m_spool.days(isDecidable());
    if (isReading())
        days.prepend(m_days.live()->day());
    if (m_days.left())
        days.prepend(m_days.left()->day());
    for (const QDate day : std::as_const(days)) {
        if (!m_stuck.contains(day))
            return day;
    }
    return {};
}

/// Takes the next events out of the archive that lost its name. When all are out of it, the new one is opened.
Result<void> EventLog::bringOver()
{
    DayArchive &left = *m_days.left();
    const QDate day = left.day();
    const Result<QList<DayArchive::Row>> rows = left.after(m_broughtTo, pieceRows);
    if (!rows && rows.fault().code == FaultCode::Locked)
        return rows.fault();
    QList<WaitingEvent> brought;
    if (rows) {
        for (const DayArchive::Row &row : rows.value())
            brought.append({day, row.event, EventSpool::Mark::Brought, row.copy, row.number});
    } else {
        m_notices.post(Icon::Critical, {OwnText::DayArchiveUnavailable, {ArchiveName::events(day)}, rows.fault()});
    }
    if (!brought.isEmpty()) {
        Result<void> kept = m_spool.put(brought);
        if (kept)
            m_broughtTo = rows.value().constLast().number;
        return kept;
    }
    // A journal alone that went is not worth a word when nothing went with it.
    if (left.isReplaced())
        m_told.brought(day, 0);
    m_broughtTo = 0;
    m_days.giveUpLeft();
    openToday();
    return {};
}

Result<void> EventLog::storeWaiting(QDate day)
{
    const Result<QList<WaitingEvent>> first = m_spool.first(day, isDecidable(), pieceRows);
    if (!first)
        return first.fault();
    QList<WaitingEvent> registered;
    QList<WaitingEvent> unknown;
    for (const WaitingEvent &waiting : first.value()) {
        const bool isUnknown =
            waiting.mark == EventSpool::Mark::Undecided && !m_decide(waiting.event.Codice).value_or(true);
        (isUnknown ? unknown : registered).append(waiting);
    }
    if (!unknown.isEmpty()) {
        if (Result<void> removed = m_spool.remove(unknown); !removed)
            return removed;
    }
    if (registered.isEmpty())
        return {};
    const Result<DayArchive *> archive = m_days.of(day);
    if (!archive)
        return archive.fault();
    if (!archive.value()->isRead())
        return m_days.readOn(*archive.value(), turnMilliseconds);
    const Result<EventSpool::Stored> done = m_spool.store(registered, *archive.value());
    if (!done)
        return done.fault().code == FaultCode::Damaged ? m_days.replace(*archive.value()) : Result<void>(done.fault());
    for (const auto &[event, row] : done.value().events)
        Q_EMIT stored(event, row);
    m_lastStored = m_clock.monotonic();
    m_told.storedLate(done.value().events.size());
    if (done.value().brought > 0)
        m_told.brought(day, done.value().brought);
    return m_spool.remove(registered);
}

// What is told -------------------------------------------------------------------------------------------------------

qsizetype EventLog::unsaved()
{
    return m_spool.inMemory() + (m_days.left() ? m_days.left()->countAfter(m_broughtTo) : 0);
}

std::optional<Message> EventLog::waits() const
{
    if (m_spool.inMemory() > 0)
        return Message{OwnText::EventsWaitInMemory, {QString::number(m_spool.inMemory())}, {}};
    if (m_spool.onDisk() > 0)
        return Message{OwnText::EventsWaitOnDisk, {QString::number(m_spool.onDisk())}, {}};
    if (m_isOpen && !m_days.live() && !m_days.left() && m_spool.fault())
        return Message{OwnText::NothingIsStored, {}, {}};
    return {};
}

void EventLog::tellLost()
{
    if (const qsizetype lost = m_told.tellLost(); lost > 0)
        Q_EMIT eventsLost(lost);
}
