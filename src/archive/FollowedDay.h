#pragma once

#include "archive/Cursor.h"
#include "archives/ArchiveStore.h"
#include "archives/DayFiles.h"
#include "events/SearchResults.h"
#include "platform/FileIdentity.h"
#include "platform/FileStamp.h"

#include <functional>

namespace tool {

/// The events of one day as they come, each once, over all the files that the day has had.
///
/// Events are the same when all that is stored of them but their number is equal, and each is the n-th of such equal
/// ones in its file, as ReunitedDay has it. So whatever becomes of the archive - damaged and set aside, brought into a
/// new one, deleted and stored anew - what was told is not told again. It is looked for only when a file has changed.
class FollowedDay
{
public:
    /// Takes the event on which @p row stands. @param place  where one stands behind it
    using Take = std::function<void(const Statement &row, const SearchResults::Columns &columns, const Place &place)>;

    /// Counts what is there as told, up to @p place.
    /// @param place  nothing = all; one of which nothing is found = none of its file
    /// @return Locked and the like: to be tried again
    Result<void> begin(ArchiveStore &archives, const DayFiles &files, const std::optional<Place> &place);
    /// Hands over what is new, if a file has changed. On a fault, and when an archive was changed while it was read, it
    /// is as if it had not been called, but for @p take. @return whether there may have been anything
    Result<bool> look(ArchiveStore &archives, const DayFiles &files, const Take &take);

    /// Where a day stands whose events were all told: behind its latest one. Reads no more than that.
    static Result<Place> latest(ArchiveStore &archives, const DayFiles &files);

    const Place &place() const { return m_place; }
    /// Whether the last look has seen all there is, and nobody has the archive open to write.
    bool isAtRest() const { return m_isSettled && m_seen && !m_seen->stamps[1]; }
    /// When the archive was looked at last.
    std::optional<FileStamp> archiveStamp() const { return m_seen ? m_seen->stamps[0] : std::nullopt; }
    /// Whether a file that was changed last then, in nanoseconds since 1970, shows by its time that it changes again.
    static bool isSettledAt(qint64 modified);

private:
    using Counts = QHash<quint64, int>;
    /// What tells that there is nothing new.
    struct Seen {
        QStringList setAside;
        std::optional<FileIdentity> archive;
        std::array<std::optional<FileStamp>, 2> stamps; ///< of archive and journal
        bool operator==(const Seen &) const = default;
    };
    using OnRow =
        std::function<bool(const Statement &row, const SearchResults::Columns &columns, qint64 number, quint64 digest)>;

    static Seen seenOf(ArchiveStore &archives, const DayFiles &files);
    static bool isSettled(const Seen &seen);
    static Result<void> read(ArchiveStore &archives, const QString &name, const QString &condition, qint64 behind,
                             const OnRow &onRow);
    static Result<std::optional<Place>> find(ArchiveStore &archives, const QStringList &files, const Place &place);
    Result<void> scan(ArchiveStore &archives, const QStringList &files, bool isAnew, const Take &take);

    Counts m_told;
    Counts m_inArchive; ///< up to m_highest
    qint64 m_highest = 0;
    quint64 m_latest = 0; ///< digest of the event of that number
    Place m_place;
    std::optional<Seen> m_seen;
    bool m_isRescued = false; ///< events were brought into the archive from files set aside
    bool m_isSettled = false; ///< no change can have gone unseen
};

} // namespace tool
