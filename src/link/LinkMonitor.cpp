#include "link/LinkMonitor.h"

#include "codes/CodeRules.h"

namespace {

constexpr qint64 rePowerQuietMilliseconds = 2000;

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

void LinkMonitor::ApriCollegamento()
{
    if (m_settings.PortaCom == 0) {
        Q_EMIT noPortChosen();
        return;
    }
    m_serial.setCommPort(m_settings.PortaCom);
    if (const Result<void> opened = m_serial.setPortOpen(true); !opened) {
        m_link = Link::PortNotAvailable;
        Q_EMIT portNotAvailable(opened.fault());
        return;
    }
    m_serial.setInputLen(1);
    m_serial.setRThreshold(1);
    LetturaConf();
}

void LinkMonitor::VerificaRiaccensione()
{
    if (m_query.isRunning() || m_clock.monotonic() < m_quietUntil) {
        m_rePowered = true;
        arm();
        return;
    }
    ConfigInt(Purpose::RePower);
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
    if (m_query.isRunning()) {
        m_next = purpose;
        return;
    }
    startQuery(purpose);
}

void LinkMonitor::startQuery(Purpose purpose)
{
    m_purpose = purpose;
    if (!m_serial.portOpen()) {
        ended({});
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
            if (isRePowerMark(character))
                m_rePowered = true;
            else
                m_query.drop(character);
        }
        // A port that fails here is closed by the control, which ends the query.
        (void)m_serial.output(ConfigQuery::Request);
        m_query.sent(m_clock.monotonic());
    }
    const std::optional<InterfaceConfig> config = m_query.takeResult();
    if (!m_query.isRunning())
        Q_EMIT handsBack();
    if (config)
        ended(*config);
    if (!m_query.isRunning() && m_next)
        startQuery(*std::exchange(m_next, std::nullopt));
    arm();
}

void LinkMonitor::arm()
{
    std::optional<qint64> due;
    if (m_query.takesInput())
        due = m_query.deadline();
    if (m_rePowered && !m_query.isRunning())
        due = due ? qMin(*due, m_quietUntil) : m_quietUntil;
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
    if (m_rePowered && !m_query.isRunning() && now >= m_quietUntil) {
        m_rePowered = false;
        ConfigInt(Purpose::RePower);
    }
    advance();
}

void LinkMonitor::ended(const InterfaceConfig &config)
{
    m_quietUntil = m_clock.monotonic() + rePowerQuietMilliseconds;
    if (config.answered()) {
        updateProtocol(config);
        m_link = Link::Answering;
    } else if (m_purpose == Purpose::LinkStart && m_serial.portOpen()) {
        m_link = Link::NotAnswering;
    }
    Q_EMIT queryEnded(m_purpose, config);
}

void LinkMonitor::updateProtocol(const InterfaceConfig &config)
{
    const int code = protocolCode(config.protocol, config.siteCode, config.channelInfo);
    if (m_settings.CodProtocollo != 0 && m_settings.CodProtocollo == code)
        return;
    m_settings.CodProtocollo = code;
    const QString key = QStringLiteral("PRTC");
    if (const Result<void> saved = m_settings.save(key, code); !saved)
        Q_EMIT settingNotSaved(key, saved.fault());
}

void LinkMonitor::lost()
{
    m_link = Link::PortNotAvailable;
    m_rePowered = false;
    m_query.abort();
    advance();
    Q_EMIT portLost();
}
