#pragma once

#include "archive/Command.h"
#include "archive/EventLines.h"
#include "archive/FollowedDay.h"
#include "archive/Output.h"
#include "codes/UserDirectory.h"

#include <map>

namespace tool {

/// Writes each event once, as it is stored, with a cursor that another run goes on from.
///
/// Followed are today, yesterday, the days that events wait for which could not be stored, and each whose archive has
/// changed; a run with a cursor begins with the days of that. The files of these are looked at twice a second, those of
/// the days that rest whenever their folder has changed; only what has changed is opened.
class FollowCommand : public Command
{
public:
    /// All must outlive this object. @param cursor  where to begin; nothing = with what comes from now on
    FollowCommand(const Site &site, std::optional<Cursor> cursor, const LineForm &form, Output &output);

    /// Looks once. Never ends by itself, unless the output does.
    Result<bool> step(const QDeadlineTimer &until) override;
    bool isEndless() const override { return true; }
    int pause() const override;

private:
    /// A day that nothing is to come of any more, as far as anybody knows.
    struct Resting {
        std::optional<FileStamp> stamp; ///< of its archive when it came to rest
        std::optional<Place> place;     ///< nothing until it was read for the first time
    };

    void list();
    void findChanged();
    Result<void> begin();
    Result<void> beginDay(QDate day, const std::optional<Place> &place);
    Result<void> addDays();
    void takeUp(const QDeadlineTimer &until);
    Result<void> takeUp(QDate day);
    Result<void> wake(QDate day);
    void restDays();
    void readUsers();
    void look(QDate day, FollowedDay &followed);
    void add(QDate day, const Statement &row, const SearchResults::Columns &columns, const Place &place);

    const Site m_site;
    std::optional<Cursor> m_start; ///< until it has begun
    bool m_hasBegun = false;
    UserDirectory m_users;
    EventLines m_lines;
    Pending m_pending;
    bool m_isWritten = true;
    std::map<QDate, FollowedDay> m_days;
    QDate m_latest;  ///< of the days that were followed
    Cursor m_places; ///< of the days that are followed, and of the last week
    QHash<QDate, Resting> m_resting;
    QList<QDate> m_changed; ///< days to be taken up, the latest one last
    bool m_isTakingUp = false;
    const QDateTime m_begun; ///< what was written before is not to be told
    QHash<QDate, DayFiles> m_files;
    QSet<QDate> m_waiting;
    QDateTime m_listed; ///< time of modification of the folder when its files were listed; not valid = too near to it
    qint64 m_listedAt = 0; ///< by the monotonic clock
    std::optional<FileStamp> m_usersStamp;
    std::array<std::optional<FileStamp>, 2> m_waitingStamps;
};

} // namespace tool
