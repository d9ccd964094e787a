#include "mainwindow/Program.h"

#include "archives/Tables.h"

namespace {

constexpr int refreshMilliseconds = 10'000;

} // namespace

Program::Program(const QString &folder, const Clock &clock, const Printers &printers, const MakeSerial &makeSerial,
                 QObject *parent)
    : QObject(parent),
      m_clock(clock),
      m_folder(folder, m_disk),
      m_settings(m_folder, printers),
      m_printer(m_settings, printers, m_notices),
      m_archives(m_folder),
      m_ports(m_folder),
      m_serial(makeSerial ? makeSerial(m_ports) : std::make_unique<SerialControl>(m_ports)),
      m_link(*m_serial, m_settings, clock),
      m_users(m_archives, ArchiveName::UsersSnapshot, UserDirectory::Copy::Kept),
      m_log(m_archives, clock, m_notices),
      m_road(m_users, m_log, clock),
      m_reader(*m_serial, m_link, m_road),
      m_timeProgramme(m_archives, clock),
      m_passwords(m_archives)
{
    connect(&tmrRefresh, &QTimer::timeout, this, &Program::tmrRefresh_Timer);
    connect(&m_timeProgramme, &TimeProgramme::applied, this,
            [this](bool enabled) { m_serial->setRTSEnable(!enabled); });
    connect(&m_road, &EventRoad::recordReceived, &m_link, &LinkMonitor::recordReceived);
    connect(&m_link, &LinkMonitor::settingNotSaved, this, [this](const QString &key, const Fault &fault) {
        m_notices.post(Icon::Exclamation, {OwnText::SettingNotSaved, {key}, fault});
    });
}

Program::~Program()
{
    end();
}

std::optional<StartFault> Program::prepare(int systemLanguage, std::optional<int> port)
{
    m_texts.fill(systemLanguage);
    keepFilesPrivate();
    if (std::optional<StartFault> found = checkProgramFolder(m_folder))
        return found;
    if (std::optional<StartFault> held = holdFolders())
        return held;
    if (std::optional<StartFault> failed = prepareProgramFolder(m_archives, m_settings, systemLanguage, m_notices))
        return failed;
    m_texts.fill(m_settings.Lingua);
    // What is locked for the moment is waited for later, see StartSequence.
    if (m_passwords.load() == Passwords::Fault::RegisterUnusable)
        return StartFault{registerMessage(m_folder, m_passwords.reason())};
    if (const Result<void> read = m_users.open(); !read && read.fault().code == FaultCode::Damaged)
        return StartFault{registerMessage(m_folder, read.fault())};
    m_portToStore = port;
    m_settings.PortaCom = port.value_or(m_settings.PortaCom);
    return {};
}

/// Program folders may share their archives by links or mounts: both are held.
std::optional<StartFault> Program::holdFolders()
{
    for (const QString &name : {QString(), QStringView(ArchiveName::Folder).toString()}) {
        const QString folder = m_folder.path(name);
        const Result<void> taken = m_lock.take(folder);
        if (!taken && taken.fault().code == FaultCode::AlreadyInUse)
            return StartFault{{OwnText::FolderInUse, {folder}, {}}};
        // Archives on a share that keeps no locks can be worked with as before.
        if (!taken && name.isEmpty())
            return StartFault{{OwnText::FolderCannotBePrepared, {folder}, taken.fault()}};
    }
    return {};
}

void Program::load()
{
    m_running = true;
    readTimeProgramme(TimeProgramme::Part::Bands);
    readTimeProgramme(TimeProgramme::Part::Holidays);
    m_timeProgramme.run();
    m_log.open();
    tmrRefresh.start(refreshMilliseconds);
}

void Program::openLink()
{
    m_link.ApriCollegamento();
}

void Program::storePort()
{
    if (const std::optional<int> port = std::exchange(m_portToStore, {})) {
        if (const Result<void> saved = m_settings.save(QStringLiteral("COM"), *port); !saved)
            m_notices.post(Icon::Exclamation, {OwnText::SettingNotSaved, {QStringLiteral("COM")}, saved.fault()});
    }
}

void Program::end()
{
    if (!std::exchange(m_running, false))
        return;
    tmrRefresh.stop();
    // What has reached the program is stored: from the control, from a query, and from before the register was known.
    m_serial->deliverAll();
    m_link.end();
    m_serial->setRThreshold(0);
    readUsers();
    m_log.close();
    m_timeProgramme.end();
    // Last: nothing is kept waiting by it any more.
    m_printer.end();
}

void Program::readUsers()
{
    m_usersAreWanted = true;
    if (m_users.isKnown())
        return;
    const Result<void> read = m_users.open();
    if (read) {
        m_road.usersKnown();
    } else if (!std::exchange(m_usersFaultTold, true)) {
        m_notices.post(Icon::Critical, registerMessage(m_folder, read.fault()));
    }
}

void Program::reloadUsers()
{
    m_usersFaultTold = false;
    // Events that come before the new register has been read wait for it.
    m_users.forget();
    readUsers();
}

void Program::readTimeProgramme(TimeProgramme::Part part)
{
    const Result<void> read = m_timeProgramme.reload(part);
    if (read)
        return;
    const bool isBands = part == TimeProgramme::Part::Bands;
    const QStringView name = isBands ? ArchiveName::Bands : ArchiveName::Holidays;
    m_notices.post(Icon::Critical,
                   {isBands ? OwnText::BandsUnreadable : OwnText::HolidaysUnreadable, {name.toString()}, read.fault()});
}

void Program::reloadTimeProgramme(TimeProgramme::Part part)
{
    readTimeProgramme(part);
    m_timeProgramme.run();
}

void Program::tmrRefresh_Timer()
{
    Q_EMIT refreshing();
    if (m_usersAreWanted)
        readUsers();
    m_timeProgramme.readLocked();
    if (!m_log.changeDayIfNeeded() && !m_timeProgramme.isSuspended())
        m_timeProgramme.run();
}
