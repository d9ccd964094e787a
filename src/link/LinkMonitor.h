#pragma once

#include "link/ConfigQuery.h"
#include "platform/Clock.h"
#include "platform/SerialControl.h"
#include "startup/Settings.h"

#include <QTimer>

#include <functional>
#include <optional>

/// Opens the port, asks the interface for its configuration, and knows whether it answers.
class LinkMonitor : public QObject
{
    Q_OBJECT

public:
    /// The link-down flag.
    enum class Link { Answering = 0, NotAnswering = 1, PortNotAvailable = 2 };
    Q_ENUM(Link)
    /// What a query is asked for.
    enum class Purpose { LinkStart, RePower };
    Q_ENUM(Purpose)

    /// All must outlive this object.
    LinkMonitor(SerialControl &serial, Settings &settings, const Clock &clock, QObject *parent = nullptr);

    Link link() const { return m_link; }

    /// Opens the configured port and asks the interface. Ends with noPortChosen, portNotAvailable or queryEnded.
    void ApriCollegamento();
    /// Asks the interface at the start of the link.
    void LetturaConf() { ConfigInt(Purpose::LinkStart); }
    /// Asks the interface because it told that it was switched on. Any number of calls while a query runs, or within
    /// two seconds after one, lead to one more query at the end of those two seconds.
    void VerificaRiaccensione();

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
    void portNotAvailable(const Fault &fault);
    /// The port failed or was pulled out while it was open.
    void portLost();
    /// A query has ended; link() and the protocol in the settings are up to date.
    void queryEnded(LinkMonitor::Purpose purpose, const InterfaceConfig &config);
    void settingNotSaved(const QString &key, const Fault &fault);
    /// takeHandedBack() has something.
    void handsBack();

private:
    void ConfigInt(Purpose purpose);
    void startQuery(Purpose purpose);
    void advance();
    void arm();
    void lost();
    void ended(const InterfaceConfig &config);
    void updateProtocol(const InterfaceConfig &config);

    SerialControl &m_serial;
    Settings &m_settings;
    const Clock &m_clock;
    ConfigQuery m_query;
    QTimer m_timer;
    Link m_link = Link::NotAnswering;
    Purpose m_purpose = Purpose::LinkStart;
    std::optional<Purpose> m_next; ///< asked while a query ran
    bool m_rePowered = false;      ///< told while no query may start
    qint64 m_quietUntil = 0;       ///< no query for a re-power before this
};
