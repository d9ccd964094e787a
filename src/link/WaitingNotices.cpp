#include "link/WaitingNotices.h"

#include "archives/Tables.h"
#include "texts/OwnText.h"

/// That nothing can be stored outlasts a reset: it is over when something can.
void WaitingNotices::reset()
{
    m_fault.reset();
    m_isTold = m_isMemoryTold = m_endIsToTell = false;
    m_hadToWait = 0;
    m_brought.clear();
}

std::optional<FaultCode> WaitingNotices::storingFault() const
{
    if (!m_isTold && !m_isNothingTold && (!m_endIsToTell || m_spool.isEmpty()))
        return {};
    return m_fault ? m_fault->code : m_spool.fault() ? m_spool.fault()->code : FaultCode::Locked;
}

void WaitingNotices::tellNothingIsStored(bool isSo)
{
    if (isSo && !m_isNothingTold)
        m_notices.post(Icon::Critical, {OwnText::NothingIsStored, {}, m_spool.fault()});
    m_isNothingTold = isSo;
}

void WaitingNotices::tellWaiting()
{
    if (m_spool.inMemory() > 0 && !m_isMemoryTold) {
        m_notices.post(Icon::Critical,
                       {OwnText::EventsWaitInMemory, {QString::number(m_spool.inMemory())}, m_spool.fault()});
        m_isMemoryTold = m_isTold = true;
    } else if (m_fault && !m_spool.isEmpty() && !m_isTold) {
        m_notices.post(Icon::Critical, {OwnText::EventsWait, {}, m_fault});
        m_isTold = true;
    }
    m_endIsToTell = m_endIsToTell || m_isTold;
}

void WaitingNotices::tellBrought(QDate left)
{
    const QList<QDate> days = m_brought.keys();
    for (const QDate day : days) {
        if (left == day || m_spool.count(day, EventSpool::Mark::Brought) > 0)
            continue;
        m_notices.post(Icon::Critical,
                       {OwnText::DayReplaced, {ArchiveName::events(day), QString::number(m_brought.take(day))}, {}});
    }
}

void WaitingNotices::tellEnd()
{
    const qsizetype late = std::exchange(m_hadToWait, 0);
    if (std::exchange(m_endIsToTell, false) && late > 0)
        m_notices.post(Icon::Information, {OwnText::EventsStoredAgain, {QString::number(late)}, {}});
    m_isTold = m_isMemoryTold = false;
    m_fault.reset();
}

qsizetype WaitingNotices::tellLost()
{
    const EventSpool::Lost ofSpool = m_spool.takeLost();
    const qsizetype registered = std::exchange(m_lost, 0) + ofSpool.registered;
    const auto tell = [this](OwnText text, qsizetype count) {
        if (count > 0)
            m_notices.post(Icon::Critical, {text, {QString::number(count)}, {}});
    };
    tell(OwnText::EventsLost, registered);
    tell(OwnText::EventsUndecided, ofSpool.undecided);
    return registered + ofSpool.undecided;
}
