#include "archive/BackupCommand.h"

#include "texts/OwnText.h"

#include <QFileInfo>

namespace tool {

BackupCommand::BackupCommand(const Site &site, const QString &target)
    : m_site(site), m_target(QFileInfo(target).absoluteFilePath()), m_backup(site.archives, m_target)
{
}

Message BackupCommand::words(const Fault &fault) const
{
    return {OwnText::BackupNotMade, {m_target}, fault};
}

QString BackupCommand::state() const
{
    const Progress progress = m_backup.progress();
    const qint64 percent = progress.count > 0 ? 100 * progress.done / progress.count : 0;
    return QStringLiteral("%1 %  %2").arg(percent).arg(m_backup.file());
}

Result<bool> BackupCommand::step(const QDeadlineTimer &until)
{
    if (!std::exchange(m_hasBegun, true)) {
        if (const Result<void> begun = m_backup.begin(); !begun)
            return begun.fault();
    }
    Result<bool> stepped = m_backup.step(until);
    const std::optional<Message> incomplete = stepped ? std::nullopt : m_backup.incomplete(stepped.fault());
    if (incomplete) {
        m_isIncomplete = true;
        m_site.tell(*incomplete);
        return true;
    }
    if (stepped && stepped.value())
        m_site.tell({OwnText::BackupDone, {QString::number(m_backup.copied())}, {}});
    return stepped;
}

} // namespace tool
