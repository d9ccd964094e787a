#pragma once

#include "archive/Command.h"
#include "backup/Backup.h"

namespace tool {

/// Copies the program folder, with the supervisor at work or not.
class BackupCommand : public Command
{
public:
    /// @param site  must outlive this object; @param target  existing folder
    BackupCommand(const Site &site, const QString &target);

    Result<bool> step(const QDeadlineTimer &until) override;
    bool hasFaults() const override { return m_isIncomplete; }
    Message words(const Fault &fault) const override;
    QString state() const override;

private:
    const Site m_site;
    const QString m_target;
    Backup m_backup;
    bool m_hasBegun = false;
    bool m_isIncomplete = false;
};

} // namespace tool
