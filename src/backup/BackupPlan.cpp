#include "backup/BackupPlan.h"

#include "startup/Settings.h"

namespace {

constexpr int daysUntilOverdue = 3;
constexpr qint64 secondsToNextTrial = 3600;

// No other key ends with one of these, nor one of these with another key.
QString folderKey()
{
    return QStringLiteral("BKPFOLDER");
}
QString timeKey()
{
    return QStringLiteral("BKPTIME");
}
QString successKey()
{
    return QStringLiteral("BKPLAST");
}

QString timeForm()
{
    return QStringLiteral("HH:mm");
}
QString momentForm()
{
    return QStringLiteral("yyyy-MM-dd HH:mm:ss");
}

Result<void> storeEntry(Settings &settings, const QString &key, const QString &value)
{
    // Each is a file rewritten and flushed.
    if (settings.LeggiImpostazione(key) == value)
        return {};
    const Result<void> stored = settings.ScriviImpostazione(key, key + QLatin1Char('=') + value);
    return stored ? Result<void>() : Result<void>(Fault{stored.fault().code, key});
}

} // namespace

BackupPlan BackupPlan::from(const Settings &settings)
{
    BackupPlan plan;
    plan.folder =
        QString::fromUtf8(QByteArray::fromPercentEncoding(settings.LeggiImpostazione(folderKey()).toLatin1()));
    const QTime at = QTime::fromString(settings.LeggiImpostazione(timeKey()), timeForm());
    plan.isDaily = at.isValid() && !plan.folder.isEmpty();
    plan.at = at.isValid() ? at : plan.at;
    plan.lastSuccess = QDateTime::fromString(settings.LeggiImpostazione(successKey()), momentForm());
    return plan;
}

Result<void> BackupPlan::store(Settings &settings) const
{
    // A folder may have any character, the file has not; and a "COM=" in it would be taken for the port.
    const QString encoded = QString::fromLatin1(folder.toUtf8().toPercentEncoding("/"));
    if (Result<void> stored = storeEntry(settings, folderKey(), encoded); !stored)
        return stored;
    const QString time = isDaily ? at.toString(timeForm()) : QString();
    const QString success = lastSuccess.isValid() ? lastSuccess.toString(momentForm()) : QString();
    for (const auto &[key, value] :
         {std::pair(folderKey(), encoded), std::pair(timeKey(), time), std::pair(successKey(), success)}) {
        if (Result<void> stored = storeEntry(settings, key, value); !stored)
            return stored;
    }
    return {};
}

BackupNeed backupNeed(const BackupPlan &plan, const QDateTime &now, const QDateTime &lastTrial)
{
    BackupNeed need;
    if (!plan.isDaily)
        return need;
    QDateTime planned(now.date(), plan.at);
    if (planned > now)
        planned = QDateTime(now.date().addDays(-1), plan.at);
    const bool isKnown = plan.lastSuccess.isValid() && plan.lastSuccess <= now;
    const bool mayBeTried = !lastTrial.isValid() || lastTrial > now || lastTrial.secsTo(now) >= secondsToNextTrial;
    need.isDue = mayBeTried && !(isKnown && plan.lastSuccess >= planned);
    need.isOverdue = isKnown && plan.lastSuccess.addDays(daysUntilOverdue) < now;
    return need;
}
