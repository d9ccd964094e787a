#include "archive/FollowCommand.h"

#include "archives/Tables.h"
#include "events/EventSearch.h"

#include <QFileInfo>

namespace tool {

namespace {

constexpr int lookMilliseconds = 500;
/// The files are listed anew whenever their folder has changed, and so often in any case.
constexpr qint64 listMilliseconds = 60'000;

QString nameText(QStringView name)
{
    return name.toString();
}

} // namespace

FollowCommand::FollowCommand(const Site &site, std::optional<Cursor> cursor, const LineForm &form, Output &output)
    : m_site(site),
      m_start(std::move(cursor)),
      m_users(site.archives),
      m_lines(form, site.texts, m_users),
      m_pending(output)
{
}

int FollowCommand::pause() const
{
    const bool isBehind = !m_days.empty() && m_days.rbegin()->first < m_site.clock.date();
    return m_isWritten && !isBehind ? lookMilliseconds : 0;
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
        for (auto &[day, followed] : m_days)
            look(day, followed);
        dropDays();
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
    if (modified != m_listed || m_files.isEmpty() || now - m_listedAt > listMilliseconds) {
        m_listed = modified;
        m_listedAt = now;
        // A folder that cannot be listed may be there again the next time.
        if (Result<QHash<QDate, DayFiles>> files = filesOfDays(folder); files)
            m_files = std::move(files.value());
    }
    const QString waiting = folder.path(nameText(ArchiveName::Waiting));
    const std::array stamps = {stampOf(waiting), stampOf(waiting + QStringLiteral("-wal"))};
    if (stamps == m_waitingStamps)
        return;
    m_waitingStamps = stamps;
    m_waiting = daysThatWait(m_site.archives, Database::Use::Untouched).value_or(QSet<QDate>());
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
    m_hasBegun = true;
    return addDays();
}

/// Takes in the day behind the latest one until it is today, and those that events wait for.
Result<void> FollowCommand::addDays()
{
    const QDate today = m_site.clock.date();
    const QDate latest = m_days.empty() ? today.addDays(-1) : m_days.rbegin()->first;
    Result<void> begun;
    if (latest < today)
        begun = beginDay(latest.addDays(1), Place());
    else if (m_days.find(today) == m_days.end())
        begun = beginDay(today, {});
    if (!begun)
        return begun;
    for (const QDate day : std::as_const(m_waiting)) {
        // What is in the archive already was told when the day was followed.
        if (day.isValid() && m_days.find(day) == m_days.end()) {
            if (Result<void> waits = beginDay(day, {}); !waits)
                return waits;
        }
    }
    return {};
}

/// Nothing is to come any more of a day before yesterday that no event waits for.
void FollowCommand::dropDays()
{
    const QDate yesterday = m_site.clock.date().addDays(-1);
    for (auto day = m_days.begin(); day != m_days.end();) {
        if (day->first >= yesterday || m_waiting.contains(day->first) || !day->second.isSettled()) {
            ++day;
            continue;
        }
        m_places.remove(day->first);
        day = m_days.erase(day);
    }
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
