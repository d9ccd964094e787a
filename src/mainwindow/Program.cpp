#include "mainwindow/Program.h"

#include "archives/Tables.h"
#include "startup/Version.h"
#include "texts/DateTimeText.h"
#include "texts/OwnText.h"

namespace {

constexpr int refreshMilliseconds = 10'000;
constexpr int turnMilliseconds = 15;
constexpr qint64 second = 1000;

/// "h:mm:ss"
QString duration(qint64 milliseconds)
{
    const auto twoDigits = [](qint64 value) { return QString::number(value).rightJustified(2, QLatin1Char('0')); };
    const qint64 seconds = milliseconds / second;
    return QStringList{QString::number(seconds / 3600), twoDigits(seconds / 60 % 60), twoDigits(seconds % 60)}.join(
        QLatin1Char(':'));
}

} // namespace

Program::Program(const ProgramPlaces &places, const Clock &clock, const Printers &printers,
                 const MakeSerial &makeSerial, QObject *parent)
    : QObject(parent),
      m_clock(clock),
      m_folder(places.folder, m_disk, places.installation),
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
      m_passwords(m_archives),
      m_backup(m_archives, m_settings, clock),
      m_journal(m_archives, clock, m_notices),
      m_keeper(m_journal, clock)
{
    m_keeper.watch(m_link, m_settings);
    m_keeper.watch(m_road, m_log);
    m_keeper.watch(m_timeProgramme);
    m_keeper.watch(m_backup);
    m_keeper.watch(m_settings);
    connect(&tmrRefresh, &QTimer::timeout, this, &Program::tmrRefresh_Timer);
    connect(&tmrUsers, &QTimer::timeout, this, &Program::tmrUsers_Timer);
    connect(&m_timeProgramme, &TimeProgramme::applied, this,
            [this](bool enabled) { m_serial->setRTSEnable(!enabled); });
    connect(&m_road, &EventRoad::recordReceived, &m_link, &LinkMonitor::recordReceived);
    connect(&m_link, &LinkMonitor::portChosen, this, &Program::keepDevice);
    connect(&m_link, &LinkMonitor::settingNotSaved, this, [this](const QString &key, const Fault &fault) {
        m_notices.post(Icon::Exclamation, {OwnText::SettingNotSaved, {key}, fault});
    });
    connect(&m_backup, &DailyBackup::toTell, this,
            [this](const Message &message) { m_notices.post(Icon::Exclamation, message); });
}

Program::~Program()
{
    end();
}

std::optional<StartFault> Program::prepare(int systemLanguage, std::optional<int> port)
{
    m_texts.fill(m_settings.storedLanguage(systemLanguage));
    keepFilesPrivate();
    if (std::optional<StartFault> found = checkProgramFolder(m_folder))
        return found;
    if (std::optional<StartFault> failed = holdFolders())
        return failed;
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
    if (std::optional<StartFault> failed = hold(m_folder.root()))
        return failed;
    if (std::optional<StartFault> failed = makeArchiveFolder(m_folder))
        return failed;
    return hold(m_folder.path(QStringView(ArchiveName::Folder).toString()));
}

std::optional<StartFault> Program::hold(const QString &folder)
{
    const Result<void> taken = m_lock.take(folder);
    if (!taken && taken.fault().code == FaultCode::AlreadyInUse)
        return StartFault{{OwnText::FolderInUse, {folder}, {}}};
    // Archives on a share that keeps no locks can be worked with as before.
    if (!taken && folder == m_folder.root())
        return StartFault{{OwnText::FolderCannotBePrepared, {folder}, taken.fault()}};
    return {};
}

void Program::load()
{
    m_running = true;
    m_journal.begin(programVersion());
    readTimeProgramme(TimeProgramme::Part::Bands);
    readTimeProgramme(TimeProgramme::Part::Holidays);
    m_timeProgramme.run();
    m_log.open();
    m_backup.readPlan();
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
        keepDevice(*port);
    }
}

void Program::keepAwake(Awake &awake)
{
    connect(m_serial.get(), &SerialControl::openChanged, &awake, [this, &awake](bool isOpen) {
        if (isOpen)
            awake.hold(m_texts[OwnText::AwakeReason]);
        else
            awake.release();
    });
    connect(this, &Program::refreshing, &awake, &Awake::look);
    m_keeper.watch(awake);
    connect(&awake, &Awake::woke, this, &Program::woke);
}

void Program::woke(qint64 milliseconds)
{
    if (!m_running)
        return;
    if (milliseconds >= second) {
        const QDateTime since = m_clock.now().addMSecs(-milliseconds);
        m_notices.post(Icon::Exclamation, {OwnText::ComputerSlept, {duration(milliseconds), dayAndTime(since)}, {}});
    }
    tmrRefresh_Timer();
    // A tick that changes the day leaves the time programme to the next one.
    if (!m_timeProgramme.isSuspended())
        m_timeProgramme.run();
    m_link.lookAgain();
}

void Program::keepDevice(int port)
{
    if (const Result<void> kept = m_ports.keepDevice(port); !kept)
        m_notices.post(Icon::Exclamation, {OwnText::PortLinkNotMade, {kept.fault().subject}, kept.fault()});
}

void Program::end()
{
    if (!std::exchange(m_running, false))
        return;
    tmrRefresh.stop();
    m_backup.stop();
    // What has reached the program is stored: from the control, from a query, and from before the register was known.
    m_serial->deliverAll();
    m_link.end();
    const qint64 stopped = m_clock.monotonic();
    m_serial->setRThreshold(0);
    tmrUsers.stop();
    if (!m_users.isKnown())
        usersRead(m_users.open());
    m_keeper.stop();
    m_log.close();
    m_timeProgramme.end();
    m_journal.end(m_clock.monotonic() - stopped);
    // Last: nothing is kept waiting by it any more.
    m_printer.end();
}

void Program::readUsers()
{
    m_usersAreWanted = true;
    if (tmrUsers.isActive())
        return;
    if (m_users.isKnown())
        return usersRead({});
    if (const Result<void> begun = m_users.begin(); !begun)
        return usersRead(begun);
    // Most registers are read in the first turn.
    tmrUsers.start(0);
    tmrUsers_Timer();
}

void Program::tmrUsers_Timer()
{
    const Result<bool> read = m_users.step(QDeadlineTimer(turnMilliseconds));
    if (read && !read.value())
        return;
    tmrUsers.stop();
    usersRead(read ? Result<void>() : Result<void>(read.fault()));
}

void Program::usersRead(const Result<void> &read)
{
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
    tmrUsers.stop();
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
    if (m_usersAreWanted && !m_users.isKnown())
        readUsers();
    m_timeProgramme.readLocked();
    if (!m_log.changeDayIfNeeded() && !m_timeProgramme.isSuspended())
        m_timeProgramme.run();
    m_backup.look();
}
