#include "mainwindow/MDIForm1.h"

#include "link/frmConfInt.h"
#include "prefs/Splash.h"
#include "prefs/frmMessage.h"
#include "widgets/ClientArea.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QScreen>
#include <QSessionManager>
#include <QShortcutEvent>

#include <algorithm>

// The main window from its start to its end; the windows that it opens are in MDIForm1Windows.cpp.

namespace {

constexpr int showMilliseconds = 1000;

} // namespace

MDIForm1::MDIForm1(Program &program, Messages &messages, QWidget *parent)
    : QMainWindow(parent),
      m_program(program),
      m_messages(messages),
      m_start(program, *this),
      m_area(new ClientArea(program.settings(), this)),
      m_windows(*m_area),
      m_menu(*menuBar(), program.texts(), [this] { return menuInput(); }),
      m_display(program, *this),
      m_boxes(*this, {messages, program.notices(), program.texts()}),
      m_closing(program, m_boxes),
      m_register(program, messages, m_windows, this),
      m_alarm(*this, *m_area)
{
    setObjectName(QStringLiteral("MDIForm1"));
    m_area->setObjectName(QStringLiteral("Client"));
    // When a window closes, the one that was in front before it comes back.
    m_area->setActivationOrder(QMdiArea::ActivationHistoryOrder);
    setCentralWidget(m_area);
    buildMenu();
    tmrShow.setParent(this);
    tmrShow.setObjectName(QStringLiteral("tmrShow"));
    tmrShow.setSingleShot(true);
    connect(&tmrShow, &QTimer::timeout, this, &MDIForm1::tmrShow_Timer);
    connectParts();
    connectLink();
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager &manager) {
        if (!closeForSession(manager.allowsInteraction()))
            manager.cancel();
    });
    qApp->installEventFilter(this);
}

MDIForm1::~MDIForm1()
{
    // What they tell when they go is heard while there is somebody to hear it.
    m_windows.clear();
    delete m_splash;
}

void MDIForm1::connectParts()
{
    connect(&m_windows, &WindowSet::changed, &m_menu, &MainMenu::applyState);
    connect(&m_windows, &WindowSet::closeRefused, this, &MDIForm1::closeRefused);
    connect(&m_windows, &WindowSet::gone, this, [this] {
        if (std::exchange(m_closeAgain, false))
            QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    });
    connect(&m_register, &RegisterEntries::passwordWanted, this,
            [this] { openPasswordWindow(Passwords::Type::Users, false); });
    connect(&m_closing, &ClosingQuestions::mayGoOn, this, &QWidget::close);
    connect(&m_closing, &ClosingQuestions::calledOff, this, &MDIForm1::closeRefused);
    connect(&m_display, &StatusDisplay::flashed, &m_alarm, &AlarmFrame::keepInSight);
    connect(&m_alarm, &AlarmFrame::closed, &m_program.link(), &LinkMonitor::objMessage_Chiudi);
}

void MDIForm1::connectLink()
{
    LinkMonitor &link = m_program.link();
    connect(&link, &LinkMonitor::noPortChosen, this, [this] {
        m_menu.applyState();
        m_boxes.whenTold([this] { openPortWindow(true); });
    });
    connect(&link, &LinkMonitor::portNotAvailable, this, [this](const Fault &fault) {
        QStringList sentences;
        const QList<Message> messages = portMessages(m_program.settings().PortaCom, fault);
        for (const Message &message : messages)
            sentences.append(m_program.texts().sentence(message));
        m_boxes.tell(sentences.join(QStringLiteral("\r\n")));
    });
    connect(&link, &LinkMonitor::queryEnded, this, [this](LinkMonitor::Purpose purpose, const InterfaceConfig &config) {
        if (purpose == LinkMonitor::Purpose::LinkStart && !config.answered() && m_program.serial().portOpen())
            m_boxes.tell(m_program.texts()[Text::InterfacciaNonCollegata]);
        auto *window = m_windows.find<frmConfInt>();
        if (purpose == LinkMonitor::Purpose::Window && window)
            window->configurationRead(config);
    });
    connect(&link, &LinkMonitor::alarmRaised, this, &MDIForm1::raiseAlarm);
    connect(&link, &LinkMonitor::alarmEnded, &m_alarm, &AlarmFrame::close);
}

void MDIForm1::raiseAlarm()
{
    if (m_alarm.isRaised())
        m_alarm.keepInSight();
    else
        m_alarm.raise(new frmMessage(m_program.texts(), QPixmap(m_program.picture("Warning.bmp"))));
}

// The start ----------------------------------------------------------------------------------------------------------

void MDIForm1::load()
{
    m_translation.apply(m_program.texts().language());
    QApplication::setWindowIcon(QIcon(QPixmap(m_program.picture("Icon.png"))));
    setGeometry(screen()->availableGeometry());
    setWindowState(Qt::WindowMaximized);
    setEnabled(false);
    m_splash = new Splash(QPixmap(m_program.picture("Splash.bmp")));
    m_splash->setAttribute(Qt::WA_DeleteOnClose);
    m_splash->show();
    applyTexts();
    show();
    m_splash->raise();
    m_start.load();
    tmrShow.start(showMilliseconds);
}

void MDIForm1::tmrShow_Timer()
{
    setEnabled(true);
    if (m_splash)
        m_splash->close();
    m_boxes.showNext();
    m_start.run();
}

void MDIForm1::applyTexts()
{
    m_messages.setTitle(m_program.texts()[Text::InterfacciaMultiprotocollo]);
    m_menu.applyTexts();
    m_menu.applyState();
    m_display.applyTexts();
}

void MDIForm1::translate()
{
    m_translation.apply(m_program.texts().language());
    m_isCountChosen = false;
    applyTexts();
    // The message of the alarm and a question for a password are among them, whoever frames them.
    const QList<ChildWindow *> open = findChildren<ChildWindow *>();
    for (ChildWindow *window : open) {
        window->translate();
        m_area->makeRoom(window);
    }
}

void MDIForm1::tellTriedAgain(const Message &why)
{
    m_display.setRegisterWait(why);
}

void MDIForm1::askPassword()
{
    m_display.setRegisterWait({});
    applyTexts();
    openPasswordWindow(Passwords::Type::Main, false);
}

void MDIForm1::refuse(const Message &why)
{
    m_display.setRegisterWait({});
    m_boxes.tell(m_program.texts().sentence(why), [this] { leave(); });
}

void MDIForm1::passed()
{
    m_display.setRegisterWait({});
    applyTexts();
}

// The end: the windows first, and by the answers of those that ask ---------------------------------------------------

void MDIForm1::end()
{
    m_isHeldUp = true;
    leave();
}

void MDIForm1::leave()
{
    m_ending = true;
    close();
}

bool MDIForm1::eventFilter(QObject *watched, QEvent *event)
{
    // A session that ends for good, after it could be called off, asks nobody any more.
    if (event->type() == QEvent::Quit && watched == qApp && isVisible()) {
        end();
        return true;
    }
    // Where a menu and a button have the same access key, the button of the window in front is meant; the menus can be
    // reached by the Alt key alone as well.
    if (event->type() == QEvent::Shortcut && watched == menuBar()) {
        ChildWindow *window = m_windows.inFront();
        if (window && window->pressByKey(static_cast<QShortcutEvent *>(event)->key()))
            return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

bool MDIForm1::closeForSession(bool mayAsk)
{
    // Nobody can be asked to give the password, or to choose a port, first. The gate stays closed: the session may go
    // on.
    const MenuInput input = menuInput();
    if (input.gateIsClosed || input.portIsMissing)
        return true;
    const QList<ChildWindow *> open = m_windows.lastFirst();
    // A window that does not close asks the operator what becomes of his work, or is at work itself.
    return std::all_of(open.begin(), open.end(),
                       [mayAsk](ChildWindow *window) { return WindowSet::close(window) || !mayAsk; }) &&
           (!mayAsk || m_closing.mayEventsBeLost());
}

void MDIForm1::closeRefused()
{
    m_closeAgain = false;
    m_closing.forget();
}

/// @return false when one stays open
bool MDIForm1::closeWindows()
{
    const QList<ChildWindow *> open = m_windows.lastFirst();
    for (ChildWindow *window : open) {
        if (m_ending) {
            window->unload();
            continue;
        }
        // When it asks the operator first, this window closes when it has; when it refuses at once, nothing follows.
        m_closeAgain = true;
        if (!WindowSet::close(window))
            return false;
        m_closeAgain = false;
    }
    return true;
}

void MDIForm1::closeEvent(QCloseEvent *event)
{
    event->ignore();
    const MenuInput input = menuInput();
    const bool isHeld = !isEnabled() || input.gateIsClosed || input.portIsMissing;
    if (!m_ending && (isHeld || !m_closing.maySupervisionEnd()))
        return;
    if (!closeWindows() || (!m_ending && !m_closing.mayEventsBeLost()))
        return;
    tmrShow.stop();
    m_display.stop();
    if (m_splash)
        m_splash->close();
    m_start.end();
    if (m_closing.tellRest(m_isHeldUp)) {
        m_ending = true;
        return;
    }
    event->accept();
    Q_EMIT unloaded();
}
