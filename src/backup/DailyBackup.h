#pragma once

#include "backup/Backup.h"
#include "backup/BackupPlan.h"
#include "platform/Clock.h"
#include "texts/Texts.h"

#include <QObject>
#include <QTimer>

#include <memory>

/// The backup of the program folder: by itself every day, and when it is asked for. One runs at a time, in short turns
/// of the event loop.
class DailyBackup : public QObject
{
    Q_OBJECT

public:
    /// All must outlive this object.
    DailyBackup(ArchiveStore &archives, Settings &settings, const Clock &clock);

    /// Takes the plan from the settings.
    void readPlan() { m_plan = BackupPlan::from(m_settings); }
    const BackupPlan &plan() const { return m_plan; }
    /// Another folder and time; what was copied to another folder is no success in this one.
    /// @return its subject is the setting that cannot be stored; the plan counts all the same, until the program ends
    Result<void> setPlan(const QString &folder, bool isDaily, QTime at);
    /// Whether a backup could stand in a folder; see Backup::begin().
    Result<void> check(const QString &folder);

    /// Begins the daily backup when it is due, and tells when it has not succeeded for too long: to be called from time
    /// to time.
    void look();
    /// Begins a backup into the plan's folder, when none is running. @return see Backup::begin()
    Result<void> copyNow();
    /// Drops the one that is running: what is in place stays, and nobody hears of its end.
    void stop();

    bool isRunning() const { return m_backup != nullptr; }
    /// Whether the one that runs, or was the last to run, began by itself.
    bool isDaily() const { return m_isDaily; }
    /// Of the one that is running: file relative to the program folder, "" between files.
    QString file() const { return m_backup ? m_backup->file() : QString(); }
    Task::Progress progress() const { return m_backup ? m_backup->progress() : Task::Progress(); }

    /// What a fault of a backup means to the operator. @param isTriedAgain  by itself
    Message messageOf(const Fault &fault, bool isTriedAgain) const;

Q_SIGNALS:
    /// One has begun, or has gone on for a turn.
    void progressed();
    /// One has ended. @param copied  files
    void ended(const Result<void> &result, int copied);
    /// The operator must know. Of a backup that does not succeed that is once a day.
    void toTell(const Message &message);

private:
    Result<void> begin(bool isDaily);
    void turn();
    void end(const Result<void> &result);
    void noteOutcome(const Result<void> &result);
    void tellOnceADay(const Message &message);

    ArchiveStore &m_archives;
    Settings &m_settings;
    const Clock &m_clock;
    BackupPlan m_plan;
    std::unique_ptr<Backup> m_backup;
    bool m_isDaily = false;
    std::optional<Message> m_incomplete; ///< what the last one is told with, when it lacks files only
    QDateTime m_lastTrial;
    QDate m_told;
    QTimer m_turn;
};
