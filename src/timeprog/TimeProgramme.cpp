#include "timeprog/TimeProgramme.h"

#include "archives/RecordSet.h"
#include "archives/Tables.h"
#include "texts/OwnText.h"
#include "timeprog/BandRules.h"
#include "timeprog/HolidayRules.h"
#include "timeprog/NextChange.h"

namespace {

unsigned bit(TimeProgramme::Part part)
{
    return part == TimeProgramme::Part::Bands ? 1U : 2U;
}

} // namespace

TimeProgramme::TimeProgramme(ArchiveStore &archives, const Clock &clock, QObject *parent)
    : QObject(parent), m_archives(archives), m_clock(clock)
{
}

Result<void> TimeProgramme::reload(Part part)
{
    m_suspended &= ~bit(part);
    m_locked &= ~bit(part);
    Result<void> done = read(part);
    if (!done && done.fault().code == FaultCode::Locked)
        m_locked |= bit(part);
    return done;
}

void TimeProgramme::readLocked()
{
    for (const Part part : {Part::Bands, Part::Holidays}) {
        if ((m_locked & ~m_suspended & bit(part)) != 0)
            (void)reload(part);
    }
}

Result<void> TimeProgramme::read(Part part)
{
    const bool isBands = part == Part::Bands;
    m_outlook.reset();
    if (isBands)
        m_bands.clear();
    else
        m_holidays.clear();
    Result<Database> database =
        m_archives.open(isBands ? ArchiveName::Bands : ArchiveName::Holidays, Database::Use::Safe);
    if (!database)
        return database.fault();
    const QString statement = isBands ? QStringLiteral("SELECT * FROM Fascie ORDER BY Da")
                                      : QStringLiteral("SELECT * FROM Giorni ORDER BY DalGiornoOrd");
    Result<RecordSet> opened = RecordSet::open(database.value(), statement, RecordSet::Kind::Snapshot);
    if (!opened)
        return opened.fault();
    if (isBands)
        m_bands = bandsOf(opened.value());
    else
        m_holidays = holidaysOf(opened.value());
    return {};
}

void TimeProgramme::suspend(Part part)
{
    m_suspended |= bit(part);
    Q_EMIT suspended();
}

void TimeProgramme::run()
{
    const TimeState before = m_state;
    m_state = evaluate(m_bands, m_holidays, m_clock.now());
    const bool byHoliday = m_state == TimeState::OnHoliday || before == TimeState::OnHoliday;
    const Cause cause = !m_started ? Cause::Start : byHoliday ? Cause::Holiday : Cause::Band;
    apply(m_state == TimeState::InBand, cause);
}

QString TimeProgramme::untilWhen(const Texts &texts) const
{
    if (!m_started)
        return {};
    if (isSuspended())
        return texts[m_enabled ? OwnText::EnabledWhileEdited : OwnText::DisabledWhileEdited];
    const QDateTime now = m_clock.now();
    if (!m_outlook || !m_outlook->holdsAt(now))
        m_outlook = Outlook{now, nextChange(m_bands, m_holidays, now)};
    return untilSentence(m_enabled, m_outlook->next, now.date(), texts);
}

bool TimeProgramme::Outlook::holdsAt(const QDateTime &now) const
{
    // The clock may have been put back.
    return from <= now && from.date() == now.date() && (!next || now < next->moment);
}

void TimeProgramme::end()
{
    if (m_started && !m_enabled)
        apply(true, Cause::End);
}

void TimeProgramme::apply(bool enabled, Cause cause)
{
    const bool changes = !m_started || enabled != m_enabled;
    m_started = true;
    m_enabled = enabled;
    Q_EMIT applied(enabled);
    if (changes)
        Q_EMIT lineChanged(!enabled, cause);
}
