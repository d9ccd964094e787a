// What EventSpool does with a file that is damaged.

#include "archives/Tables.h"
#include "link/EventSpool.h"
#include "texts/OwnText.h"

namespace {

/// Longest that a damaged file is read where it is found to be so.
constexpr int rescueMilliseconds = 20;

} // namespace

/// Begins to bring what can be read of a damaged spool into a new one: in most cases that is done when this returns.
Result<void> EventSpool::rescue()
{
    m_file.reset();
    recount();
    Result<std::unique_ptr<SpoolRescue>> begun = SpoolRescue::begin(m_archives);
    m_isRescueVain = !begun;
    if (!begun)
        return begun.fault();
    m_rescue = std::move(begun.value());
    rescueOn(QDeadlineTimer(rescueMilliseconds));
    return {};
}

void EventSpool::rescueOn(const QDeadlineTimer &until)
{
    const Result<bool> done = m_rescue->step(until);
    if (done && !done.value())
        return;
    const Result<QString> aside = done ? m_rescue->finish() : Result<QString>(done.fault());
    const qsizetype count = m_rescue->count();
    m_rescue.reset();
    if (aside)
        tellSetAside(aside.value(), count);
    m_isRescueVain = !aside;
    const Result<void> opened = aside ? openFile() : Result<void>(aside.fault());
    if (!opened)
        tellUnusable(opened.fault());
}

void EventSpool::tellSetAside(const QString &name, qsizetype rescued)
{
    m_notices.post(Icon::Critical, {OwnText::SpoolSetAside, {fileName(), name, QString::number(rescued)}, {}});
}

void EventSpool::endRescue()
{
    if (!m_rescue && !m_isRescueVain)
        return;
    m_rescue.reset();
    // The next start begins anew with the damaged file, unless something has to have its place.
    if (m_memory.isEmpty())
        return;
    if (const Result<QString> aside = m_archives.setAside(ArchiveName::Waiting))
        tellSetAside(aside.value(), 0);
}

/// A damaged spool makes room for a new one; what is damaged is not the archive of the day.
Fault EventSpool::ofTheFile(Fault fault)
{
    if (fault.code == FaultCode::Damaged) {
        (void)rescue();
        fault.code = FaultCode::InputOutput;
    }
    return fault;
}
