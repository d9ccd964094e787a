#include "archive/FollowCommand.h"

#include "archives/Tables.h"
#include "events/EventSearch.h"

#include <QFileInfo>

namespace tool {

namespace {

constexpr int lookMilliseconds = 500;
/// The files are listed anew whenever their folder has changed, and so often in any case.
constexpr qint64 listMilliseconds = 60'000;
/// Of such an age a cursor still knows the days that rest.
constexpr int cursorDays = 7;

QString nameText(QStringView name)
{
    return name.toString();
}

/// Of the archive of a day, and of its journal.
std::array<std::optional<FileStamp>, 2> stampsOf(const ProgramFolder &folder, const DayFiles &files)
{
    if (files.archive.isEmpty())
        return {};
    const QString path = folder.path(files.archive);
    return {stampOf(path), stampOf(path + QStringLiteral("-wal"))};
}

} // namespace

FollowCommand::FollowCommand(const Site &site, std::optional<Cursor> cursor, const LineForm &form, Output &output)
    : m_site(site),
      m_start(std::move(cursor)),
      m_users(site.archives),
      m_lines(form, site.texts, m_users),
      m_pending(output),
      m_begun(QDateTime::currentDateTime())
{
}

int FollowCommand::pause() const
{
    const bool isBehind = m_hasBegun && m_latest < m_site.clock.date();
    return m_isWritten && !isBehind && !m_isTakingUp ? lookMilliseconds : 0;
}

Result<bool> FollowCommand::step(const QDeadlineTimer &until)
{
    if (!m_isWritten) {
        Result<bool> written = m_pending.write(until);
        if (!written)
            return written;
        m_isWritten = written.value();
        if (!m_isWritten)
            return false;
    }
    list();
    // What is locked for the moment is tried again.
    if (m_hasBegun ? addDays() : begin()) {
        takeUp(until);
        for (auto &[day, followed] : m_days)
            look(day, followed);
        restDays();
    }
    m_pending.add(m_lines.take());
    const Result<bool> written = m_pending.write(until);
    m_isWritten = written && written.value();
    return written ? Result<bool>(false) : written;
}

void FollowCommand::list()
{
    const ProgramFolder &folder = m_site.archives.folder();
    const QDateTime modified = QFileInfo(folder.path(nameText(ArchiveName::Folder))).lastModified();
    const qint64 now = m_site.clock.monotonic();
    if (!m_listed.isValid() || modified != m_listed || now - m_listedAt > listMilliseconds) {
        m_listed = FollowedDay::isSettledAt(modified.toMSecsSinceEpoch() * 1'000'000) ? modified : QDateTime();
        m_listedAt = now;
        // A folder that cannot be listed may be there again the next time.
        if (Result<QHash<QDate, DayFiles>> files = filesOfDays(folder); files) {
            m_files = std::move(files.value());
            findChanged();
        }
    }
    const QString waiting = folder.path(nameText(ArchiveName::Waiting));
    const std::array stamps = {stampOf(waiting), stampOf(waiting + QStringLiteral("-wal"))};
    if (stamps == m_waitingStamps)
        return;
    m_waitingStamps = stamps;
    m_waiting = daysThatWait(m_site.archives, Database::Use::Untouched).value_or(QSet<QDate>());
}

/// Events may come to a day of any age, when they waited in the memory of the supervisor.
void FollowCommand::findChanged()
{
    m_changed.clear();
    for (auto files = m_files.cbegin(); files != m_files.cend(); ++files) {
        const auto resting = m_resting.constFind(files.key());
        const auto stamps = stampsOf(m_site.archives.folder(), *files);
        if (resting == m_resting.cend() || !resting->place || stamps[0] != resting->stamp || stamps[1])
            m_changed.append(files.key());
    }
    std::sort(m_changed.begin(), m_changed.end());
}

Result<void> FollowCommand::beginDay(QDate day, const std::optional<Place> &place)
{
    FollowedDay followed;
    Result<void> begun = followed.begin(m_site.archives, m_files.value(day), place);
    if (!begun)
        return begun;
    m_places[day] = followed.place();
    m_days.insert_or_assign(day, std::move(followed));
    return {};
}

Result<void> FollowCommand::begin()
{
    const QDate today = m_site.clock.date();
    if (!m_start) {
        for (const QDate day : {today.addDays(-1), today}) {
            if (Result<void> begun = beginDay(day, {}); !begun)
                return begun;
        }
    } else {
        for (auto day = m_start->cbegin(); day != m_start->cend(); ++day) {
            if (Result<void> begun = beginDay(day.key(), day.value()); !begun)
                return begun;
        }
    }
    m_latest = m_days.rbegin()->first;
    for (auto files = m_files.cbegin(); files != m_files.cend(); ++files) {
        if (files.key() < m_latest && !m_days.contains(files.key()))
            m_resting.insert(files.key(), {});
    }
    m_hasBegun = true;
    return addDays();
}

/// Takes in the day behind the latest one until it is today, and those that events wait for.
Result<void> FollowCommand::addDays()
{
    const QDate today = m_site.clock.date();
    Result<void> begun;
    if (m_latest < today) {
        begun = beginDay(m_latest.addDays(1), Place());
        if (begun)
            m_latest = m_latest.addDays(1);
    } else if (!m_days.contains(today)) {
        begun = wake(today);
    }
    if (!begun)
        return begun;
    for (const QDate day : std::as_const(m_waiting)) {
        // What is in the archive already was told when the day was followed.
        if (day.isValid() && !m_days.contains(day)) {
            if (Result<void> waits = wake(day); !waits)
                return waits;
        }
    }
    return {};
}

/// Follows a day that rests, from where it came to rest.
Result<void> FollowCommand::wake(QDate day)
{
    Result<void> begun = beginDay(day, m_resting.value(day).place);
    if (begun)
        m_resting.remove(day);
    return begun;
}

void FollowCommand::takeUp(const QDeadlineTimer &until)
{
    QList<QDate> again;
    while (!m_changed.isEmpty() && !until.hasExpired()) {
        const QDate day = m_changed.takeLast();
        if (!takeUp(day))
            again.append(day);
    }
    m_isTakingUp = !m_changed.isEmpty();
    m_changed = again + m_changed;
}

/// Follows a day again whose archive has changed, or sees how far it goes when that is not known yet.
Result<void> FollowCommand::takeUp(QDate day)
{
    if (m_days.contains(day) || day > m_latest)
        return {};
    const DayFiles files = m_files.value(day);
    const auto stamps = stampsOf(m_site.archives.folder(), files);
    const auto resting = m_resting.constFind(day);
    if (resting == m_resting.cend()) {
        // An old archive that is put into the folder was not stored now.
        const bool isNew = stamps[0] && stamps[0]->modified / 1'000'000 >= m_begun.toMSecsSinceEpoch();
        if (isNew)
            return beginDay(day, Place());
    } else if (resting->place) {
        return wake(day);
    }
    // Somebody is writing it.
    if (stamps[1] || (stamps[0] && !FollowedDay::isSettledAt(stamps[0]->modified)))
        return wake(day);
    const Result<Place> latest = FollowedDay::latest(m_site.archives, files);
    if (!latest)
        return latest.fault();
    m_resting.insert(day, {stamps[0], latest.value()});
    m_places.insert(day, latest.value());
    return {};
}

/// Nothing is to come of a day before yesterday that no event waits for on disk, until its archive changes again.
void FollowCommand::restDays()
{
    const QDate today = m_site.clock.date();
    for (auto day = m_days.begin(); day != m_days.end();) {
        if (day->first >= today.addDays(-1) || m_waiting.contains(day->first) || !day->second.isAtRest()) {
            ++day;
            continue;
        }
        m_resting.insert(day->first, {day->second.archiveStamp(), day->second.place()});
        day = m_days.erase(day);
    }
    m_places.removeIf([this, today](Cursor::iterator place) {
        return place.key() < today.addDays(-cursorDays) && !m_days.contains(place.key());
    });
}

void FollowCommand::readUsers()
{
    const std::optional<FileStamp> stamp = stampOf(m_site.archives.folder().path(nameText(ArchiveName::Users)));
    if (m_users.isKnown() && stamp == m_usersStamp)
        return;
    // Who cannot be read now is told without his name.
    if (m_users.open()) {
        m_usersStamp = stamp;
        m_lines.forgetNames();
    }
}

void FollowCommand::look(QDate day, FollowedDay &followed)
{
    const Result<bool> looked = followed.look(m_site.archives, m_files.value(day),
                                              [this, day](const Statement &row, const SearchResults::Columns &columns,
                                                          const Place &place) { add(day, row, columns, place); });
    m_places[day] = followed.place();
    if (looked)
        m_lines.keep();
    else
        m_lines.takeBack();
}

void FollowCommand::add(QDate day, const Statement &row, const SearchResults::Columns &columns, const Place &place)
{
    readUsers();
    m_places[day] = place;
    m_lines.setCursor(cursorText(m_places));
    (void)m_lines.add(row, columns);
}

} // namespace tool
