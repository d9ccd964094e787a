#pragma once

#include "backup/DailyBackup.h"
#include "journal/Journal.h"
#include "link/EventRoad.h"
#include "link/LinkMonitor.h"
#include "platform/Awake.h"
#include "prefs/Passwords.h"
#include "timeprog/TimeProgramme.h"

#include <QObject>

#include <optional>

/// Notes in the journal what the parts of the program tell. They know nothing of it.
class JournalKeeper : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this object, and so must whatever is watched.
    JournalKeeper(Journal &journal, const Clock &clock, QObject *parent = nullptr);

    void watch(LinkMonitor &link, const Settings &settings);
    void watch(EventRoad &road, EventLog &log);
    void watch(TimeProgramme &timeProgramme);
    void watch(DailyBackup &backup);
    void watch(Awake &awake);
    /// Of the settings those that an operator chooses in a window for it.
    void watch(Settings &settings);
    void notePassword(JournalKind kind, Passwords::Type which);
    /// @param kind  Searched, Printed or Exported
    void noteEvents(JournalKind kind, const DailyHours &hours, qsizetype rows);
    /// The program ends: that nothing waits any more does not mean that it has been stored.
    void stop() { m_isStopped = true; }

private:
    /// What a reader of the journal believes to stand.
    struct Told {
        std::optional<JournalKind> port;
        std::optional<bool> answers;
        std::optional<FaultCode> storingFault;
    };

    void notePort(JournalKind kind, std::optional<FaultCode> fault = {});
    void queryEnded(LinkMonitor::Purpose purpose, const InterfaceConfig &config);
    void noteAnswers(bool answers);
    void noteSwitchedOn();
    void noteConfiguration(const InterfaceConfig &config);
    void noteStoring(std::optional<FaultCode> fault);
    void noteAnew();

    Journal &m_journal;
    const Clock &m_clock;
    LinkMonitor *m_link = nullptr;
    const Settings *m_settings = nullptr;
    bool m_isStopped = false;
    Told m_told;
    std::optional<qint64> m_heard;      ///< the interface was heard of last, monotonic; since the port was opened
    std::optional<qint64> m_switchedOn; ///< noted last
    std::optional<qint64> m_configured; ///< likewise
    std::optional<InterfaceConfig> m_config;
};
