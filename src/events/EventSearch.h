#pragma once

#include "events/EventQuery.h"
#include "events/SearchResults.h"

#include <QDeadlineTimer>

/// Walks through the archives of the days of a query and copies the events that match, with the names of their users.
class EventSearch
{
public:
    /// @param archives, @param users  must outlive this object
    EventSearch(ArchiveStore &archives, const UserDirectory &users);
    ~EventSearch();

    /// Makes the empty results, so that a folder that cannot hold any is known before the operator has asked.
    Result<void> prepare() { return m_results.clear(); }
    /// Gets ready to search. The results are empty from now on.
    /// @param query  without a fault, see checkQuery()
    Result<void> start(const EventQuery &query);
    /// Goes on with the search; at least one event or day is dealt with.
    /// @return true while there is more to do
    bool step(const QDeadlineTimer &until);
    /// Ends the walk where it is; what has been found so far stays.
    void stop();

    /// Day that is being searched, "dd/mm/yyyy", and the place among its matches, counted from 1.
    const QString &day() const { return m_day; }
    int position() const { return m_position; }
    int matches() const { return m_matches; }

    /// Days whose archive is there but could not be read to its end, "dd/mm/yyyy", oldest first.
    const QStringList &unreadDays() const { return m_unread; }
    /// Why the results could not be kept, which has ended the search.
    const std::optional<Fault> &fault() const { return m_fault; }

    const SearchResults &results() const { return m_results; }
    SearchResults &results() { return m_results; }

private:
    struct OpenDay;

    bool openDay();
    Result<OpenDay> open(const QString &name) const;
    void copyRow();
    void nextDay();
    void finish();

    ArchiveStore &m_archives;
    const UserDirectory &m_users;
    SearchResults m_results;
    DayCondition m_condition;
    QString m_day;
    QString m_lastKey;
    std::unique_ptr<OpenDay> m_open;
    int m_position = 0;
    int m_matches = 0;
    bool m_running = false;
    QStringList m_unread;
    std::optional<Fault> m_fault;
};
