#include "mainwindow/MDIForm1.h"

#include "link/frmUtility.h"
#include "prefs/PasswordFault.h"
#include "prefs/frmInfo.h"
#include "prefs/frmInsPass.h"
#include "prefs/frmIstruzioni.h"
#include "prefs/frmLingua.h"
#include "prefs/frmPassProg.h"
#include "prefs/frmTempochk.h"
#include "timeprog/frmFerie.h"
#include "timeprog/frmSettimana.h"
#include "widgets/ClientArea.h"

#include <QApplication>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QShortcutEvent>

#include <algorithm>

// The windows that the frame window opens, and what they report.

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
        const QMdiSubWindow *frame = m_area->activeSubWindow();
        auto *window = frame ? qobject_cast<ChildWindow *>(frame->widget()) : nullptr;
        if (window && window->pressByKey(static_cast<QShortcutEvent *>(event)->key()))
            return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

// Windows ------------------------------------------------------------------------------------------------------------

ChildWindow *MDIForm1::child(const char *name) const
{
    return findChild<ChildWindow *>(QString::fromLatin1(name));
}

void MDIForm1::subWindowActivated(QMdiSubWindow *frame)
{
    const auto *window = frame ? qobject_cast<ChildWindow *>(frame->widget()) : nullptr;
    ChildWindow *waitedFor = window ? window->waitsFor() : nullptr;
    if (!waitedFor)
        return;
    // A disabled window in front, with the one that it waits for behind it, would look like a program that hangs.
    QMetaObject::invokeMethod(
        waitedFor, [this, waitedFor] { bringForward(waitedFor); }, Qt::QueuedConnection);
}

void MDIForm1::bringForward(ChildWindow *open)
{
    m_area->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(open->parentWidget()));
}

void MDIForm1::openChild(ChildWindow *window)
{
    window->setProperty(OpenedAs, ++m_opened);
    connect(window, &ChildWindow::closeRefused, this, &MDIForm1::closeRefused);
    connect(window, &QObject::destroyed, this, [this] {
        if (std::exchange(m_closeAgain, false))
            QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    });
    m_area->setActiveSubWindow(m_area->open(window));
    window->takeKeyboard();
}

void MDIForm1::mnuExit_Click()
{
    close();
}

template<class Editor>
void MDIForm1::openEditor(TimeProgramme::Part part)
{
    Editor *made = nullptr;
    openOnce<Editor>([&] {
        // The archive is the editor's while it is open; the line keeps the state it was told last.
        m_program.timeProgramme().suspend(part);
        made = new Editor(m_program.texts(), m_messages, m_program.archives());
        connect(made, &ChildWindow::unloaded, this, [this, part] { m_program.reloadTimeProgramme(part); });
        return made;
    });
    if (made && !made->open())
        made->unload();
}

void MDIForm1::mnuFascieOr_Click()
{
    openEditor<frmSettimana>(TimeProgramme::Part::Bands);
}

void MDIForm1::mnuProgFerie_Click()
{
    openEditor<frmFerie>(TimeProgramme::Part::Holidays);
}

void MDIForm1::mnuUtility_Click()
{
    if (child("frmUtility") || !m_program.passwords().isSet(Passwords::Type::Diagnostics)) {
        openDiagnostics();
        return;
    }
    m_menu.diagnosticsAreAsked = true;
    askPassword(Passwords::Type::Diagnostics, false);
}

void MDIForm1::openDiagnostics()
{
    openOnce<frmUtility>([this] {
        auto *window = new frmUtility(m_program.texts());
        connect(&m_program.road(), &EventRoad::recordReceived, window, &frmUtility::showRecord);
        return window;
    });
}

void MDIForm1::mnuImpContKor_Click()
{
    openOnce<frmTempochk>([this] {
        auto *window = new frmTempochk(m_program.texts(), m_program.settings(), m_messages);
        connect(window, &frmTempochk::ModificaMin, &m_program.link(), &LinkMonitor::objTempochk_ModificaMin);
        return window;
    });
}

void MDIForm1::mnuLingua_Click()
{
    openOnce<frmLingua>([this] {
        auto *window = new frmLingua(m_program.texts(), m_program.settings(), m_messages);
        connect(window, &frmLingua::LinguaCambiata, this, [this] {
            m_translation.apply(m_program.texts().language());
            applyTexts();
        });
        return window;
    });
}

void MDIForm1::mnuIstr_Click(Text caption, const QString &file)
{
    if (ChildWindow *open = child("frmIstruzioni"))
        open->unload();
    auto *window = new frmIstruzioni(m_program.texts()[caption], m_program.folder().fileToOpen(file), m_program.texts(),
                                     m_messages);
    openChild(window);
    window->load();
}

void MDIForm1::mnuAbout_Click()
{
    openOnce<frmInfo>([this] {
        return new frmInfo(m_program.texts(), QPixmap(pictureFile("Splash.bmp")), m_program.folder().root());
    });
}

// Passwords ----------------------------------------------------------------------------------------------------------

void MDIForm1::mnuAttPass_Click(Passwords::Type type)
{
    if (m_program.passwords().isSet(type))
        askPassword(type, true);
    else
        setPassword(type);
}

void MDIForm1::askPassword(Passwords::Type type, bool toDeactivate)
{
    if (ChildWindow *open = child("frmPassProg")) {
        open->activateWindow();
        return;
    }
    auto *window = new frmPassProg(m_program.texts(), m_messages, m_program.passwords(), this);
    window->DisattivaPW = toDeactivate;
    window->setTipoPass(type);
    connect(window, &frmPassProg::Chiudi, this, &MDIForm1::objPassProg_Chiudi);
    connect(window, &ChildWindow::closeRefused, this, &MDIForm1::closeRefused);
    connect(window, &ChildWindow::unloaded, this, [this, window] {
        m_menu.passwordWindowIsOpen = isPasswordWindowOpenBut(window);
        m_menu.usersAreAsked = false;
        m_menu.diagnosticsAreAsked = false;
        applyMenu();
    });
    m_menu.passwordWindowIsOpen = true;
    applyMenu();
    window->adjustSize();
    window->move(pos() + QPoint((width() - window->width()) / 2, (height() - window->height()) / 3));
    window->show();
    window->activateWindow();
}

void MDIForm1::setPassword(Passwords::Type type)
{
    openOnce<frmInsPass>([this, type] {
        auto *window = new frmInsPass(m_program.texts(), m_messages, m_program.passwords());
        window->setTipoPass(type);
        m_menu.passwordWindowIsOpen = true;
        applyMenu();
        connect(window, &frmInsPass::PasswordImpostata, this, &MDIForm1::applyTexts);
        connect(window, &ChildWindow::unloaded, this, [this, window] {
            m_menu.passwordWindowIsOpen = isPasswordWindowOpenBut(window);
            applyMenu();
        });
        return window;
    });
}

bool MDIForm1::isPasswordWindowOpenBut(const ChildWindow *closing) const
{
    const QList<const ChildWindow *> windows = {child("frmPassProg"), child("frmInsPass")};
    return std::any_of(windows.begin(), windows.end(),
                       [closing](const ChildWindow *window) { return window && window != closing; });
}

void MDIForm1::objPassProg_Chiudi(int type, int code)
{
    enum Code { Right = 1, Cancelled = 2, RightToDeactivate = 3 };
    const auto which = static_cast<Passwords::Type>(type);
    if (code == RightToDeactivate) {
        deactivate(which);
    } else if (which == Passwords::Type::Main && code == Right) {
        m_start.pass();
    } else if (which == Passwords::Type::Main && code == Cancelled) {
        QMetaObject::invokeMethod(this, &MDIForm1::end, Qt::QueuedConnection);
    } else if (which == Passwords::Type::Diagnostics && code == Right) {
        openDiagnostics();
    } else if (which == Passwords::Type::Users && code == Right) {
        openRegister();
    }
}

void MDIForm1::deactivate(Passwords::Type type)
{
    if (const Passwords::Fault fault = m_program.passwords().set(type, {}); fault != Passwords::Fault::None)
        return showCritical(m_program.texts().sentence(passwordMessage(fault, m_program.passwords().reason())));
    applyTexts();
}
