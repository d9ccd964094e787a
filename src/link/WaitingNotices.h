#pragma once

#include "link/EventSpool.h"

#include <QMap>

/// What the operator is told about events that wait, that were brought from one archive into another, or that are
/// gone: each once, until all is well again.
class WaitingNotices
{
public:
    /// Both must outlive this object.
    WaitingNotices(EventSpool &spool, Notices &notices) : m_spool(spool), m_notices(notices) {}
    void reset();

    /// Why events wait.
    void failed(const Fault &fault) { m_fault = fault; }
    /// Why those that come cannot be stored, or decided about, now and not for a moment only; nothing when they can.
    std::optional<FaultCode> storingFault() const;
    /// That events wait, and where.
    void tellWaiting();
    /// That none can be kept, nothing being open. @param isSo  false: that is over
    void tellNothingIsStored(bool isSo);

    void storedLate(qsizetype count) { m_hadToWait += count; }
    /// The operator wants to know when what waits has been stored.
    void tellEndLater() { m_endIsToTell = true; }
    /// Nothing waits any more.
    void tellEnd();

    /// @param count  events brought over from an archive of the day that was replaced, 0 also being worth a word
    void brought(QDate day, qsizetype count) { m_brought[day] += count; }
    /// @param left  day that is still being brought over
    void tellBrought(QDate left);

    /// @param registered  events that are gone
    void lost(qsizetype registered) { m_lost += registered; }
    /// What was lost since this was told last. @return how many
    qsizetype tellLost();

private:
    EventSpool &m_spool;
    Notices &m_notices;
    std::optional<Fault> m_fault;
    bool m_isTold = false;        ///< that events wait
    bool m_isNothingTold = false; ///< that none could be kept
    bool m_isMemoryTold = false;  ///< that they wait in memory
    bool m_endIsToTell = false;
    qsizetype m_hadToWait = 0; ///< stored late since waiting began
    QMap<QDate, qsizetype> m_brought;
    qsizetype m_lost = 0;
};
