#include "backup/DailyBackup.h"

#include "startup/Settings.h"
#include "texts/DateTimeText.h"
#include "texts/OwnText.h"

namespace {

constexpr int turnMilliseconds = 15;

} // namespace

DailyBackup::DailyBackup(ArchiveStore &archives, Settings &settings, const Clock &clock)
    : m_archives(archives), m_settings(settings), m_clock(clock)
{
    connect(&m_turn, &QTimer::timeout, this, &DailyBackup::turn);
}

Result<void> DailyBackup::setPlan(const QString &folder, bool isDaily, QTime at)
{
    // Whoever plans anew does not want to wait for the next trial of what he has just set right.
    m_lastTrial = {};
    if (folder != m_plan.folder)
        m_plan.lastSuccess = {};
    m_plan.folder = folder;
    m_plan.isDaily = isDaily;
    m_plan.at = at;
    return m_plan.store(m_settings);
}

Result<void> DailyBackup::check(const QString &folder)
{
    // One that is running has taken the folder for itself.
    return isRunning() && folder == m_plan.folder ? Result<void>() : Backup(m_archives, folder).begin();
}

void DailyBackup::look()
{
    const BackupNeed need = backupNeed(m_plan, m_clock.now(), m_lastTrial);
    if (need.isDue && !isRunning()) {
        if (const Result<void> begun = begin(true); !begun)
            end(begun);
    } else if (need.isOverdue && (need.isDue || !isRunning())) {
        // Also of one that has been running for so long that the next would be due.
        tellOnceADay({OwnText::BackupOverdue, {dayAndTime(m_plan.lastSuccess)}, {}});
    }
}

Result<void> DailyBackup::copyNow()
{
    return isRunning() ? Result<void>() : begin(false);
}

Result<void> DailyBackup::begin(bool isDaily)
{
    m_isDaily = isDaily;
    m_incomplete.reset();
    m_lastTrial = m_clock.now();
    auto backup = std::make_unique<Backup>(m_archives, m_plan.folder);
    if (Result<void> begun = backup->begin(); !begun)
        return begun;
    m_backup = std::move(backup);
    m_turn.start(0);
    Q_EMIT progressed();
    return {};
}

void DailyBackup::turn()
{
    const Result<bool> stepped = m_backup->step(QDeadlineTimer(turnMilliseconds));
    if (stepped && !stepped.value())
        Q_EMIT progressed();
    else
        end(stepped ? Result<void>() : Result<void>(stepped.fault()));
}

void DailyBackup::end(const Result<void> &result)
{
    const int copied = m_backup ? m_backup->copied() : 0;
    if (m_backup && !result)
        m_incomplete = m_backup->incomplete(result.fault());
    stop();
    noteOutcome(result);
    Q_EMIT ended(result, copied);
}

void DailyBackup::noteOutcome(const Result<void> &result)
{
    if (result) {
        // What was changed while it ran may not be in it.
        m_plan.lastSuccess = m_lastTrial;
        const Result<void> stored = m_plan.store(m_settings);
        if (!stored)
            Q_EMIT toTell({OwnText::SettingNotSaved, {stored.fault().subject}, stored.fault()});
    } else if (m_isDaily) {
        tellOnceADay(messageOf(result.fault(), true));
    }
}

void DailyBackup::stop()
{
    m_turn.stop();
    m_backup.reset();
}

void DailyBackup::tellOnceADay(const Message &message)
{
    if (std::exchange(m_told, m_clock.date()) != m_clock.date())
        Q_EMIT toTell(message);
}

Message DailyBackup::messageOf(const Fault &fault, bool isTriedAgain) const
{
    if (m_incomplete)
        return *m_incomplete;
    return {isTriedAgain ? OwnText::BackupTriedAgain : OwnText::BackupNotMade, {m_plan.folder}, fault};
}
