#include "archive/FollowedDay.h"

#include "archives/ReadableRows.h"
#include "archives/ReunitedDay.h"

#include <QDateTime>

#include <limits>

namespace tool {

namespace {

/// Clocks of file systems go in steps: a change so shortly before a look may be followed by one that is not seen.
constexpr qint64 clockStepNanoseconds = 100'000'000;

/// Of what is stored of an event but its number; the same on every machine, as cursors hold a part of it.
quint64 digestOf(const Statement &row, const SearchResults::Columns &columns)
{
    constexpr quint64 prime = 0x100000001b3;
    quint64 digest = 0xcbf29ce484222325;
    for (const int column :
         {columns.Codice, columns.Data, columns.Ora, columns.Tipo, columns.Canale, columns.AbCh, columns.KorDis}) {
        for (const char byte : row.utf8(column))
            digest = (digest ^ static_cast<unsigned char>(byte)) * prime;
        digest = (digest ^ 0xff) * prime;
    }
    return digest;
}

quint32 markOf(quint64 digest)
{
    return static_cast<quint32>(digest);
}

QString onesBehind()
{
    return QStringLiteral("rowid > ?1");
}

/// Oldest first, the archive last.
QStringList allFiles(const DayFiles &files)
{
    return files.setAside + QStringList{files.archive};
}

} // namespace

FollowedDay::Seen FollowedDay::seenOf(ArchiveStore &archives, const DayFiles &files)
{
    Seen seen{files.setAside, {}, {}};
    if (files.archive.isEmpty())
        return seen;
    const QString path = archives.folder().path(files.archive);
    seen.archive = identityOf(path);
    seen.stamps = {stampOf(path), stampOf(path + QStringLiteral("-wal"))};
    return seen;
}

bool FollowedDay::isSettledAt(qint64 modified)
{
    return qAbs(QDateTime::currentMSecsSinceEpoch() * 1'000'000 - modified) >= clockStepNanoseconds;
}

bool FollowedDay::isSettled(const Seen &seen)
{
    return std::all_of(seen.stamps.begin(), seen.stamps.end(),
                       [](const std::optional<FileStamp> &stamp) { return !stamp || isSettledAt(stamp->modified); });
}

/// @param condition  of the rows, where ?1 is @p behind
Result<void> FollowedDay::read(ArchiveStore &archives, const QString &name, const QString &condition, qint64 behind,
                               const OnRow &onRow)
{
    if (name.isEmpty() || !archives.exists(name))
        return {};
    Result<Database> database = archives.open(name, Database::Use::Untouched);
    // What is damaged will be set aside; what can be read of it counts.
    if (!database)
        return database.fault().code == FaultCode::Damaged ? Result<void>() : database.fault();
    Result<ReadableRows> rows = ReadableRows::open(database.value(), QStringLiteral("Eventi"), condition, {behind});
    if (!rows)
        return rows.fault().code == FaultCode::Damaged ? Result<void>() : rows.fault();
    const SearchResults::Columns columns = SearchResults::columnsOf(rows.value().row());
    if (std::min({columns.Codice, columns.Tipo, columns.Data, columns.Ora, columns.Canale, columns.AbCh,
                  columns.KorDis}) < 0)
        return {};
    bool goesOn = true;
    while (goesOn) {
        const Result<ReadableRows::Found> found = rows.value().step();
        if (!found)
            return found.fault();
        if (found.value() == ReadableRows::Found::End)
            break;
        const Statement &row = rows.value().row();
        if (found.value() == ReadableRows::Found::Row)
            goesOn = onRow(row, columns, row.integer(0), digestOf(row, columns));
    }
    return database.value().hasChanged() ? Result<void>(Fault{FaultCode::Locked, name}) : Result<void>();
}

/// Where the event of a place stands now: where it did, or else the last that is stored alike.
Result<std::optional<Place>> FollowedDay::find(ArchiveStore &archives, const QStringList &files, const Place &place)
{
    std::optional<Place> like;
    bool isThere = false;
    for (int file = 0; file < files.size() && !isThere; ++file) {
        const bool isItsFile = file == qMin<qsizetype>(place.file, files.size() - 1);
        const Result<void> done = read(archives, files[file], onesBehind(), 0,
                                       [&](const Statement &, const auto &, qint64 number, quint64 digest) {
                                           if (markOf(digest) == place.mark)
                                               like = {file, number, place.mark};
                                           isThere |=
                                               markOf(digest) == place.mark && isItsFile && number == place.number;
                                           return !isThere;
                                       });
        if (!done)
            return done.fault();
    }
    return like;
}

Result<void> FollowedDay::begin(ArchiveStore &archives, const DayFiles &files, const std::optional<Place> &place)
{
    const QStringList all = allFiles(files);
    std::optional<Place> last = Place{static_cast<int>(all.size()) - 1, std::numeric_limits<qint64>::max(), 0};
    if (place && place->number > 0) {
        const Result<std::optional<Place>> found = find(archives, all, *place);
        if (!found)
            return found.fault();
        last =
            found.value() ? found.value() : Place{static_cast<int>(qMin<qsizetype>(place->file, all.size() - 1)), 0, 0};
    } else if (place) {
        last = *place;
    }
    Counts told;
    Place latest{last->file, 0, 0};
    for (int file = 0; file <= last->file && file < all.size(); ++file) {
        Counts counts;
        const Result<void> done = read(archives, all[file], onesBehind(), 0,
                                       [&](const Statement &, const auto &, qint64 number, quint64 digest) {
                                           if (file == last->file && number > last->number)
                                               return false;
                                           const int count = ++counts[digest];
                                           told[digest] = qMax(told[digest], count);
                                           latest = {file, number, markOf(digest)};
                                           return true;
                                       });
        if (!done)
            return done.fault();
    }
    m_told = std::move(told);
    m_place = latest;
    m_seen.reset();
    return {};
}

Result<Place> FollowedDay::latest(ArchiveStore &archives, const DayFiles &files)
{
    const int archive = static_cast<int>(files.setAside.size());
    Place place{archive, 0, 0};
    const Result<void> done =
        read(archives, files.archive, QStringLiteral("rowid > ?1 AND rowid = (SELECT max(rowid) FROM Eventi)"), 0,
             [&place, archive](const Statement &, const SearchResults::Columns &, qint64 number, quint64 digest) {
                 place = {archive, number, markOf(digest)};
                 return true;
             });
    return done ? Result<Place>(place) : done.fault();
}

Result<bool> FollowedDay::look(ArchiveStore &archives, const DayFiles &files, const Take &take)
{
    const Seen seen = seenOf(archives, files);
    if (m_isSettled && seen == m_seen)
        return false;
    bool isAnew = !m_seen || m_seen->setAside != seen.setAside || m_seen->archive != seen.archive;
    m_isSettled = isSettled(seen);
    m_seen = seen;
    if (!files.setAside.isEmpty() && !files.archive.isEmpty()) {
        // Events that were rescued have lower numbers than those that came meanwhile.
        Result<Database> database = archives.open(files.archive, Database::Use::Untouched);
        const Result<bool> rescued = database ? ReunitedDay::isBroughtInto(database.value()) : database.fault();
        isAnew |= rescued && std::exchange(m_isRescued, rescued.value()) != rescued.value();
    }
    const Result<void> scanned = scan(archives, allFiles(files), isAnew, take);
    if (!scanned)
        m_seen.reset();
    return scanned ? Result<bool>(true) : scanned.fault();
}

/// @param isAnew  all files from their first event on, else what is new in the archive
Result<void> FollowedDay::scan(ArchiveStore &archives, const QStringList &files, bool isAnew, const Take &take)
{
    const Place before = m_place;
    QList<quint64> told;
    if (isAnew) {
        m_inArchive.clear();
        m_highest = 0;
    }
    // A file made anew may even have the inode of the one that was deleted: its latest event tells them apart.
    bool isSame = m_highest == 0;
    const qint64 latest = m_highest;
    Result<void> done;
    for (int file = isAnew ? 0 : static_cast<int>(files.size()) - 1; done && file < files.size(); ++file) {
        const bool isArchive = file == files.size() - 1;
        Counts ofFile;
        Counts &counts = isArchive ? m_inArchive : ofFile;
        done = read(archives, files[file], onesBehind(), isArchive && latest > 0 ? latest - 1 : 0,
                    [&](const Statement &row, const SearchResults::Columns &columns, qint64 number, quint64 digest) {
                        if (isArchive && !isSame) {
                            isSame = number == latest && digest == m_latest;
                            return isSame;
                        }
                        if (isArchive) {
                            m_highest = number;
                            m_latest = digest;
                        }
                        if (++counts[digest] <= m_told.value(digest))
                            return true;
                        ++m_told[digest];
                        told.append(digest);
                        m_place = {file, number, markOf(digest)};
                        take(row, columns, m_place);
                        return true;
                    });
    }
    if (done && !isSame)
        return scan(archives, files, true, take);
    if (!done) {
        for (const quint64 digest : std::as_const(told))
            --m_told[digest];
        m_place = before;
    } else if (m_highest > 0) {
        m_place = {static_cast<int>(files.size()) - 1, m_highest, markOf(m_latest)};
    }
    return done;
}

} // namespace tool
