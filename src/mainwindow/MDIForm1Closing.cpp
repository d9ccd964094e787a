#include "mainwindow/MDIForm1.h"

#include "prefs/Splash.h"

#include <QCloseEvent>
#include <QMdiSubWindow>

#include <algorithm>

// How the program ends: the windows first, and by the answers of those that ask.

void MDIForm1::end()
{
    m_ending = true;
    close();
}

/// All windows that are open, the last one opened first: it may have been opened by another, which waits for it. The
/// alarm is not among them: it has nothing to save, and must not count as seen when the end is called off.
QList<ChildWindow *> MDIForm1::openWindows() const
{
    QList<ChildWindow *> open = findChildren<ChildWindow *>();
    if (m_alarm)
        open.removeOne(qobject_cast<ChildWindow *>(m_alarm->widget()));
    std::sort(open.begin(), open.end(), [](const ChildWindow *a, const ChildWindow *b) {
        return a->property(OpenedAs).toInt() > b->property(OpenedAs).toInt();
    });
    return open;
}

bool MDIForm1::closeForSession(bool mayAsk)
{
    // Nobody can be asked to give the password, or to choose a port, first. The gate stays closed: the session may go
    // on.
    if (m_menu.gateIsClosed || m_menu.portIsMissing)
        return true;
    const QList<ChildWindow *> open = openWindows();
    // A window that does not close asks the operator what becomes of his work, or is at work itself.
    return std::all_of(open.begin(), open.end(),
                       [mayAsk](ChildWindow *window) { return closeChild(window) || !mayAsk; }) &&
           !(mayAsk && asksAboutEvents());
}

bool MDIForm1::closeChild(ChildWindow *window)
{
    // A window in the client area closes with its frame, one of its own by itself.
    QWidget *frame = qobject_cast<QMdiSubWindow *>(window->parentWidget());
    return (frame ? frame : window)->close();
}

void MDIForm1::closeRefused()
{
    m_closeAgain = false;
    m_endIsAgreed = false;
}

/// Asks whether supervision may end, before any window asks what becomes of its work.
void MDIForm1::askToEnd()
{
    m_boxIsShown = true;
    m_messages.ask(this, m_program.texts()[OwnText::AskEndSupervision], Messages::Buttons::YesNo,
                   [this](Messages::Answer answer) {
                       m_boxIsShown = false;
                       m_endIsAsked = false;
                       m_endIsAgreed = answer == Messages::Answer::Yes;
                       if (m_endIsAgreed)
                           close();
                       showNext();
                   });
}

void MDIForm1::closeEvent(QCloseEvent *event)
{
    const bool isHeld = !isEnabled() || !menuState(m_menu)[TopMenu::File];
    if (!m_ending && isHeld) {
        event->ignore();
        return;
    }
    if (!m_ending && !m_endIsAgreed && m_program.serial().portOpen()) {
        event->ignore();
        if (!std::exchange(m_endIsAsked, true))
            whenTold([this] { askToEnd(); });
        return;
    }
    const QList<ChildWindow *> open = openWindows();
    for (ChildWindow *window : open) {
        if (m_ending) {
            window->unload();
            continue;
        }
        // When it asks the operator first, this window closes when it has; when it refuses at once, nothing follows.
        m_closeAgain = true;
        if (!closeChild(window)) {
            event->ignore();
            return;
        }
        m_closeAgain = false;
    }
    if (!m_ending && asksAboutEvents()) {
        event->ignore();
        return;
    }
    tmrShow.stop();
    tmrFlash.stop();
    if (m_splash)
        m_splash->close();
    m_start.end();
    if (tellsWhatIsLeft()) {
        event->ignore();
        return;
    }
    event->accept();
    Q_EMIT unloaded();
}
