#pragma once

#include "archives/ReunitedDay.h"
#include "link/DayArchives.h"

#include <QList>
#include <QSet>

/// Brings what can be read of archives that were set aside into the archive of their day, in turns.
///
/// What stands there already is not brought again, as ReunitedDay tells it: whenever the program or its power is cut
/// off, the next start begins anew and brings what is missing. An archive that all has been brought into is marked. An
/// event keeps its number when that is free.
class DayRescue
{
public:
    /// All must outlive this object.
    DayRescue(ArchiveStore &archives, DayArchives &days, Notices &notices);

    /// Looks for days that an earlier run has not finished with.
    void find();
    /// Whether something can be done now.
    bool hasWork();
    /// Whether there is anything left, be it to be tried again later.
    bool isPending() { return hasWork() || !m_stuck.isEmpty(); }
    /// Tries again what could not be done.
    void retry() { m_stuck.clear(); }
    /// Goes on until then, unless that is now.
    void step(const QDeadlineTimer &until);
    /// Leaves the rest to the next start.
    void close();

private:
    enum class Stage { Open, Gather, Bring };
    struct Row {
        qint64 number = 0;
        SqlValues columns;
    };

    void doPiece(const QDeadlineTimer &until);
    Result<void> work(const QDeadlineTimer &until);
    Result<bool> isToRescue(QDate day, const DayFiles &files);
    Result<DayArchive *> opened(const QDeadlineTimer &until);
    Result<void> open(const QDeadlineTimer &until);
    Result<void> gather(const QDeadlineTimer &until);
    Result<void> bring(const QDeadlineTimer &until);
    Result<bool> readPiece();
    Result<void> store(DayArchive &archive);
    Result<void> finish();
    void beginAnew();
    void done();

    ArchiveStore &m_archives;
    DayArchives &m_days;
    Notices &m_notices;
    QList<QDate> m_waiting;
    QSet<QDate> m_stuck; ///< of them, those that nothing can be done for until retry()
    Stage m_stage = Stage::Open;
    QDate m_day; ///< being rescued
    ReunitedDay m_reunited;
    std::optional<Statement> m_rows; ///< still to be read of the above, before which it goes
    QList<Row> m_piece;              ///< read from these and not stored yet
};
