#pragma once

#include "journal/JournalReading.h"

/// The moments that a search looks at: the same hours of each day of a range, both ends included.
struct DailyHours {
    QDate firstDay;
    QDate lastDay;
    QTime from{0, 0};
    QTime to{23, 59, 59}; ///< before @p from: no moment at all

    /// "dd/mm/yyyy - dd/mm/yyyy, hh:mm:ss - hh:mm:ss", in every language
    QString text() const;
};

/// Reads the journal and finds out for each of some moments whether the program listened, in turns.
class CoverageReading : public Task
{
public:
    /// @param archives  must outlive this object
    /// @param until     moments from there on are left out, seconds since 1970
    /// @param alive     the program is known to run up to here, and all of its rows are on disk; nothing where only
    ///                  the journal's own sign of life tells
    CoverageReading(ArchiveStore &archives, const DailyHours &hours, qint64 until,
                    std::optional<Moment> alive = std::nullopt);

    /// Never fails: what cannot be read is not known.
    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return m_reading.progress(); }

    /// When all is done: what the moments are covered with, in their order, each second once; where hours of a day are
    /// left out there are gaps. None of them when no moment was asked for, or all lie ahead.
    const QList<CoveredSpan> &spans() const { return m_spans; }
    /// All rows that were read, more than those of the days.
    const QList<JournalRow> &rows() const { return m_reading.content().rows; }
    const std::optional<Fault> &unread() const { return m_reading.unread(); }

private:
    enum class Stage { Read, Walk, Cut, Ended };

    void work(const QDeadlineTimer &until);
    void walkOn();
    void cutDay();
    SecondsRange rangeOf(QDate first, QDate last) const;

    const DailyHours m_hours;
    const qint64 m_until;
    const std::optional<Moment> m_alive;
    JournalReading m_reading;
    Stage m_stage = Stage::Read;
    JournalWalk m_walk;
    qsizetype m_next = 0;       ///< row to be walked over
    QList<CoveredSpan> m_whole; ///< without regard to the hours
    qsizetype m_first = 0;      ///< of m_whole, the first one that a day ahead may touch
    QDate m_day;                ///< to be cut out of them
    QList<CoveredSpan> m_spans;
};
