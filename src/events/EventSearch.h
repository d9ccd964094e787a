#pragma once

#include "archives/ReunitedDay.h"
#include "events/EventCounts.h"
#include "events/EventQuery.h"
#include "events/EventSink.h"
#include "events/SearchResults.h"
#include "platform/Task.h"

#include <QSet>

#include <algorithm>
#include <functional>
#include <memory>

/// Days that events wait for which could not go to their archive yet.
/// @return nothing when what waits cannot be read
std::optional<QSet<QDate>> daysThatWait(ArchiveStore &archives, Database::Use use);

/// Walks through the archives of the days of a query and copies the events that match, with the names of their users,
/// into results of its own, or hands them over to a sink.
///
/// Of a day of which archives were set aside it takes what can be read of them all, each event once, in the order of
/// times. Each step deals with at least one event or day. What has been found stays, whether the search was stopped or
/// could keep no more events, which is its fault.
class EventSearch : public Task
{
public:
    /// @param archives, @param users  must outlive this object
    EventSearch(ArchiveStore &archives, const UserDirectory &users);
    /// Writes nothing into the program folder, and has no archive of it open between two steps, unless it is damaged.
    /// @param sink  must outlive this object; its faults end the search. The users are its own matter
    EventSearch(ArchiveStore &archives, const UserDirectory &users, EventSink &sink);
    ~EventSearch() override;

    /// Makes the empty results, so that a folder that cannot hold any is known before the operator has asked.
    Result<void> prepare() { return m_results->clear(); }
    /// @param isAny  asked at the start of each search: whether there are events that stand in no file yet
    void setKeptElsewhere(std::function<bool()> isAny) { m_keptElsewhere = std::move(isAny); }
    /// Gets ready to search. The results are empty from now on.
    /// @param query  without a fault, see checkQuery()
    Result<void> start(const EventQuery &query);
    Result<bool> step(const QDeadlineTimer &until) override;
    /// The place among the matches of the day that is being searched, counted from 1. Of a day that is damaged they are
    /// not known: there are as many as have been found.
    Progress progress() const override { return {m_position, std::max(m_matches, m_position)}; }
    void stop() override;

    /// Day that is being searched.
    QDate day() const { return m_day; }

    /// Days of whose archive nothing could be read, oldest first.
    const QList<QDate> &unreadDays() const { return m_unread; }
    /// Days of which events are missing: their archive could be read in part only, or one was set aside.
    const QList<QDate> &incompleteDays() const { return m_incomplete; }
    /// Whether the search has come to its last day: neither stopped nor broken off.
    bool isAtEnd() const { return m_isAtEnd && !m_fault; }
    /// Whether the search has come to its end and has read all there is: only then is nothing found when there is
    /// nothing. It is not where events wait that could not be read.
    bool isComplete() const { return isAtEnd() && !m_isMoreKept && m_unread.isEmpty() && m_incomplete.isEmpty(); }

    /// Not of a search with a sink.
    const SearchResults &results() const { return *m_results; }
    SearchResults &results() { return *m_results; }
    /// Of the events that have been found.
    const EventCounts &counts() const { return m_counts; }

private:
    struct OpenDay;

    bool openDay();
    Result<std::unique_ptr<OpenDay>> open(const QString &name) const;
    void openAgain();
    void release();
    bool settle();
    void noteExtent();
    Result<void> deliver(const Statement &row);
    void gather(const QDeadlineTimer &until);
    Result<std::unique_ptr<OpenDay>> openReunited();
    void fail(const Fault &fault);
    void copyRows();
    void copyRow();
    void count(const Statement &row);
    void closeDay();
    void nextDay();
    void finish();

    ArchiveStore &m_archives;
    const UserDirectory &m_users;
    std::optional<SearchResults> m_results; ///< without a sink
    EventCounts m_counts;
    EventSink *m_sink = nullptr;
    Database::Use m_use = Database::Use::Safe;
    DayCondition m_condition;
    QHash<QDate, DayFiles> m_files;
    QSet<QDate> m_waiting;
    std::function<bool()> m_keptElsewhere;
    bool m_isMoreKept = false; ///< events wait, nobody knows for which days
    QDate m_day;
    QDate m_lastDay;
    ReunitedDay m_reunited;
    bool m_isGathering = false;
    std::unique_ptr<OpenDay> m_open; ///< goes before the above, which it may read
    qint64 m_last = 0;               ///< number of the latest event of the open day
    qint64 m_kept = 0;               ///< the same of those that the sink keeps
    int m_changes = 0;               ///< how often the open day was changed while it was read
    bool m_isLeft = false;           ///< the day was closed for a while, and is to be read on behind m_kept
    bool m_hasRead = false;          ///< something of the day before it was left
    bool m_hasLost = false;          ///< likewise
    int m_position = 0;
    int m_matches = 0;
    bool m_running = false;
    bool m_isAtEnd = false;
    bool m_isUnread = false;     ///< nothing of the day could be read
    bool m_isIncomplete = false; ///< not all of the day could be read
    QList<QDate> m_unread;
    QList<QDate> m_incomplete;
    std::optional<Fault> m_fault;
};
