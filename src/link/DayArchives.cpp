#include "link/DayArchives.h"

#include "archives/DayFiles.h"
#include "archives/ReunitedDay.h"
#include "archives/Tables.h"
#include "texts/OwnText.h"

#include <algorithm>
#include <utility>

namespace {

constexpr qint64 mostRowsOfAPage = 100;

} // namespace

void DayArchives::openToday()
{
    const QDate day = m_clock.date();
    if ((m_live && m_live->day() == day) || (m_left && m_left->day() == day))
        return;
    const Result<void> opened = openLive(day);
    if (!opened && m_failedDay != day)
        m_notices.post(Icon::Critical, {OwnText::DayArchiveUnavailable, {ArchiveName::events(day)}, opened.fault()});
    m_failedDay = opened ? QDate() : day;
}

Result<void> DayArchives::openLive(QDate day)
{
    if (m_late && m_late->day() == day)
        finish(m_late);
    Result<Archive> opened = obtain(day);
    if (!opened)
        return opened.fault();
    look();
    finishLive();
    m_live = std::move(opened.value());
    ++m_openings;
    holdName();
    return {};
}

Result<DayArchives::Archive> DayArchives::obtain(QDate day)
{
    m_stillInLogMode.removeAll(ArchiveName::events(day));
    Result<Archive> opened = DayArchive::open(m_archives, day);
    if (!opened && opened.fault().code == FaultCode::Damaged)
        return makeAfresh(day);
    if (opened)
        leaveNumbers(*opened.value());
    return opened;
}

Result<DayArchives::Archive> DayArchives::makeAfresh(QDate day)
{
    const QString name = ArchiveName::events(day);
    const Result<QString> aside = m_archives.setAside(name);
    if (!aside)
        return aside.fault();
    m_notices.post(Icon::Critical, {OwnText::DayArchiveSetAside, {name, aside.value()}, {}});
    m_setAside.insert(day);
    Result<Archive> made = DayArchive::open(m_archives, day);
    if (made)
        leaveNumbers(*made.value());
    return made;
}

/// What is rescued keeps its numbers, which tell the order of events where a time comes twice, and what is brought yet.
void DayArchives::leaveNumbers(DayArchive &archive)
{
    const Result<bool> isBrought = ReunitedDay::isBroughtInto(archive.database());
    const Result<DayFiles> files = filesOfDay(m_archives.folder(), archive.day());
    if (!files || files.value().setAside.isEmpty() || (isBrought && isBrought.value()))
        return;
    qint64 highest = 0;
    for (const QString &aside : files.value().setAside)
        highest = std::max(highest, highestOf(aside, highest));
    archive.startBehind(highest);
}

/// The highest number in a file set aside, or a higher one where that cannot be read.
/// @param before  that of the files before it
qint64 DayArchives::highestOf(const QString &aside, qint64 before)
{
    Result<Database> database = m_archives.open(aside, Database::Use::Untouched);
    if (!database)
        return before;
    const Result<qint64> highest = database.value().number(QStringLiteral("SELECT max(ProgEv) FROM Eventi"));
    if (highest)
        return highest.value();
    const Result<qint64> pages = database.value().number(QStringLiteral("PRAGMA page_count"));
    return before + (pages ? pages.value() * mostRowsOfAPage : 0);
}

Result<DayArchive *> DayArchives::of(QDate day)
{
    if ((!m_live || m_live->day() != day) && day == m_clock.date()) {
        if (Result<void> opened = openLive(day); !opened)
            return opened.fault();
    }
    if (m_live && m_live->day() == day)
        return m_live.get();
    if (!m_late || m_late->day() != day) {
        finish(m_late);
        Result<Archive> opened = obtain(day);
        if (!opened)
            return opened.fault();
        m_late = std::move(opened.value());
    }
    return m_late.get();
}

Result<void> DayArchives::readOn(DayArchive &archive, int milliseconds)
{
    Result<void> read = archive.readOn(milliseconds);
    return read || read.fault().code != FaultCode::Damaged ? read : replace(archive);
}

Result<void> DayArchives::replace(const DayArchive &damaged)
{
    const QDate day = damaged.day();
    const bool isLive = &damaged == m_live.get();
    Archive &archive = isLive ? m_live : m_late;
    if (isLive)
        m_archives.release();
    archive.reset();
    Result<Archive> made = makeAfresh(day);
    if (!made)
        return made.fault();
    archive = std::move(made.value());
    if (isLive)
        holdName();
    return {};
}

/// From here on nothing of this program opens another file that is put under the name of the live archive.
void DayArchives::holdName()
{
    m_archives.hold(ArchiveName::events(m_live->day()), [this] {
        const bool hasMoved = m_live && m_live->hasMoved();
        if (hasMoved)
            m_moved();
        return hasMoved;
    });
}

void DayArchives::look()
{
    if (!m_live || m_left || !m_live->hasMoved())
        return;
    m_archives.release();
    m_left = std::move(m_live);
}

void DayArchives::giveUpLeft()
{
    m_left->giveUpNames();
    m_left.reset();
}

void DayArchives::leaveLogModes()
{
    m_stillInLogMode.removeIf([this](const QString &name) {
        Result<Database> database = m_archives.open(name, Database::Use::Safe);
        return database ? database.value().leaveLogMode().ok() : database.fault().code != FaultCode::Locked;
    });
}

void DayArchives::finishLive()
{
    m_archives.release();
    finish(m_live);
}

void DayArchives::finish(Archive &archive)
{
    if (!archive)
        return;
    // A search or another program may have it open.
    if (!archive->leaveLogMode())
        m_stillInLogMode.append(ArchiveName::events(archive->day()));
    archive.reset();
}
