#include "link/DayRescue.h"

#include "archives/Tables.h"
#include "archives/Transaction.h"
#include "texts/OwnText.h"

namespace {

/// Rows that are stored with one flush: a few milliseconds.
constexpr qsizetype rescuedAtOnce = 100;

const QString gatheringName = QStringLiteral("Archivi/Recupero.$$$");

} // namespace

DayRescue::DayRescue(ArchiveStore &archives, DayArchives &days, Notices &notices)
    : m_archives(archives), m_days(days), m_notices(notices), m_reunited(archives, gatheringName)
{
}

void DayRescue::find()
{
    const Result<QHash<QDate, DayFiles>> listed = filesOfDays(m_archives.folder());
    // Then no archive can be opened either, which the operator is told.
    if (!listed)
        return;
    const QHash<QDate, DayFiles> &files = listed.value();
    for (auto day = files.cbegin(); day != files.cend(); ++day) {
        if (!day->setAside.isEmpty() && !m_waiting.contains(day.key()))
            m_waiting.append(day.key());
    }
}

bool DayRescue::hasWork()
{
    const QSet<QDate> more = m_days.takeSetAside();
    for (const QDate day : more) {
        m_stuck.remove(day);
        if (!m_waiting.contains(day))
            m_waiting.append(day);
        // What was gathered belongs to an archive that is not there any more.
        if (day == m_day)
            beginAnew();
    }
    return m_stuck.size() < m_waiting.size();
}

void DayRescue::step(const QDeadlineTimer &until)
{
    while (hasWork() && !until.hasExpired())
        doPiece(until);
}

void DayRescue::doPiece(const QDeadlineTimer &until)
{
    if (!m_day.isValid()) {
        // What was set aside last is what the operator looks at.
        for (const QDate day : std::as_const(m_waiting)) {
            if (!m_stuck.contains(day))
                m_day = day;
        }
    }
    if (const Result<void> worked = work(until); !worked && m_day.isValid()) {
        m_stuck.insert(m_day);
        beginAnew();
    }
}

Result<void> DayRescue::work(const QDeadlineTimer &until)
{
    switch (m_stage) {
    case Stage::Open:
        return open(until);
    case Stage::Gather:
        return gather(until);
    case Stage::Bring:
        break;
    }
    return bring(until);
}

/// Whether rows may be missing in the archive of the day.
Result<bool> DayRescue::isToRescue(QDate day, const DayFiles &files)
{
    if (files.setAside.isEmpty() || files.archive.isEmpty())
        return !files.setAside.isEmpty();
    // One that is open is asked as it is.
    const auto isMissing = [](Database &archive) {
        const Result<bool> isBrought = ReunitedDay::isBroughtInto(archive);
        return isBrought ? Result<bool>(!isBrought.value()) : isBrought;
    };
    if (m_days.live() && m_days.live()->day() == day)
        return isMissing(m_days.live()->database());
    Result<Database> database = m_archives.open(files.archive, Database::Use::Safe);
    if (!database)
        return database.fault().code == FaultCode::Damaged ? Result<bool>(true) : database.fault();
    return isMissing(database.value());
}

/// The archive of the day, null while it has not been read through.
Result<DayArchive *> DayRescue::opened(const QDeadlineTimer &until)
{
    Result<DayArchive *> archive = m_days.of(m_day);
    if (!archive || archive.value()->isRead())
        return archive;
    const Result<void> read = m_days.readOn(*archive.value(), static_cast<int>(until.remainingTime()) + 1);
    return read ? Result<DayArchive *>(nullptr) : read.fault();
}

Result<void> DayRescue::open(const QDeadlineTimer &until)
{
    // First comes what stands in one that has lost its name.
    if (m_days.left() && m_days.left()->day() == m_day)
        return Fault{FaultCode::NotOpen, ArchiveName::events(m_day)};
    const Result<DayFiles> listed = filesOfDay(m_archives.folder(), m_day);
    if (!listed)
        return listed.fault();
    const DayFiles &files = listed.value();
    const Result<bool> isToDo = isToRescue(m_day, files);
    if (!isToDo)
        return isToDo.fault();
    if (!isToDo.value()) {
        done();
        return {};
    }
    if (!files.archive.isEmpty()) {
        if (const Result<DayArchive *> archive = opened(until); !archive || !archive.value())
            return archive ? Result<void>() : archive.fault();
    }
    if (Result<void> begun = m_reunited.start(files, QStringLiteral("1"), {}); !begun)
        return begun;
    m_stage = Stage::Gather;
    return {};
}

Result<void> DayRescue::gather(const QDeadlineTimer &until)
{
    const Result<bool> isDone = m_reunited.step(until);
    if (!isDone)
        return isDone.fault();
    if (const std::optional<Fault> &fault = m_reunited.archiveFault()) {
        const Result<DayArchive *> archive = m_days.of(m_day);
        return archive && fault->code == FaultCode::Damaged ? m_days.replace(*archive.value()) : Result<void>(*fault);
    }
    if (!isDone.value())
        return {};
    // One that is locked may be read later: until then nothing is brought, so that it keeps the order.
    if (m_reunited.lock())
        return *m_reunited.lock();
    Result<Statement> rows = m_reunited.rows(ReunitedDay::Which::NotInArchive);
    if (!rows)
        return rows.fault();
    m_rows = std::move(rows.value());
    m_stage = Stage::Bring;
    return {};
}

Result<void> DayRescue::bring(const QDeadlineTimer &until)
{
    do {
        const Result<bool> isMore = readPiece();
        if (!isMore)
            return isMore.fault();
        if (!isMore.value())
            return finish();
        const Result<DayArchive *> archive = opened(until);
        if (!archive || !archive.value())
            return archive ? Result<void>() : archive.fault();
        if (Result<void> stored = store(*archive.value()); !stored)
            return stored.fault().code == FaultCode::Damaged ? m_days.replace(*archive.value()) : stored;
        m_piece.clear();
    } while (!until.hasExpired());
    return {};
}

/// @return false when there are no more
Result<bool> DayRescue::readPiece()
{
    while (m_rows && m_piece.size() < rescuedAtOnce) {
        Result<bool> stepped = m_rows->step();
        if (!stepped)
            return stepped;
        if (!stepped.value()) {
            // Another step would begin with the first row again.
            m_rows.reset();
            break;
        }
        SqlValues columns;
        for (int column = 1; column < m_rows->columnCount(); ++column)
            columns.append(m_rows->text(column));
        m_piece.append({m_rows->integer(0), columns});
    }
    return !m_piece.isEmpty();
}

Result<void> DayRescue::store(DayArchive &archive)
{
    Transaction transaction(archive.database());
    if (Result<void> begun = transaction.begin(true); !begun)
        return begun;
    for (const Row &row : std::as_const(m_piece)) {
        const Result<bool> isFree = archive.isFree(row.number);
        if (!isFree)
            return isFree.fault();
        if (const Result<qint64> stored = archive.insert(row.columns, isFree.value() ? row.number : 0); !stored) {
            transaction.takeBack();
            (void)archive.highest();
            return stored.fault();
        }
    }
    Result<void> done = transaction.commit();
    (void)archive.highest();
    return done;
}

Result<void> DayRescue::finish()
{
    const Result<qint64> rescued = m_reunited.countSetAside();
    if (!rescued)
        return rescued.fault();
    // Where nothing can be read and nothing was stored since, no archive is made.
    if (rescued.value() > 0 || m_archives.exists(ArchiveName::events(m_day))) {
        const Result<DayArchive *> archive = m_days.of(m_day);
        if (!archive)
            return archive.fault();
        if (Result<void> marked = archive.value()->setRescued(); !marked)
            return marked;
        m_notices.post(Icon::Information,
                       {OwnText::DayRescued, {ArchiveName::events(m_day), QString::number(rescued.value())}, {}});
    }
    done();
    return {};
}

void DayRescue::beginAnew()
{
    m_rows.reset();
    m_piece.clear();
    m_reunited.clear();
    m_stage = Stage::Open;
    m_day = {};
}

void DayRescue::done()
{
    m_waiting.removeAll(m_day);
    beginAnew();
}

void DayRescue::close()
{
    beginAnew();
    m_waiting.clear();
    m_stuck.clear();
}
