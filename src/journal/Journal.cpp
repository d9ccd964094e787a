#include "journal/Journal.h"

#include "archives/Tables.h"
#include "platform/Disk.h"
#include "texts/OwnText.h"

namespace {

constexpr int beatMilliseconds = 60'000;
constexpr int againMilliseconds = 10'000;
/// What has not lasted for a minute is not worth a word: where events fail as well, the operator has read of that.
constexpr int failuresUntilTold = 7;
constexpr qint64 clockTolerance = 60'000;
constexpr qsizetype detailCharacters = 100;

} // namespace

Journal::Journal(ArchiveStore &archives, const Clock &clock, Notices &notices, QObject *parent)
    : QObject(parent),
      spaceLeft([&archives] { return freeBytes(archives.folder().path(QStringView(ArchiveName::Folder).toString())); }),
      m_clock(clock),
      m_archives(archives),
      m_notices(notices)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &Journal::wake);
}

Journal::~Journal() = default;

void Journal::begin(const QString &version)
{
    if (std::exchange(m_running, true))
        return;
    note(JournalKind::Started, version);
    m_timer.start(0);
}

void Journal::note(JournalKind kind, const QString &first, const QString &second)
{
    lookAtClock();
    append({0, momentBefore(0), kind, first.left(detailCharacters), second.left(detailCharacters)});
}

void Journal::noteLate(JournalKind kind, qint64 millisecondsAgo)
{
    lookAtClock();
    append({0, momentBefore(millisecondsAgo), kind, {}, {}});
}

void Journal::append(JournalRow row)
{
    m_queue.append(std::move(row));
    if (m_queue.size() > QueueLimit) {
        m_queue.removeFirst();
        ++m_lost;
    }
    // What fails is not tried again for each row.
    if (m_running && m_failures == 0)
        m_timer.start(0);
}

void Journal::end(qint64 millisecondsAgo)
{
    if (!m_running)
        return;
    noteLate(JournalKind::Ended, millisecondsAgo);
    m_running = false;
    m_timer.stop();
    // What fails now, the next start finds as an end without order: too long a gap rather than too short a one.
    (void)write();
    m_queue.clear();
    m_file.reset();
}

std::unique_ptr<CoverageReading> Journal::read(const DailyHours &hours, const Moment &until)
{
    if (!m_queue.isEmpty())
        wake();
    const bool isWritten = m_running && m_queue.isEmpty();
    return std::make_unique<CoverageReading>(m_archives, hours, until.seconds,
                                             isWritten ? std::optional(momentBefore(0)) : std::nullopt);
}

Moment Journal::momentBefore(qint64 millisecondsAgo) const
{
    return momentOf(m_clock.now().addMSecs(-millisecondsAgo));
}

/// Notes when somebody has set the clock since it was looked at last.
void Journal::lookAtClock()
{
    const QDateTime now = m_clock.now();
    const qint64 wall = now.toMSecsSinceEpoch();
    const qint64 steady = m_clock.monotonic() + m_clock.asleep();
    const bool isFirst = m_wall == 0;
    const qint64 expected = std::exchange(m_wall, wall) + steady - std::exchange(m_steady, steady);
    if (isFirst || qAbs(wall - expected) <= clockTolerance)
        return;
    append({0, momentOf(now), JournalKind::ClockMoved, momentText(momentOf(now.addMSecs(expected - wall))),
            momentText(momentOf(now))});
}

void Journal::wake()
{
    if (!m_running)
        return;
    lookAtClock();
    const Result<void> written = write();
    if (!written) {
        if (++m_failures == failuresUntilTold)
            m_notices.post(
                Icon::Exclamation,
                {OwnText::JournalNotWritten, {ArchiveName::journal(m_clock.date().year())}, written.fault()});
        m_timer.start(againMilliseconds);
        return;
    }
    m_failures = 0;
    m_timer.start(beatMilliseconds);
    if (std::exchange(m_isStateWanted, false))
        Q_EMIT stateWanted();
}

// The file -----------------------------------------------------------------------------------------------------------

Result<void> Journal::write()
{
    const Moment now = momentBefore(0);
    const int year = localTime(now).date().year();
    if (spaceLeft() < Reserve)
        return Fault{FaultCode::DiskFull, m_archives.folder().path(ArchiveName::journal(year))};
    if (m_file && m_file->hasMoved()) {
        m_file.reset();
        m_isStateWanted = true;
    }
    if (m_file && m_file->year() != year) {
        if (Result<void> turned = turnYear(now); !turned)
            return turned;
    }
    if (!m_file) {
        if (Result<void> opened = openFile(year); !opened)
            return opened;
    }
    QList<JournalRow> rows = m_queue;
    qint64 number = m_next + m_lost;
    for (JournalRow &row : rows)
        row.number = number++;
    const Result<qint64> written = m_file->write(rows, now);
    if (!written) {
        m_isDamaged = written.fault().code == FaultCode::Damaged;
        m_file.reset();
        return written.fault();
    }
    m_isStateWanted = m_isStateWanted || m_lost > 0;
    m_next = qMax(number, written.value() + 1);
    m_lost = 0;
    m_queue.clear();
    return {};
}

/// Leaves the file of the year that has gone.
Result<void> Journal::turnYear(const Moment &now)
{
    const Result<qint64> written = m_file->write({{m_next, now, JournalKind::YearTurned, {}, {}}}, now);
    if (!written)
        return written.fault();
    m_next = written.value() + 1;
    m_file.reset();
    m_isStateWanted = true;
    return {};
}

Result<void> Journal::openFile(int year)
{
    const QString name = ArchiveName::journal(year);
    Result<std::unique_ptr<JournalFile>> opened = JournalFile::open(m_archives, year);
    const bool isDamaged = m_isDamaged || (!opened && opened.fault().code == FaultCode::Damaged);
    if (isDamaged) {
        opened = Fault{FaultCode::Damaged, name};
        const Result<QString> aside = m_archives.setAside(name);
        if (!aside)
            return aside.fault();
        m_notices.post(Icon::Exclamation, {OwnText::JournalSetAside, {name, aside.value()}, {}});
        m_isDamaged = false;
        m_isStateWanted = m_next > 0;
        opened = JournalFile::open(m_archives, year);
    }
    if (!opened)
        return opened.fault();
    m_file = std::move(opened.value());
    if (m_next > 0) {
        // A file that was put in its place has numbers of its own.
        m_next = qMax(m_next, m_file->end().number + 1);
        return {};
    }
    Result<void> found = findPlace(isDamaged);
    if (!found)
        m_file.reset();
    return found;
}

/// Finds out how the run before ended, and with which number this one goes on. @param isAfresh  rows are lost
Result<void> Journal::findPlace(bool isAfresh)
{
    JournalFile::End last = m_file->end();
    const Result<std::optional<JournalFile::End>> other = JournalFile::endOfOther(m_archives, m_file->year());
    if (!other && other.fault().code == FaultCode::Locked)
        return other.fault();
    // Later than this year's when the clock has been set back over New Year.
    if (other && other.value() && other.value()->number > last.number)
        last = *other.value();
    // The file that the run went on in has gone.
    const bool isLost = isAfresh || last.kind == JournalKind::YearTurned;
    if (last.number == 0)
        m_next = m_file->year() * JournalFile::NumbersOfYear;
    else
        m_next = last.number + (isLost ? 2 : 1);
    if (last.number > 0 && !isLost && last.kind != JournalKind::Ended)
        m_queue.prepend({0,
                         m_queue.isEmpty() ? momentBefore(0) : m_queue.constFirst().at,
                         JournalKind::FoundCutOff,
                         last.alive ? momentText(*last.alive) : QString(),
                         {}});
    return {};
}
