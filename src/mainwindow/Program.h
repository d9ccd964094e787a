#pragma once

#include "archives/ArchiveStore.h"
#include "backup/DailyBackup.h"
#include "codes/UserDirectory.h"
#include "link/EventLog.h"
#include "link/EventRoad.h"
#include "link/LineReader.h"
#include "link/LinkMonitor.h"
#include "mainwindow/JournalKeeper.h"
#include "platform/Awake.h"
#include "prefs/Passwords.h"
#include "startup/CurrentPrinter.h"
#include "startup/ProgramPlaces.h"
#include "startup/Settings.h"
#include "startup/Startup.h"
#include "timeprog/TimeProgramme.h"

#include <QTimer>

#include <functional>
#include <memory>

/// All that the program consists of, in the order in which it stands on one another.
class Program : public QObject
{
    Q_OBJECT

public:
    /// Makes the program's serial control; a test gives one that notes what the device is told.
    using MakeSerial = std::function<std::unique_ptr<SerialControl>(const SerialPorts &)>;

    /// @param places      the folder exists; @param clock, @param printers must outlive this object
    /// @param makeSerial  null: a control of a real device
    Program(const ProgramPlaces &places, const Clock &clock, const Printers &printers,
            const MakeSerial &makeSerial = {}, QObject *parent = nullptr);
    ~Program() override;

    /// Prepares the program folder, reads the settings, chooses the language and reads the register through.
    /// @param port  COM number to choose as the port dialog would, if any
    /// @return why the program cannot run; what was there in the folder has not been changed then
    std::optional<StartFault> prepare(int systemLanguage, std::optional<int> port);
    /// Opens the archives and applies the time programme. Events wait undecided until readUsers().
    void load();
    /// Opens the link to the interface.
    void openLink();
    /// From now on the PC is kept awake while the port is open. When it has slept all the same everything is looked at
    /// anew, and the operator is told for how long nothing was received. @param awake  one of the two may go first
    void keepAwake(Awake &awake);
    /// Reads the register in turns, unless it is known; until it has been read events wait undecided. When it cannot be
    /// the operator is told, and it is read again every ten seconds until it can.
    void readUsers();
    /// The gate has been passed: stores the port that prepare() was given.
    void storePort();
    /// An editor of bands or holidays has closed: reads its archive anew, evaluates and applies.
    void reloadTimeProgramme(TimeProgramme::Part part);
    /// The register has been saved anew: events are checked against it from now on. It is read from its beginning when
    /// it is saved again meanwhile, see readUsers().
    void reloadUsers();
    /// Stores what can be stored, closes the archives and releases the RTS line.
    void end();

    Texts &texts() { return m_texts; }
    Notices &notices() { return m_notices; }
    Settings &settings() { return m_settings; }
    CurrentPrinter &printer() { return m_printer; }
    ProgramFolder &folder() { return m_folder; }
    ArchiveStore &archives() { return m_archives; }
    const Clock &clock() const { return m_clock; }
    const SerialPorts &ports() const { return m_ports; }
    SerialControl &serial() { return *m_serial; }
    LinkMonitor &link() { return m_link; }
    EventLog &log() { return m_log; }
    EventRoad &road() { return m_road; }
    TimeProgramme &timeProgramme() { return m_timeProgramme; }
    Passwords &passwords() { return m_passwords; }
    DailyBackup &backup() { return m_backup; }
    Journal &journal() { return m_journal; }
    JournalKeeper &keeper() { return m_keeper; }
    const UserDirectory &users() const { return m_users; }
    /// Path of a picture of the program folder, for who loads it.
    QString picture(const char *name) const
    {
        return m_folder.fileToOpen(QStringLiteral("Immagini/") + QLatin1String(name));
    }

    QTimer tmrRefresh; ///< 10 s: change of day, time programme

Q_SIGNALS:
    /// A tick of tmrRefresh begins.
    void refreshing();

private:
    std::optional<StartFault> holdFolders();
    void keepDevice(int port);
    void woke(qint64 milliseconds);
    std::optional<StartFault> hold(const QString &folder);
    void tmrRefresh_Timer();
    void tmrUsers_Timer();
    void usersRead(const Result<void> &read);
    void readTimeProgramme(TimeProgramme::Part part);

    const Clock &m_clock;
    Disk m_disk;
    ProgramFolder m_folder;
    FolderLock m_lock;
    Notices m_notices;
    Texts m_texts;
    Settings m_settings;
    CurrentPrinter m_printer;
    ArchiveStore m_archives;
    SerialPorts m_ports;
    std::unique_ptr<SerialControl> m_serial;
    LinkMonitor m_link;
    UserDirectory m_users;
    EventLog m_log;
    EventRoad m_road;
    LineReader m_reader;
    TimeProgramme m_timeProgramme;
    Passwords m_passwords;
    DailyBackup m_backup;
    Journal m_journal;
    JournalKeeper m_keeper;
    std::optional<int> m_portToStore;
    bool m_running = false;
    bool m_usersAreWanted = false; ///< readUsers() has been called
    bool m_usersFaultTold = false;
    QTimer tmrUsers; ///< turns of reading the users
};
