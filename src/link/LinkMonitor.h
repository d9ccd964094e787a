#pragma once

#include "link/ConfigQuery.h"
#include "link/LinkState.h"
#include "platform/Clock.h"
#include "platform/SerialControl.h"
#include "startup/Settings.h"

#include <QTimer>

#include <functional>
#include <optional>

/// Opens the port, asks the interface for its configuration, and watches whether it answers. A port that is chosen and
/// not open, for whatever reason, is tried again every five seconds, except while the port window has it.
///
/// The order of things at a failed check: first the alarm is raised (a message in a window, a line on the console), and
/// only when the operator has closed it link() tells that the interface does not answer. A port that is gone is told at
/// once, and then raises the alarm. An interface that is heard of again closes the alarm itself.
class LinkMonitor : public QObject
{
    Q_OBJECT

public:
    /// The link-down flag.
    enum class Link { Answering = 0, NotAnswering = 1, PortNotAvailable = 2 };
    Q_ENUM(Link)
    /// What a query is asked for.
    enum class Purpose { LinkStart, PeriodicCheck, RePower, Window };
    Q_ENUM(Purpose)

    /// All must outlive this object.
    LinkMonitor(SerialControl &serial, Settings &settings, const Clock &clock, QObject *parent = nullptr);

    /// What is known of the link, and what is shown of it.
    LinkState state() const { return m_state; }
    Link link() const;

    /// Opens the configured port and asks the interface. Ends with noPortChosen, portNotAvailable or queryEnded.
    void ApriCollegamento();
    /// Asks the interface at the start of the link.
    void LetturaConf() { ConfigInt(Purpose::LinkStart); }
    /// Asks the interface because it told that it was switched on. Any number of calls while a query runs, or within
    /// two seconds after one, lead to one more query at the end of those two seconds.
    void VerificaRiaccensione();
    /// A well-formed record has come. An interface that counts as silent is asked again, as after a re-power; while
    /// records come and it does not answer, once a minute.
    void recordReceived();
    /// The operator has closed the message of the alarm.
    void objMessage_Chiudi();
    /// Another interval of the periodic check: @p minutes from now on, 0 = no checks; nothing = as it was.
    void objTempochk_ModificaMin(std::optional<int> minutes);

    /// The program ends: nothing is asked any more, and what a query holds is handed back.
    void end();
    /// The port window opens: closes the port, so that it can be probed too, and stops all checks.
    void suspend();
    /// The port window has closed: its @p port, if there is one, is the one from now on. The link is opened as at
    /// start.
    void objImpCom_Chiudi(std::optional<int> port);
    /// The PC has slept, and with it every span that was waited for: the port is tried, or the interface asked, at
    /// once. One that answered before and does not now raises the alarm.
    void lookAgain();
    /// The configuration window asks; queryEnded follows with Purpose::Window. Periodic checks pause until
    /// configurationClosed(). The protocol is taken over in memory only.
    void readConfiguration();
    void configurationClosed();

    /// Takes a character that was received, or leaves it to the decoder (false).
    bool takes(char character);
    /// Characters that a query had taken and that belong to the decoder; empty mostly.
    QByteArray takeHandedBack() { return m_query.takeHandedBack(); }

    /// Does what is due by the clock; its own timer calls it in time.
    void wake();

    /// The line that the decoder has begun, asked for when a query starts; the decoder's copy is emptied.
    std::function<QByteArray()> unfinishedLine;

Q_SIGNALS:
    void noPortChosen();
    /// The port window has closed with this port, which has not been opened yet.
    void portChosen(int port);
    /// The port was opened at the start of the link.
    void portOpened();
    /// The port window has the port: nothing is received.
    void portLent();
    /// The interface tells that it was switched on; more than once for one time, and when the line is disturbed.
    void switchedOn();
    /// The port could not be opened at the start of the link. Told once, however often it is tried again.
    void portNotAvailable(const Fault &fault);
    /// The port failed or was pulled out while it was open.
    void portLost();
    /// Tried again, the port could be opened.
    void portBack();
    /// A query has ended; the protocol in the settings is up to date.
    void queryEnded(LinkMonitor::Purpose purpose, const InterfaceConfig &config);
    /// link() has been found out or has changed.
    void linkChanged(LinkMonitor::Link link);
    /// state() may look different.
    void stateChanged();
    void alarmRaised();
    /// The interface answers again while the alarm stands: its message closes by itself.
    void alarmEnded();
    void settingNotSaved(const QString &key, const Fault &fault);
    /// takeHandedBack() may have something.
    void handsBack();

private:
    void ConfigInt(Purpose purpose);
    void startQuery(Purpose purpose);
    Result<void> openPort();
    void advance();
    void arm();
    void lost();
    void tryPortAgain();
    void minute();
    void ended(Purpose purpose, const InterfaceConfig &config);
    void becomesOnLine();
    void setLink(Link link);
    void setUnknown();
    bool isSilent() const;
    qint64 askAgainDue() const { return qMax(m_quietUntil, m_recordQuietUntil); }
    void raiseAlarm();
    void updateProtocol(Purpose purpose, const InterfaceConfig &config);
    void saveSetting(const QString &key, int value);

    SerialControl &m_serial;
    Settings &m_settings;
    const Clock &m_clock;
    ConfigQuery m_query;
    QTimer m_timer;
    LinkState m_state;
    Purpose m_purpose = Purpose::LinkStart;
    QList<Purpose> m_next;            ///< asked while a query ran, each once
    bool m_rePowered = false;         ///< told while no query may start
    bool m_heard = false;             ///< a record has come since the last question
    qint64 m_quietUntil = 0;          ///< no query for a re-power before this
    qint64 m_recordQuietUntil = 0;    ///< no query for a record before this
    std::optional<qint64> m_checkDue; ///< next minute of the countdown
    std::optional<qint64> m_retryDue; ///< next try to open the port
    int m_countdown = 0;              ///< minutes until the next periodic check, while checks run
};
