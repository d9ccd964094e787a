#include "link/EventSpool.h"

#include "archives/Tables.h"
#include "archives/Transaction.h"
#include "texts/OwnText.h"

#include <QHash>

#include <limits>
#include <numeric>

namespace {

/// Events that go from memory to disk with one flush.
constexpr qsizetype spillRows = 500;

size_t indexOf(EventSpool::Mark mark)
{
    return static_cast<size_t>(mark);
}

qsizetype sum(const SpoolFile::Counts &counts)
{
    return std::accumulate(counts.begin(), counts.end(), qsizetype{0});
}

} // namespace

// The file -----------------------------------------------------------------------------------------------------------

QString EventSpool::fileName()
{
    return QStringView(ArchiveName::Waiting).toString();
}

void EventSpool::open()
{
    if (m_file || m_rescue || !SpoolFile::exists(m_archives))
        return;
    Result<void> opened = openFile();
    if (!opened && opened.fault().code == FaultCode::Damaged)
        opened = rescue();
    if (!opened)
        tellUnusable(opened.fault());
}

void EventSpool::tellUnusable(const Fault &fault)
{
    if (!std::exchange(m_isFaultTold, true))
        m_notices.post(Icon::Critical, {OwnText::SpoolUnusable, {fileName()}, fault});
}

Result<void> EventSpool::openFile()
{
    Result<std::unique_ptr<SpoolFile>> opened = SpoolFile::open(m_archives);
    if (!opened)
        return opened.fault();
    m_file = std::move(opened.value());
    m_isFaultTold = false;
    recount();
    return {};
}

/// Just after the file was opened, or while there is none.
void EventSpool::recount()
{
    m_counts = m_file ? m_file->found() : QMap<QDate, SpoolFile::Counts>();
    for (const WaitingEvent &event : std::as_const(m_memory))
        note(event, 1);
}

void EventSpool::close()
{
    while (spill()) {
    }
    while (!m_memory.isEmpty())
        forgetFirst();
    if (m_file)
        m_file->finish(isEmpty());
    m_file.reset();
    m_counts.clear();
    m_fault.reset();
}

void EventSpool::tidy()
{
    look();
    m_isRescueVain = false;
    if (!m_file)
        open();
    else if (isEmpty())
        close();
    else
        m_file->bringTogether();
}

void EventSpool::look()
{
    if (m_file && m_file->hasMoved())
        moveOver();
}

void EventSpool::moveOver()
{
    QList<WaitingEvent> held = all();
    m_file->giveUpNames();
    m_file.reset();
    recount();
    if (held.isEmpty())
        return;
    prepare();
    // A copy of it may have been put back: what stands there too must not be stored twice.
    QHash<qint64, Event> there;
    const QList<WaitingEvent> found = m_file ? all() : QList<WaitingEvent>();
    for (const WaitingEvent &event : found)
        there.insert(event.number, event.event);
    held.removeIf([&there](const WaitingEvent &event) {
        const auto same = there.constFind(event.number);
        return same != there.constEnd() && *same == event.event;
    });
    if (held.isEmpty() || put(held))
        return;
    for (WaitingEvent &event : held)
        remember(std::move(event));
}

/// All events of the file.
QList<WaitingEvent> EventSpool::all()
{
    QList<WaitingEvent> events;
    const QList<QDate> ofEach = days(true);
    for (const QDate day : ofEach) {
        const Result<QList<WaitingEvent>> some = m_file->first(day, true, std::numeric_limits<int>::max());
        if (some)
            events.append(some.value());
        else
            m_notices.post(Icon::Critical, {OwnText::SpoolUnusable, {fileName()}, some.fault()});
    }
    return events;
}

// What goes in -------------------------------------------------------------------------------------------------------

bool EventSpool::add(WaitingEvent event)
{
    // Behind what the disk did not take it waits with it.
    if (m_memory.isEmpty() && put({event}))
        return true;
    remember(std::move(event));
    return false;
}

Result<void> EventSpool::put(const QList<WaitingEvent> &events)
{
    Result<void> done = tryToPut(events);
    if (!done && done.fault().code == FaultCode::Damaged && !m_rescue && !m_isRescueVain) {
        done = rescue();
        if (done)
            done = tryToPut(events);
    }
    m_fault = done ? std::nullopt : std::optional(done.fault());
    return done;
}

Result<void> EventSpool::tryToPut(const QList<WaitingEvent> &events)
{
    if (m_rescue)
        return Fault{FaultCode::Damaged, fileName()};
    if (!m_file) {
        if (Result<void> opened = openFile(); !opened)
            return opened;
    }
    if (events.isEmpty())
        return {};
    Result<void> added = m_file->add(events);
    if (added) {
        for (const WaitingEvent &event : events)
            note(event, 1);
    }
    return added;
}

void EventSpool::remember(WaitingEvent event)
{
    if (m_memory.size() >= MemoryLimit)
        forgetFirst();
    event.number = --m_lastInMemory;
    note(event, 1);
    m_memory.append(std::move(event));
}

void EventSpool::forgetFirst()
{
    const WaitingEvent gone = m_memory.takeFirst();
    note(gone, -1);
    ++(gone.mark == Mark::Undecided ? m_lost.undecided : m_lost.registered);
}

bool EventSpool::spill()
{
    if (m_memory.isEmpty())
        return false;
    const QList<WaitingEvent> some = m_memory.mid(0, spillRows);
    if (!put(some))
        return false;
    m_memory.remove(0, some.size());
    for (const WaitingEvent &event : some)
        note(event, -1);
    return !m_memory.isEmpty();
}

void EventSpool::note(const WaitingEvent &event, qsizetype difference)
{
    SpoolFile::Counts &counts = m_counts[event.day];
    counts.at(indexOf(event.mark)) += difference;
    if (sum(counts) <= 0)
        m_counts.remove(event.day);
}

/// Somebody has taken the rows of a day out of the file.
void EventSpool::forget(QDate day)
{
    m_counts.remove(day);
    for (const WaitingEvent &event : std::as_const(m_memory)) {
        if (event.day == day)
            note(event, 1);
    }
}

qsizetype EventSpool::count(QDate day, Mark mark) const
{
    return m_counts.value(day).at(indexOf(mark));
}

qsizetype EventSpool::onDisk() const
{
    qsizetype all = -inMemory();
    for (const SpoolFile::Counts &counts : m_counts)
        all += sum(counts);
    return all;
}

// What goes out ------------------------------------------------------------------------------------------------------

QList<QDate> EventSpool::days(bool undecidedToo) const
{
    QList<QDate> days;
    for (auto day = m_counts.cbegin(); day != m_counts.cend(); ++day) {
        if (undecidedToo || sum(*day) > day->at(indexOf(Mark::Undecided)))
            days.append(day.key());
    }
    return days;
}

Result<QList<WaitingEvent>> EventSpool::first(QDate day, bool undecidedToo, qsizetype most)
{
    QList<WaitingEvent> events;
    if (m_file) {
        Result<QList<WaitingEvent>> onDisk = m_file->first(day, undecidedToo, most);
        if (!onDisk)
            return ofTheFile(onDisk.fault());
        if (!onDisk.value().isEmpty())
            return onDisk;
    }
    for (const WaitingEvent &event : std::as_const(m_memory)) {
        if (event.day == day && (undecidedToo || event.mark != Mark::Undecided) && events.size() < most)
            events.append(event);
    }
    if (events.isEmpty())
        forget(day);
    return events;
}

/// True when the event stands in its archive already.
Result<bool> EventSpool::isThere(const WaitingEvent &waiting, DayArchive &archive)
{
    if (waiting.mark == Mark::Brought) {
        const Result<qint64> equal = archive.count(waiting.event);
        return equal ? Result<bool>(equal.value() >= waiting.copy) : Result<bool>(equal.fault());
    }
    return waiting.place > 0 ? archive.holds(waiting.event, waiting.place) : Result<bool>(false);
}

Result<EventSpool::Stored> EventSpool::store(QList<WaitingEvent> events, DayArchive &archive)
{
    Transaction transaction(archive.database());
    if (Result<void> begun = transaction.begin(true); !begun)
        return begun.fault();
    const Result<qint64> highest = archive.highest();
    if (!highest)
        return highest.fault();
    qint64 last = highest.value();
    QList<WaitingEvent> missing;
    for (WaitingEvent &waiting : events) {
        const Result<bool> there = isThere(waiting, archive);
        if (!there)
            return there.fault();
        if (there.value())
            continue;
        // A brought one keeps its number as long as the order allows it.
        last = std::max(last + 1, waiting.mark == Mark::Brought ? waiting.place : archive.next());
        waiting.place = last;
        missing.append(waiting);
    }
    Stored stored;
    if (missing.isEmpty())
        return stored;
    // The places are on disk before the rows: after a power cut they tell which events stand there already.
    if (Result<void> placed = place(missing); !placed)
        return placed.fault();
    for (const WaitingEvent &waiting : std::as_const(missing)) {
        const Result<qint64> row = archive.insert(waiting.event, waiting.place);
        if (!row)
            return row.fault();
        if (waiting.mark == Mark::Brought)
            ++stored.brought;
        else
            stored.events.append({waiting.event, row.value()});
    }
    if (Result<void> done = transaction.commit(); !done)
        return done.fault();
    (void)archive.highest();
    return stored;
}

Result<void> EventSpool::place(const QList<WaitingEvent> &events)
{
    if (events.constFirst().number > 0) {
        Result<void> placed = m_file->setPlaces(events);
        return placed ? placed : Result<void>(ofTheFile(placed.fault()));
    }
    // Both are in the order in which the events came.
    auto placed = events.begin();
    for (WaitingEvent &waiting : m_memory) {
        if (placed != events.end() && waiting.number == placed->number)
            waiting.place = placed++->place;
    }
    return {};
}

Result<void> EventSpool::remove(const QList<WaitingEvent> &events)
{
    if (events.constFirst().number > 0) {
        if (Result<void> removed = m_file->remove(events); !removed)
            return ofTheFile(removed.fault());
    } else {
        auto stored = events.begin();
        m_memory.removeIf([&](const WaitingEvent &waiting) {
            const bool isStored = stored != events.end() && waiting.number == stored->number;
            stored += isStored ? 1 : 0;
            return isStored;
        });
    }
    for (const WaitingEvent &event : events)
        note(event, -1);
    return {};
}
