#include "mainwindow/MDIForm1.h"

#include "prefs/Splash.h"

#include <QCloseEvent>
#include <QMdiSubWindow>
#include <QSessionManager>

#include <algorithm>

// How the program ends: the windows first, and by the answers of those that ask.

void MDIForm1::end()
{
    m_ending = true;
    close();
}

/// All windows that are open, the last one opened first: it may have been opened by another, which waits for it.
QList<ChildWindow *> MDIForm1::openWindows() const
{
    QList<ChildWindow *> open = findChildren<ChildWindow *>();
    std::sort(open.begin(), open.end(), [](const ChildWindow *a, const ChildWindow *b) {
        return a->property(OpenedAs).toInt() > b->property(OpenedAs).toInt();
    });
    return open;
}

void MDIForm1::sessionEnds(QSessionManager &manager)
{
    // At the gate nobody can be asked to give the password first.
    if (m_menu.gateIsClosed) {
        m_ending = true;
        return;
    }
    const QList<ChildWindow *> open = openWindows();
    for (ChildWindow *window : open) {
        if (closeChild(window) || !manager.allowsInteraction())
            continue;
        // It asks the operator what becomes of his work, or is at work itself; the session goes on.
        manager.cancel();
        return;
    }
    if (manager.allowsInteraction() && asksAboutEvents())
        manager.cancel();
}

bool MDIForm1::closeChild(ChildWindow *window)
{
    // A window in the client area closes with its frame, one of its own by itself.
    QWidget *frame = qobject_cast<QMdiSubWindow *>(window->parentWidget());
    return (frame ? frame : window)->close();
}

void MDIForm1::closeEvent(QCloseEvent *event)
{
    const bool isHeld = !isEnabled() || !menuState(m_menu)[TopMenu::File];
    if (!m_ending && isHeld) {
        event->ignore();
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
    m_program.end();
    if (tellsWhatIsLeft()) {
        event->ignore();
        return;
    }
    event->accept();
    Q_EMIT unloaded();
}
