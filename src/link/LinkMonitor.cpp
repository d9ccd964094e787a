#include "link/LinkMonitor.h"

namespace {

constexpr qint64 rePowerQuietMilliseconds = 2000;
constexpr qint64 minuteMilliseconds = 60'000;
constexpr qint64 retryMilliseconds = 5000;
constexpr qint64 recordQuietMilliseconds = 60'000;

/// The interface sends one of these characters when it is switched on.
bool isRePowerMark(char character)
{
    return character == '\0' || character == '\x80';
}

} // namespace

LinkMonitor::LinkMonitor(SerialControl &serial, Settings &settings, const Clock &clock, QObject *parent)
    : QObject(parent), m_serial(serial), m_settings(settings), m_clock(clock)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &LinkMonitor::wake);
    connect(&m_serial, &SerialControl::OnComm, this, [this] {
        if (m_serial.commEvent() == SerialControl::Lost)
            lost();
    });
}

LinkMonitor::Link LinkMonitor::link() const
{
    switch (m_state.known) {
    case LinkState::Known::Answers:
        return Link::Answering;
    case LinkState::Known::NoPort:
        return Link::PortNotAvailable;
    case LinkState::Known::Nothing:
    case LinkState::Known::Silent:
        break;
    }
    return Link::NotAnswering;
}

Result<void> LinkMonitor::openPort()
{
    m_serial.setCommPort(m_settings.PortaCom);
    if (Result<void> opened = m_serial.setPortOpen(true); !opened)
        return opened;
    m_serial.setInputLen(1);
    m_serial.setRThreshold(1);
    return {};
}

void LinkMonitor::ApriCollegamento()
{
    m_retryDue.reset();
    setUnknown();
    if (m_settings.PortaCom == 0) {
        Q_EMIT noPortChosen();
        return;
    }
    if (const Result<void> opened = openPort(); !opened) {
        m_retryDue = m_clock.monotonic() + retryMilliseconds;
        Q_EMIT portNotAvailable(opened.fault());
        setLink(Link::PortNotAvailable);
        arm();
        return;
    }
    Q_EMIT portOpened();
    LetturaConf();
}

void LinkMonitor::VerificaRiaccensione()
{
    Q_EMIT switchedOn();
    if (m_query.isRunning() || m_clock.monotonic() < m_quietUntil) {
        m_rePowered = true;
        arm();
        return;
    }
    ConfigInt(Purpose::RePower);
}

void LinkMonitor::recordReceived()
{
    // Noted only: whoever tells it is in the middle of a record.
    m_heard = true;
    arm();
}

bool LinkMonitor::isSilent() const
{
    return (m_state.alarm || m_state.known == LinkState::Known::Silent) && m_serial.portOpen();
}

bool LinkMonitor::takes(char character)
{
    if (isRePowerMark(character)) {
        VerificaRiaccensione();
        return true;
    }
    if (!m_query.takesInput())
        return false;
    m_query.feed(character, m_clock.monotonic());
    advance();
    return true;
}

void LinkMonitor::ConfigInt(Purpose purpose)
{
    if (!m_query.isRunning())
        startQuery(purpose);
    else if (!m_next.contains(purpose))
        m_next.append(purpose);
}

void LinkMonitor::startQuery(Purpose purpose)
{
    m_purpose = purpose;
    // What the configuration window is told changes nothing about the link: a record still has its question coming.
    if (purpose != Purpose::Window)
        m_heard = false;
    if (!m_serial.portOpen()) {
        ended(purpose, {});
        return;
    }
    m_query.start(unfinishedLine ? unfinishedLine() : QByteArray());
    advance();
}

void LinkMonitor::advance()
{
    while (m_query.wantsToSend()) {
        for (QByteArrayView input = m_serial.input(); !input.isEmpty(); input = m_serial.input()) {
            const char character = input.front();
            if (!isRePowerMark(character)) {
                m_query.drop(character);
                continue;
            }
            m_rePowered = true;
            Q_EMIT switchedOn();
        }
        if (m_serial.output(ConfigQuery::Request))
            m_query.sent(m_clock.monotonic());
        else
            m_query.abort();
    }
    if (const std::optional<InterfaceConfig> config = m_query.takeResult())
        ended(m_purpose, *config);
    Q_EMIT handsBack();
    if (!m_query.isRunning() && !m_next.isEmpty())
        startQuery(m_next.takeFirst());
    arm();
}

void LinkMonitor::arm()
{
    std::optional<qint64> due = m_checkDue;
    const auto sooner = [&due](std::optional<qint64> other) {
        if (other && (!due || *other < *due))
            due = other;
    };
    sooner(m_retryDue);
    if (m_query.takesInput())
        sooner(m_query.deadline());
    if (m_rePowered && !m_query.isRunning())
        sooner(m_quietUntil);
    if (m_heard && !m_query.isRunning() && isSilent())
        sooner(askAgainDue());
    if (due)
        m_timer.start(static_cast<int>(qMax<qint64>(0, *due - m_clock.monotonic())));
    else
        m_timer.stop();
}

void LinkMonitor::wake()
{
    const qint64 now = m_clock.monotonic();
    if (m_query.takesInput())
        m_query.tick(now);
    // What has ended is judged before anything new is asked.
    advance();
    if (m_rePowered && !m_query.isRunning() && now >= m_quietUntil) {
        m_rePowered = false;
        ConfigInt(Purpose::RePower);
    }
    if (m_heard && !m_query.isRunning() && isSilent() && now >= askAgainDue()) {
        m_recordQuietUntil = now + recordQuietMilliseconds;
        ConfigInt(Purpose::RePower);
    }
    if (m_checkDue && now >= *m_checkDue)
        minute();
    if (m_retryDue && now >= *m_retryDue)
        tryPortAgain();
    advance();
}

void LinkMonitor::minute()
{
    m_checkDue = m_clock.monotonic() + minuteMilliseconds;
    if (m_settings.MinCheck <= 0)
        return;
    if (m_countdown-- != 1)
        return;
    m_countdown = m_settings.MinCheck;
    m_checkDue.reset();
    ConfigInt(Purpose::PeriodicCheck);
}

void LinkMonitor::ended(Purpose purpose, const InterfaceConfig &config)
{
    m_quietUntil = m_clock.monotonic() + rePowerQuietMilliseconds;
    if (config.answered())
        updateProtocol(purpose, config);
    Q_EMIT queryEnded(purpose, config);
    switch (purpose) {
    case Purpose::LinkStart:
        if (config.answered())
            becomesOnLine();
        else if (m_serial.portOpen())
            setLink(Link::NotAnswering);
        break;
    case Purpose::PeriodicCheck:
        if (config.answered())
            m_checkDue = m_clock.monotonic() + minuteMilliseconds;
        else if (m_serial.portOpen())
            raiseAlarm();
        break;
    case Purpose::RePower:
        if (config.answered())
            becomesOnLine();
        break;
    case Purpose::Window:
        break;
    }
    arm();
}

void LinkMonitor::becomesOnLine()
{
    m_recordQuietUntil = 0;
    if (std::exchange(m_state.alarm, false))
        Q_EMIT alarmEnded();
    m_countdown = m_settings.MinCheck;
    m_checkDue = m_clock.monotonic() + minuteMilliseconds;
    setLink(Link::Answering);
}

void LinkMonitor::setLink(Link link)
{
    m_state.known = link == Link::Answering          ? LinkState::Known::Answers
                    : link == Link::PortNotAvailable ? LinkState::Known::NoPort
                                                     : LinkState::Known::Silent;
    Q_EMIT stateChanged();
    Q_EMIT linkChanged(link);
}

void LinkMonitor::setUnknown()
{
    m_state.known = LinkState::Known::Nothing;
    Q_EMIT stateChanged();
}

void LinkMonitor::raiseAlarm()
{
    m_state.alarm = true;
    Q_EMIT stateChanged();
    Q_EMIT alarmRaised();
}

void LinkMonitor::objMessage_Chiudi()
{
    if (!std::exchange(m_state.alarm, false))
        return;
    // A port that is gone is worse than an interface that is silent, and of one that is just being asked nothing is
    // known.
    if (m_state.known == LinkState::Known::Answers || m_state.known == LinkState::Known::Silent)
        setLink(Link::NotAnswering);
    else
        Q_EMIT stateChanged();
}

void LinkMonitor::objTempochk_ModificaMin(std::optional<int> minutes)
{
    if (!minutes)
        return;
    m_settings.MinCheck = *minutes;
    m_countdown = *minutes;
}

void LinkMonitor::suspend()
{
    m_checkDue.reset();
    m_retryDue.reset();
    m_rePowered = false;
    (void)m_serial.setPortOpen(false);
    Q_EMIT portLent();
    setUnknown();
    m_query.abort();
    advance();
}

void LinkMonitor::end()
{
    m_checkDue.reset();
    m_retryDue.reset();
    m_rePowered = false;
    m_next.clear();
    m_query.abort();
    Q_EMIT handsBack();
    m_timer.stop();
    // The last message of the program may stand for a while, and a light beside it.
    setUnknown();
}

void LinkMonitor::objImpCom_Chiudi(std::optional<int> port)
{
    if (port) {
        m_settings.PortaCom = *port;
        saveSetting(QStringLiteral("COM"), *port);
        Q_EMIT portChosen(*port);
    }
    ApriCollegamento();
}

void LinkMonitor::lookAgain()
{
    if (m_serial.portOpen()) {
        ConfigInt(m_state.known == LinkState::Known::Answers && !m_state.alarm ? Purpose::PeriodicCheck
                                                                               : Purpose::RePower);
    } else if (m_retryDue) {
        tryPortAgain();
    }
    arm();
}

void LinkMonitor::readConfiguration()
{
    m_checkDue.reset();
    ConfigInt(Purpose::Window);
}

void LinkMonitor::configurationClosed()
{
    if (link() == Link::Answering)
        m_checkDue = m_clock.monotonic() + minuteMilliseconds;
    arm();
}

void LinkMonitor::updateProtocol(Purpose purpose, const InterfaceConfig &config)
{
    const Protocol protocol = config.protocolCode();
    if (m_settings.CodProtocollo == protocol && (protocol != Protocol::NotKnown || purpose == Purpose::Window))
        return;
    m_settings.CodProtocollo = protocol;
    if (purpose != Purpose::Window)
        saveSetting(QStringLiteral("PRTC"), static_cast<int>(protocol));
}

void LinkMonitor::saveSetting(const QString &key, int value)
{
    if (const Result<void> saved = m_settings.save(key, value); !saved)
        Q_EMIT settingNotSaved(key, saved.fault());
}

void LinkMonitor::lost()
{
    m_rePowered = false;
    m_checkDue.reset();
    m_retryDue = m_clock.monotonic() + retryMilliseconds;
    Q_EMIT portLost();
    setLink(Link::PortNotAvailable);
    m_query.abort();
    advance();
    if (!m_state.alarm)
        raiseAlarm();
}

void LinkMonitor::tryPortAgain()
{
    m_retryDue.reset();
    if (!openPort()) {
        m_retryDue = m_clock.monotonic() + retryMilliseconds;
        return;
    }
    Q_EMIT portBack();
    // The port is there again; what stands behind it, the query tells.
    setLink(Link::NotAnswering);
    ConfigInt(Purpose::RePower);
}
