#include "link/PortTest.h"
#include "link/frmConfInt.h"
#include "link/frmImpCom.h"
#include "mainwindow/MDIForm1.h"
#include "prefs/frmMessage.h"
#include "widgets/ClientArea.h"

#include <QAccessible>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QShortcut>

// What the main window shows of the link, and the windows that belong to it.

namespace {

const char *lightFile(LinkState::Light light)
{
    switch (light) {
    case LinkState::Light::Grey:
        return "Led_G.bmp";
    case LinkState::Light::Green:
        return "Led_V.bmp";
    case LinkState::Light::Red:
        break;
    }
    return "Led_R.bmp";
}

} // namespace

void MDIForm1::connectLink()
{
    LinkMonitor &link = m_program.link();
    connect(&link, &LinkMonitor::stateChanged, this, &MDIForm1::showLink);
    connect(&link, &LinkMonitor::noPortChosen, this, [this] {
        m_menu.portIsMissing = true;
        applyMenu();
        whenTold([this] { openPortWindow(true); });
    });
    connect(&link, &LinkMonitor::portNotAvailable, this, [this](const Fault &fault) {
        QStringList sentences;
        const QList<Message> messages = portMessages(m_program.settings().PortaCom, fault);
        for (const Message &message : messages)
            sentences.append(m_program.texts().sentence(message));
        showCritical(sentences.join(QStringLiteral("\r\n")));
    });
    connect(&link, &LinkMonitor::queryEnded, this, [this](LinkMonitor::Purpose purpose, const InterfaceConfig &config) {
        if (purpose == LinkMonitor::Purpose::LinkStart && !config.answered() && m_program.serial().portOpen())
            showCritical(m_program.texts()[Text::InterfacciaNonCollegata]);
        if (purpose == LinkMonitor::Purpose::Window)
            showConfiguration(config);
    });
    connect(&link, &LinkMonitor::alarmRaised, this, &MDIForm1::raiseAlarm);
    connect(&link, &LinkMonitor::alarmEnded, this, [this] {
        if (m_alarm)
            m_alarm->close();
    });
}

void MDIForm1::showLink()
{
    const Texts &texts = m_program.texts();
    const LinkState state = m_program.link().state();
    const std::optional<Text> panel = state.panel();
    StatusBar1->showText(5, panel ? texts[*panel].toUpper().trimmed() : QString());
    StatusBar1->showPicture(6, pictureFile(lightFile(state.light())),
                            texts.sentence({state.words(), {}, {}}).trimmed());
    if (state.flashes() == tmrFlash.isActive())
        return;
    if (state.flashes()) {
        tmrFlash.start();
        return;
    }
    tmrFlash.stop();
    StatusBar1->invert(5, false);
    setWindowTitle(caption());
}

// The alarm ----------------------------------------------------------------------------------------------------------

void MDIForm1::raiseAlarm()
{
    if (m_alarm) {
        m_alarm->raise();
        return;
    }
    auto *message = new frmMessage(m_program.texts(), QPixmap(pictureFile("Warning.bmp")));
    connect(message, &ChildWindow::unloaded, this, &MDIForm1::objMessage_Chiudi);
    // Its frame lies before the client area, not in it: there a window gets the keyboard when it opens, and when the
    // one before it closes. The guard types on in his own; what he types must not close the alarm unseen.
    m_alarm = new QMdiSubWindow(this, Qt::SubWindow | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                          Qt::WindowCloseButtonHint);
    m_alarm->setWidget(message);
    m_alarm->setAttribute(Qt::WA_DeleteOnClose);
    m_alarm->setFocusPolicy(Qt::NoFocus);
    auto *turn = new QShortcut(Qt::CTRL | Qt::Key_Tab, this);
    connect(turn, &QShortcut::activated, this, &MDIForm1::turnToAlarm);
    connect(m_alarm, &QObject::destroyed, turn, &QObject::deleteLater);
    // Nothing but a client area tells a frame that the keyboard has left it.
    connect(qApp, &QApplication::focusChanged, m_alarm, [frame = m_alarm.data()](QWidget *, const QWidget *now) {
        QEvent left(QEvent::WindowDeactivate);
        if (now && !frame->isAncestorOf(now))
            QCoreApplication::sendEvent(frame, &left);
    });
    // A frame that is shown makes itself active, unless it is disabled.
    m_alarm->setEnabled(false);
    m_alarm->show();
    m_alarm->setEnabled(true);
    m_alarm->adjustSize();
    m_alarm->move((width() - m_alarm->width()) / 2, (height() - m_alarm->height()) / 3);
    keepAlarmInSight();
    QAccessibleEvent alert(message, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void MDIForm1::keepAlarmInSight()
{
    if (!m_alarm)
        return;
    const QRect area(m_area->mapTo(this, QPoint()), m_area->size());
    m_alarm->move(qMax(area.left(), qMin(m_alarm->x(), area.right() + 1 - m_alarm->width())),
                  qMax(area.top(), qMin(m_alarm->y(), area.bottom() + 1 - m_alarm->height())));
    m_alarm->raise();
}

/// The keyboard goes to the alarm, and from there to the next window.
void MDIForm1::turnToAlarm()
{
    if (!m_alarm)
        return;
    if (m_alarm->isAncestorOf(focusWidget())) {
        m_area->activateNextSubWindow();
        returnKeyboard();
    } else {
        qobject_cast<ChildWindow *>(m_alarm->widget())->takeKeyboard();
    }
}

/// Gives the keyboard to the window that is in front.
void MDIForm1::returnKeyboard()
{
    const QMdiSubWindow *frame = m_area->currentSubWindow();
    auto *window = frame ? qobject_cast<ChildWindow *>(frame->widget()) : nullptr;
    if (window)
        window->takeKeyboard();
    else
        m_area->setFocus();
}

void MDIForm1::objMessage_Chiudi()
{
    if (m_alarm && m_alarm->isAncestorOf(focusWidget()))
        returnKeyboard();
    m_alarm = nullptr;
    m_program.link().objMessage_Chiudi();
}

void MDIForm1::tmrFlash_Timer()
{
    keepAlarmInSight();
    QApplication::alert(this);
    const bool inverted = !StatusBar1->isInverted(5);
    StatusBar1->invert(5, inverted);
    setWindowTitle(inverted ? QStringLiteral("\u25CF ") + caption() : caption());
}

// Port and configuration ---------------------------------------------------------------------------------------------

void MDIForm1::mnuImpCom_Click()
{
    if (!child("frmImpCom"))
        m_program.link().suspend();
    openPortWindow(false);
}

void MDIForm1::openPortWindow(bool first)
{
    m_menu.portIsMissing = first;
    applyMenu();
    openOnce<frmImpCom>([this, first] {
        auto *test = new PortTest(m_program.ports(), m_program.clock());
        auto *window = new frmImpCom(m_program.texts(), m_messages, *test);
        test->setParent(window);
        window->setPrima(first);
        window->setConfiguredPort(m_program.settings().PortaCom);
        connect(window, &frmImpCom::Chiudi, this, &MDIForm1::objImpCom_Chiudi);
        connect(window, &frmImpCom::FineProgramma, this, &MDIForm1::end);
        return window;
    });
}

void MDIForm1::objImpCom_Chiudi(int port, frmImpCom::Esito outcome)
{
    if (m_ending)
        return;
    const bool isChosen = outcome == frmImpCom::Esito::Chosen;
    if (isChosen)
        m_menu.portIsMissing = false;
    applyMenu();
    m_program.link().objImpCom_Chiudi(isChosen ? std::optional(port) : std::nullopt);
}

void MDIForm1::mnuLetConfInt_Click()
{
    openOnce<frmConfInt>([this] {
        auto *window = new frmConfInt(m_program.texts(), m_messages);
        connect(window, &frmConfInt::Leggi, this, [this, window] {
            if (m_program.link().state().mayBeAsked())
                m_program.link().readConfiguration();
            else
                window->notOnLine();
        });
        connect(window, &ChildWindow::unloaded, this, [this] { m_program.link().configurationClosed(); });
        return window;
    });
}

void MDIForm1::showConfiguration(const InterfaceConfig &config)
{
    if (auto *window = qobject_cast<frmConfInt *>(child("frmConfInt")))
        window->configurationRead(config);
}
