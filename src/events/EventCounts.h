#pragma once

#include <QDateTime>
#include <QList>
#include <QMap>

#include <utility>

/// How many events were found when, counted while they are found: by hour for a range of one day or two, else by day.
class EventCounts
{
public:
    /// Events of an hour or a day, or of some that follow one another.
    struct Bar {
        QDateTime from; ///< beginning of the first hour or day, as events are stamped
        QDateTime to;   ///< the same of the last one
        qsizetype enabled = 0;
        qsizetype disabled = 0;
        qsizetype firstRow = -1; ///< place of the first of them among all that were found; -1: there are none
    };

    /// Starts anew without an event.
    void begin(QDate firstDay, QDate lastDay);
    /// The next event that was found. @param hour  0 to 23, looked at by hour only
    void add(QDate day, int hour, bool isEnabled);
    /// Of the events that were added only the first @p rows have stayed; at most 2,000 can be taken back.
    void keepFirst(qsizetype rows);

    bool isByHour() const { return m_isByHour; }
    /// All hours of the range, or all days from the first to the last on which something was found; as many in one bar
    /// as is needed for at most @p most bars. Empty without an event.
    QList<Bar> bars(int most) const;

private:
    struct Count {
        qsizetype enabled = 0;
        qsizetype disabled = 0;
        qsizetype firstRow = -1;
    };

    QDateTime moment(qint64 unit) const;

    QDate m_firstDay;
    QDate m_lastDay;
    bool m_isByHour = true;
    qsizetype m_rows = 0;
    QMap<qint64, Count> m_counts;            ///< by hours or days since the first day; only those with an event
    QList<std::pair<qint64, bool>> m_latest; ///< events that may be taken back: hour or day, whether enabled
};
