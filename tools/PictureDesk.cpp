#include "PictureDesk.h"

#include "archives/Tables.h"
#include "codes/EventRow.h"
#include "mainwindow/Demonstration.h"
#include "simulator/Records.h"
#include "widgets/StatusPanels.h"

#include <QAction>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>

#include <array>
#include <cstdio>

namespace {

constexpr int mostMilliseconds = 60'000;
constexpr int mostSecondsToAlarm = 300;
constexpr int port = 7;
constexpr int linkWords = 5; ///< panel of the status bar
/// Wide enough for the search, small enough to be read when it is printed.
constexpr QSize windowSize(960, 480);

/// No printer, whatever is installed where the program is built.
class NoPrinters : public PrintSystem
{
public:
    Result<PrinterList> list() const override { return PrinterList(); }
    Result<Paper> paper(const QString &) const override { return Paper(); }
};

struct InventedEvent {
    int daysAgo;
    const char *time;
    const char *code;
    CodeType type;
    const char *channel;
    bool channelWasDisabled = false;
    bool interfaceWasDisabled = false;
};

constexpr auto tx = CodeType::Transmitter, dks = CodeType::Keypad;
constexpr std::array events = {
    InventedEvent{2, "07:41:03", "12345", tx, "A"},
    InventedEvent{2, "07:52:37", "777", dks, "B"},
    InventedEvent{2, "08:03:11", "1048577", tx, "A"},
    InventedEvent{2, "12:02:45", "12346", tx, "C", true},
    InventedEvent{2, "18:34:20", "777", dks, "B", false, true},
    InventedEvent{1, "07:38:52", "12345", tx, "A"},
    InventedEvent{1, "07:55:08", "16777216", tx, "A"},
    InventedEvent{1, "08:10:26", "4711", dks, "D"},
    InventedEvent{1, "13:29:14", "12346", tx, "C", true},
    InventedEvent{1, "17:58:33", "1048577", tx, "A"},
    InventedEvent{0, "06:58:41", "16777216", tx, "A", false, true},
    InventedEvent{0, "07:36:19", "12345", tx, "A"},
    InventedEvent{0, "07:49:02", "777", dks, "B"},
    InventedEvent{0, "08:01:55", "1048577", tx, "A"},
    InventedEvent{0, "08:22:30", "12346", tx, "C", true},
    InventedEvent{0, "09:05:47", "4711", dks, "D"},
};

template<class T>
T taken(Result<T> result)
{
    if (!result)
        giveUp(result.fault().subject);
    return std::move(result.value());
}

void done(const Result<void> &result)
{
    if (!result)
        giveUp(result.fault().subject);
}

Database archive(ArchiveStore &archives, QStringView name, QStringView likeTemplate)
{
    if (!archives.exists(name))
        done(archives.copy(likeTemplate, name));
    return taken(archives.open(name, Database::Use::ThrowAway));
}

void inventEvents(ArchiveStore &archives, QDate today)
{
    const QString insert =
        QStringLiteral("INSERT INTO Eventi (%1) VALUES (?,?,?,?,?,?,?,?)").arg(QLatin1String(EventRow::Columns));
    for (const InventedEvent &invented : events) {
        Event event;
        event.Codice = QString::fromLatin1(invented.code);
        event.Data = today.addDays(-invented.daysAgo);
        event.Ora = QTime::fromString(QString::fromLatin1(invented.time), QStringLiteral("HH:mm:ss"));
        event.Tipo = invented.type;
        event.Canale = QString::fromLatin1(invented.channel);
        event.AbCh = invented.channelWasDisabled;
        event.KorDis = invented.interfaceWasDisabled;
        Database database = archive(archives, ArchiveName::events(event.Data), ArchiveName::EventsTemplate);
        done(database.execute(insert, EventRow::values(event)));
    }
}

void inventTimeProgramme(ArchiveStore &archives)
{
    Database bands = archive(archives, ArchiveName::Bands, ArchiveName::BandsTemplate);
    done(bands.execute("INSERT INTO Fascie VALUES ('X','X','X','X','X','','','07:30','12:00'),"
                       "('X','X','X','X','X','','','13:30','18:00'), ('','','','','','X','','08:00','12:00')"));
    Database holidays = archive(archives, ArchiveName::Holidays, ArchiveName::HolidaysTemplate);
    done(holidays.execute("INSERT INTO Giorni VALUES ('06/04/2026','06/04/2026','20260406','20260406'),"
                          "('10/08/2026','21/08/2026','20260810','20260821'),"
                          "('24/12/2026','06/01/2027','20261224','20270106')"));
}

void writeSettings(const QString &folder, int language)
{
    QFile file(folder + QLatin1Char('/') + Settings::fileName());
    if (!file.open(QIODevice::WriteOnly))
        giveUp(file.fileName());
    file.write("COM=" + QByteArray::number(port) + "\r\nLINGUA=" + QByteArray::number(language) +
               "\r\nCHECK=1\r\nNUMEVOD=25\r\nPRN=-1\r\nPRTC=0\r\nBKPFOLDER=/media/kor\r\nBKPTIME=02:00\r\n"
               "BKPLAST=2026-03-06 02:00:07\r\n");
}

} // namespace

void giveUp(const QString &why)
{
    std::fprintf(stderr, "kor-make-window-pictures: %s\n", qPrintable(why));
    std::_Exit(1);
}

void waitFor(const std::function<bool()> &hasCome, const char *what)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!hasCome()) {
        if (elapsed.hasExpired(mostMilliseconds))
            giveUp(QStringLiteral("%1 does not come").arg(QLatin1String(what)));
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
}

Result<void> InventedInterface::open(const QString &device)
{
    m_device = device;
    m_isOpen = true;
    return {};
}

Result<void> InventedInterface::write(const QByteArray &bytes)
{
    m_asked += bytes;
    if (!isOn || !m_asked.endsWith("&IC"))
        return {};
    m_asked.clear();
    m_waiting += simulator::replyBytes({}, simulator::ReplyFault::None);
    QMetaObject::invokeMethod(this, &Transport::readyRead, Qt::QueuedConnection);
    return {};
}

PictureDesk::PictureDesk(const QString &installation, int language) : m_printers(std::make_shared<NoPrinters>())
{
    done(Demonstration::layFolder(m_folder.path(), installation));
    writeSettings(m_folder.path(), language);
    {
        Disk disk;
        ProgramFolder folder(m_folder.path(), disk);
        ArchiveStore archives(folder);
        inventEvents(archives, m_clock.date());
        inventTimeProgramme(archives);
    }
    m_program = std::make_unique<Program>(ProgramPlaces{m_folder.path(), installation}, m_clock, m_printers,
                                          [this](const SerialPorts &ports) {
                                              auto transport = std::make_unique<InventedInterface>();
                                              m_interface = transport.get();
                                              return std::make_unique<SerialControl>(ports, std::move(transport));
                                          });
    if (const std::optional<StartFault> fault = m_program->prepare(language, {}))
        giveUp(m_program->texts().sentence(fault->message));
    m_window = std::make_unique<MDIForm1>(*m_program, m_boxes);
    m_window->load();
    m_window->setWindowState(Qt::WindowNoState);
    m_window->resize(windowSize);
    m_window->findChild<QTimer *>(QStringLiteral("tmrShow"))->start(0);
    waitFor([this] { return m_window->isEnabled() && m_program->link().link() == LinkMonitor::Link::Answering; },
            "an interface on line");
    waitFor([this] { return m_window->isActiveWindow(); }, "the active window");
}

PictureDesk::~PictureDesk()
{
    m_window->end();
}

ChildWindow *PictureDesk::choose(const char *name)
{
    const QList<ChildWindow *> before = m_window->findChildren<ChildWindow *>();
    auto *entry = m_window->findChild<QAction *>(QLatin1String(name));
    if (!entry || !entry->isEnabled())
        giveUp(QStringLiteral("no entry %1 to choose").arg(QLatin1String(name)));
    entry->trigger();
    const QList<ChildWindow *> after = m_window->findChildren<ChildWindow *>();
    for (ChildWindow *window : after) {
        if (!before.contains(window))
            return window;
    }
    giveUp(QStringLiteral("%1 opens nothing").arg(QLatin1String(name)));
}

void PictureDesk::raiseAlarm()
{
    m_interface->isOn = false;
    const auto *bar = m_window->findChild<StatusPanels *>();
    const auto isRaised = [this] { return m_window->findChild<QTimer *>(QStringLiteral("tmrFlash"))->isActive(); };
    for (int seconds = 0; !isRaised(); ++seconds) {
        if (seconds > mostSecondsToAlarm)
            giveUp(QStringLiteral("no alarm"));
        m_clock.milliseconds += 1000;
        m_program->link().wake();
        QCoreApplication::processEvents();
    }
    waitFor([bar] { return bar->isInverted(linkWords); }, "the flashing state");
}
