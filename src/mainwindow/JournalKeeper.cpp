#include "mainwindow/JournalKeeper.h"

namespace {

/// What an interface, or a disturbed line, can cause again and again is noted once in so long.
constexpr qint64 minuteMilliseconds = 60'000;

QString codeText(FaultCode fault)
{
    // The numbers stand in files: a new code goes behind all others.
    static_assert(static_cast<int>(FaultCode::DiskFull) == 4 && static_cast<int>(FaultCode::NotRegularFile) == 8);
    return QString::number(static_cast<int>(fault));
}

} // namespace

JournalKeeper::JournalKeeper(Journal &journal, const Clock &clock, QObject *parent)
    : QObject(parent), m_journal(journal), m_clock(clock)
{
    connect(&m_journal, &Journal::stateWanted, this, &JournalKeeper::noteAnew);
}

void JournalKeeper::watch(LinkMonitor &link, const Settings &settings)
{
    m_link = &link;
    m_settings = &settings;
    connect(&link, &LinkMonitor::portOpened, this, [this] { notePort(JournalKind::PortOpened); });
    connect(&link, &LinkMonitor::portLent, this, [this] { notePort(JournalKind::PortLent); });
    connect(&link, &LinkMonitor::portLost, this, [this] { notePort(JournalKind::PortLost); });
    connect(&link, &LinkMonitor::portBack, this, [this] { notePort(JournalKind::PortBack); });
    connect(&link, &LinkMonitor::portNotAvailable, this,
            [this](const Fault &fault) { notePort(JournalKind::PortNotAvailable, fault.code); });
    connect(&link, &LinkMonitor::queryEnded, this, &JournalKeeper::queryEnded);
    connect(&link, &LinkMonitor::switchedOn, this, &JournalKeeper::noteSwitchedOn);
}

void JournalKeeper::watch(EventRoad &road, EventLog &log)
{
    connect(&road, &EventRoad::recordReceived, this, [this] { m_heard = m_clock.monotonic(); });
    connect(&log, &EventLog::waitingChanged, this, [this, &log] { noteStoring(log.storingFault()); });
    connect(&log, &EventLog::eventsLost, this,
            [this](qsizetype count) { m_journal.note(JournalKind::EventsLost, QString::number(count)); });
}

void JournalKeeper::watch(TimeProgramme &timeProgramme)
{
    connect(&timeProgramme, &TimeProgramme::lineChanged, this, [this](bool asserted, TimeProgramme::Cause cause) {
        m_journal.note(asserted ? JournalKind::Disabled : JournalKind::Enabled,
                       QString::number(static_cast<int>(cause)));
    });
}

void JournalKeeper::watch(DailyBackup &backup)
{
    connect(&backup, &DailyBackup::ended, this, [this](const Result<void> &result) {
        if (result)
            m_journal.note(JournalKind::BackupMade);
        else
            m_journal.note(JournalKind::BackupFailed, codeText(result.fault().code));
    });
}

void JournalKeeper::watch(Awake &awake)
{
    connect(&awake, &Awake::woke, this, [this](qint64 milliseconds) {
        m_journal.noteLate(JournalKind::Slept, milliseconds);
        m_journal.note(JournalKind::Woke);
    });
}

void JournalKeeper::watch(Settings &settings)
{
    connect(&settings, &Settings::changed, this, [this](const QString &key, const QString &value) {
        static const QStringList told = {QStringLiteral("COM"), QStringLiteral("LINGUA"),  QStringLiteral("CHECK"),
                                         QStringLiteral("PRN"), QStringLiteral("NUMEVOD"), QStringLiteral("BKPTIME")};
        if (told.contains(key))
            m_journal.note(JournalKind::SettingChanged, key, value);
        else if (key == QStringLiteral("BKPFOLDER"))
            m_journal.note(JournalKind::SettingChanged, key); // a path may hold somebody's name
    });
}

void JournalKeeper::noteEvents(JournalKind kind, const DailyHours &hours, qsizetype rows)
{
    m_journal.note(kind, hours.text(), QString::number(rows));
}

void JournalKeeper::notePassword(JournalKind kind, Passwords::Type which)
{
    m_journal.note(kind, QString::number(static_cast<int>(which)));
}

void JournalKeeper::notePort(JournalKind kind, std::optional<FaultCode> fault)
{
    m_told.port = kind;
    m_told.answers.reset();
    m_heard.reset();
    m_journal.note(kind, QString::number(m_settings->PortaCom), fault ? codeText(*fault) : QString());
}

void JournalKeeper::queryEnded(LinkMonitor::Purpose purpose, const InterfaceConfig &config)
{
    if (config.answered()) {
        m_heard = m_clock.monotonic();
        noteConfiguration(config);
    }
    const bool isOpen = m_told.port == JournalKind::PortOpened || m_told.port == JournalKind::PortBack;
    if (purpose == LinkMonitor::Purpose::Window || !isOpen)
        return;
    // One that was just switched on may not be ready yet: whether it is silent, the next check finds out.
    if (config.answered() || purpose != LinkMonitor::Purpose::RePower || m_link->link() != LinkMonitor::Link::Answering)
        noteAnswers(config.answered());
}

void JournalKeeper::noteAnswers(bool answers)
{
    if (m_told.answers == answers)
        return;
    m_told.answers = answers;
    if (answers)
        return m_journal.note(JournalKind::InterfaceAnswers);
    m_journal.note(JournalKind::InterfaceSilent,
                   m_heard ? momentText(m_journal.momentBefore(m_clock.monotonic() - *m_heard)) : QString());
}

void JournalKeeper::noteSwitchedOn()
{
    const qint64 now = m_clock.monotonic();
    if (m_switchedOn && now - *m_switchedOn < minuteMilliseconds)
        return;
    m_switchedOn = now;
    m_journal.note(JournalKind::InterfaceSwitchedOn);
}

void JournalKeeper::noteConfiguration(const InterfaceConfig &config)
{
    const qint64 now = m_clock.monotonic();
    if (m_config == config || (m_configured && now - *m_configured < minuteMilliseconds))
        return;
    const bool isFirst = !std::exchange(m_config, config);
    m_configured = now;
    if (!isFirst)
        m_journal.note(JournalKind::ConfigurationDiffers, QString::number(static_cast<int>(config.protocolCode())),
                       config.channels);
}

void JournalKeeper::noteStoring(std::optional<FaultCode> fault)
{
    if (m_isStopped || m_told.storingFault.has_value() == fault.has_value())
        return;
    m_told.storingFault = fault;
    if (fault)
        m_journal.note(JournalKind::StoringFails, codeText(*fault));
    else
        m_journal.note(JournalKind::StoringResumes);
}

/// A reader does not find what was told.
void JournalKeeper::noteAnew()
{
    const Told told = std::exchange(m_told, {});
    const std::optional<qint64> heard = m_heard;
    if (told.port)
        notePort(*told.port);
    m_heard = heard;
    if (told.answers)
        noteAnswers(*told.answers);
    noteStoring(told.storingFault);
}
