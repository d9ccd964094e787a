#pragma once

#include "mainwindow/MenuState.h"
#include "mainwindow/StartSequence.h"
#include "widgets/ChildWindow.h"
#include "widgets/Messages.h"
#include "widgets/StatusPanels.h"
#include "widgets/Translation.h"

#include <QMainWindow>
#include <QPixmap>
#include <QPointer>

class ClientArea;
class frmLstUtenti;
class Printing;
class QAction;
class QMdiSubWindow;
class QMenu;
class Splash;

/// The frame window: menu, status bar, timers, and the windows that are opened from the menu.
class MDIForm1 : public QMainWindow, private Gate
{
    Q_OBJECT

public:
    /// @param program  prepared, not yet loaded; @param messages; both must outlive this window
    MDIForm1(Program &program, Messages &messages, QWidget *parent = nullptr);
    ~MDIForm1() override;

    /// Shows the splash, opens archives and log, and starts the timers; a second later the window comes to life.
    void load();
    /// Ends the program whatever the menus say: the system asks for it.
    void end();
    /// The desktop session is about to end, and may still be called off: closes the windows as their frames would.
    /// @param mayAsk  a window may ask the operator, or be at work: then the session must be called off
    /// @return false when it must be
    bool closeForSession(bool mayAsk);

Q_SIGNALS:
    /// The window has closed: the program ends.
    void unloaded();

public Q_SLOTS:
    // Called by the windows that this one opens, when they close or have something to tell.
    void objImpCom_Chiudi(int port, int result);
    void objPassProg_Chiudi(int type, int code);
    void objMessage_Chiudi();
    void objLstUtenti_Chiudi(int result);

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildMenu();
    void connectLink();
    void applyTexts();
    void applyMenu();
    void showLink();
    void showTime(bool enabled);
    void showClock();
    QString caption() const;
    QString pictureFile(const char *name) const;
    void showConfiguration(const InterfaceConfig &config);

    void tmrShow_Timer();
    void tmrFlash_Timer();
    void showWaiting();
    bool asksAboutEvents();
    void askToLose();
    bool tellsWhatIsLeft();

    // The gate.
    bool waitsFor(const Fault & /*reason*/) const override { return true; }
    void tellTriedAgain(const Message &why) override;
    void askPassword() override;
    void refuse(const Message &why) override;
    void passed() override;

    // Boxes over this window stand one at a time: notices first, then what else is to be told or done.
    void showNext();
    void showBox(Icon icon, const QString &text, std::function<void()> then = {});
    void showCritical(const QString &text, std::function<void()> then = {});
    /// Calls @p then when no box stands any more; at once, perhaps.
    void whenTold(std::function<void()> then);
    void askToEnd();

    /// @return false when the window stays open, perhaps because it asks the operator first
    static bool closeChild(ChildWindow *window);

    /// Opens the window that @p make makes, or brings the one forward that is open already.
    template<class Window, class Make>
    void openOnce(Make make)
    {
        if (ChildWindow *open = child(Window::staticMetaObject.className()))
            bringForward(open);
        else
            openChild(make());
    }
    void closeRefused();
    void bringForward(ChildWindow *open);
    void subWindowActivated(QMdiSubWindow *frame);
    void openChild(ChildWindow *window);
    ChildWindow *child(const char *name) const;
    /// Property of a window: a number that grows with each one opened.
    static constexpr auto OpenedAs = "openedAs";
    QList<ChildWindow *> openWindows() const;
    bool isPasswordWindowOpenBut(const ChildWindow *closing) const;

    // Menu entries.
    void mnuExit_Click();
    void mnuFascieOr_Click();
    void mnuProgFerie_Click();
    void mnuUtenti_Click();
    void mnuEventi_Click();
    void mnuEventiOdierni_Click();
    void mnuNumEvOdVis_Click();
    void mnuPrnLastEv_Click();
    void mnuImpPrn_Click();
    void mnuImpCom_Click();
    void mnuLetConfInt_Click();
    void mnuUtility_Click();
    void mnuImpContKor_Click();
    void mnuLingua_Click();
    void mnuAttPass_Click(Passwords::Type type);
    void mnuIstr_Click(Text caption, const QString &file);
    void mnuAbout_Click();

    template<class Editor>
    void openEditor(TimeProgramme::Part part);
    void openPortWindow(bool first);
    void askPassword(Passwords::Type type, bool toDeactivate);
    void setPassword(Passwords::Type type);
    void deactivate(Passwords::Type type);
    void openDiagnostics();
    void openRegister();
    void printRegister(frmLstUtenti *window, Printing *printing);
    void printDuplicates(ChildWindow *window, const QString &report);
    void raiseAlarm();
    void keepAlarmInSight();
    void turnToAlarm();
    void returnKeyboard();
    bool isAllowed(Entry entry) const { return menuState(m_menu)[entry]; }
    void addEntry(QMenu *menu, Entry entry, const char *name, void (MDIForm1::*clicked)());
    void addEntry(QMenu *menu, Entry entry, const char *name, std::function<void()> clicked);

    Program &m_program;
    Messages &m_messages;
    StartSequence m_start;
    QString m_registerWait; ///< why the start waits for the register, "" when it does not
    Translation m_translation;
    MenuInput m_menu;
    std::array<QMenu *, TopMenuCount> m_menus{};
    std::array<QAction *, EntryCount> m_entries{};
    ClientArea *m_area;
    StatusPanels *StatusBar1;
    QPointer<Splash> m_splash;
    QTimer tmrShow;
    QTimer tmrFlash;
    QPointer<QMdiSubWindow> m_alarm; ///< frame of its message
    struct Waiting {
        QString text; ///< "" = nothing to tell
        std::function<void()> then;
    };
    QList<Waiting> m_waiting; ///< for the box that stands
    bool m_boxIsShown = false;
    bool m_ending = false;       ///< the close comes from the program or the session, and cannot be refused
    bool m_endIsAsked = false;   ///< whether supervision may end
    bool m_endIsAgreed = false;  ///< the operator has said yes, and no window has refused since
    bool m_closeAgain = false;   ///< a close waits for a window to answer its question
    bool m_lossIsAsked = false;  ///< whether events may be lost that are in memory only
    bool m_lossIsAgreed = false; ///< they may
    int m_opened = 0;            ///< windows so far
};
