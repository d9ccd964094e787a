#include "mainwindow/Program.h"

#include "archives/Tables.h"

namespace {

constexpr int refreshMilliseconds = 10'000;

} // namespace

Program::Program(const QString &folder, const Clock &clock, const Printers &printers, QObject *parent)
    : QObject(parent),
      m_folder(folder, m_disk),
      m_settings(m_folder, printers),
      m_archives(m_folder),
      m_ports(m_folder),
      m_serial(m_ports),
      m_link(m_serial, m_settings, clock),
      m_users(m_archives),
      m_log(m_archives, clock, m_notices),
      m_road(m_users, m_log, clock),
      m_reader(m_serial, m_link, m_road)
{
    connect(&tmrRefresh, &QTimer::timeout, this, &Program::tmrRefresh_Timer);
    connect(&m_road, &EventRoad::notStored, this, [this](const Event &event, const Fault &fault) {
        m_notices.post(Icon::Critical, {OwnText::EventNotStored, {event.Codice}, fault});
    });
    connect(&m_link, &LinkMonitor::settingNotSaved, this, [this](const QString &key, const Fault &fault) {
        m_notices.post(Icon::Exclamation, {OwnText::SettingNotSaved, {key}, fault});
    });
}

Program::~Program()
{
    m_log.close();
    m_serial.setRTSEnable(false);
}

std::optional<StartFault> Program::prepare(int systemLanguage, std::optional<int> port)
{
    m_texts.fill(systemLanguage);
    keepFilesPrivate();
    if (std::optional<StartFault> found = checkProgramFolder(m_folder))
        return found;
    if (const Result<void> taken = m_lock.take(m_folder.root()); !taken)
        return StartFault{{OwnText::FolderInUse, {m_folder.root()}, {}}};
    if (std::optional<StartFault> failed = prepareProgramFolder(m_archives, m_settings, systemLanguage, m_notices))
        return failed;
    m_texts.fill(m_settings.Lingua);
    if (port) {
        m_settings.PortaCom = *port;
        if (const Result<void> saved = m_settings.save(QStringLiteral("COM"), *port); !saved)
            m_notices.post(Icon::Exclamation, {OwnText::SettingNotSaved, {QStringLiteral("COM")}, saved.fault()});
    }
    return {};
}

void Program::run()
{
    if (const Result<void> read = m_users.refresh(); !read) {
        const QString name = QStringView(ArchiveName::Users).toString();
        m_notices.post(Icon::Critical, {OwnText::UsersUnreadable, {name}, read.fault()});
    }
    m_log.open();
    tmrRefresh.start(refreshMilliseconds);
    m_link.ApriCollegamento();
}

void Program::tmrRefresh_Timer()
{
    m_log.changeDayIfNeeded();
}
