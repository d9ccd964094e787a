#pragma once

#include "link/frmImpCom.h"
#include "mainwindow/AlarmFrame.h"
#include "mainwindow/BoxQueue.h"
#include "mainwindow/ClosingQuestions.h"
#include "mainwindow/MainMenu.h"
#include "mainwindow/RegisterEntries.h"
#include "mainwindow/StartSequence.h"
#include "mainwindow/StatusDisplay.h"
#include "mainwindow/WindowSet.h"
#include "prefs/frmPassProg.h"
#include "widgets/Translation.h"

#include <QMainWindow>

class Splash;

/// The frame window: opens the windows of the menu, one for each function, and connects them to the core.
class MDIForm1 : public QMainWindow, private Gate
{
    Q_OBJECT

public:
    /// @param program  prepared, not yet loaded; must outlive this window, as must the messages
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

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void connectParts();
    void connectLink();
    void tmrShow_Timer();
    /// Shows everything anew, in the language in force.
    void applyTexts();
    /// Another language is in force: the windows that are open take it too.
    void translate();

    // The gate.
    bool waitsFor(const Fault & /*reason*/) const override { return true; }
    void tellTriedAgain(const Message &why) override;
    void askPassword() override;
    void refuse(const Message &why) override;
    void passed() override;

    // The end.
    void leave();
    bool closeWindows();
    void closeRefused();

    // The menu.
    void buildMenu();
    MenuInput menuInput() const;
    MainMenu::Caption passwordCaption(Passwords::Type type) const;
    MainMenu::Caption shownEventsCaption() const;
    void mnuImpPrn_Click();
    void mnuBackup_Click();
    void mnuExit_Click();
    void mnuFascieOr_Click();
    void mnuProgFerie_Click();
    void mnuEventi_Click();
    void mnuEventiOdierni_Click();
    void mnuPrnLastEv_Click();
    void mnuNumEvOdVis_Click();
    void mnuJournal_Click();
    void mnuImpCom_Click();
    void mnuLetConfInt_Click();
    void mnuUtility_Click();
    void mnuImpContKor_Click();
    void mnuLingua_Click();
    void mnuAttPass_Click(Passwords::Type type);
    void mnuIstr_Click(Text caption, const QString &name);
    void mnuAbout_Click();

    // Windows, and what they report.
    template<class Editor>
    void openEditor(TimeProgramme::Part part);
    template<class Window, class Signal>
    void noteEvents(Window *window, Signal done, JournalKind kind);
    void openPortWindow(bool first);
    void objImpCom_Chiudi(int port, frmImpCom::Esito outcome);
    void openDiagnostics();
    void openPasswordWindow(Passwords::Type type, bool toDeactivate);
    void objPassProg_Chiudi(Passwords::Type type, frmPassProg::Codice code);
    void setPassword(Passwords::Type type);
    void deactivate(Passwords::Type type);
    void raiseAlarm();

    Program &m_program;
    Messages &m_messages;
    StartSequence m_start;
    Translation m_translation;
    ClientArea *m_area;
    WindowSet m_windows;
    MainMenu m_menu;
    StatusDisplay m_display;
    BoxQueue m_boxes;
    ClosingQuestions m_closing;
    RegisterEntries m_register;
    AlarmFrame m_alarm;
    QPointer<Splash> m_splash;
    QTimer tmrShow;
    bool m_ending = false;        ///< the close cannot be refused
    bool m_isHeldUp = false;      ///< it comes from the system or the session, which wait for it
    bool m_isCountChosen = false; ///< in the present language: the menu tells it then
    bool m_closeAgain = false;    ///< a close waits for a window to answer its question
};
