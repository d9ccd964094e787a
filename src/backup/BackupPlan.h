#pragma once

#include "platform/Result.h"

#include <QDateTime>
#include <QString>

class Settings;

/// When and where to the program folder is copied by itself, as the settings have it.
struct BackupPlan {
    QString folder;        ///< "" = none chosen yet
    bool isDaily = false;  ///< by itself, every day
    QTime at{2, 0};        ///< of the day, to the minute
    QDateTime lastSuccess; ///< when the last copy in the folder that has everything began; not valid = never

    static BackupPlan from(const Settings &settings);
    /// @return the fault has the key as its subject
    Result<void> store(Settings &settings) const;
};

struct BackupNeed {
    bool isDue = false;     ///< the time of the day has come since the last success
    bool isOverdue = false; ///< the last success is more than three days old
};

/// What a plan asks for. Each day's time is served once, at it or by the first look after it, however late; a copy that
/// failed is tried again after an hour. A success or trial that lies ahead, as after the clock was set back, counts as
/// none.
/// @param lastTrial  when the last copy began; not valid = not yet
BackupNeed backupNeed(const BackupPlan &plan, const QDateTime &now, const QDateTime &lastTrial);
