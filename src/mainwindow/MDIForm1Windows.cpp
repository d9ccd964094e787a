#include "backup/frmBackup.h"
#include "events/frmEventi.h"
#include "events/frmEventiOdierni.h"
#include "events/frmNumEvOd.h"
#include "events/frmPrnLastEv.h"
#include "journal/frmJournal.h"
#include "link/PortTest.h"
#include "link/frmConfInt.h"
#include "link/frmImpCom.h"
#include "link/frmUtility.h"
#include "mainwindow/MDIForm1.h"
#include "prefs/ManualFile.h"
#include "prefs/PasswordFault.h"
#include "prefs/frmImpStampa.h"
#include "prefs/frmInfo.h"
#include "prefs/frmInsPass.h"
#include "prefs/frmIstruzioni.h"
#include "prefs/frmLingua.h"
#include "prefs/frmPassProg.h"
#include "prefs/frmTempochk.h"
#include "texts/OwnText.h"
#include "timeprog/frmFerie.h"
#include "timeprog/frmSettimana.h"
#include "users/frmLstUtenti.h"

#include <functional>

// The menu, the windows that it opens, and what they report.

void MDIForm1::buildMenu()
{
    using Type = Passwords::Type;
    const auto add = [this](Entry entry, const char *name, Text caption, void (MDIForm1::*chosen)()) {
        m_menu.add(entry, name, caption, std::bind_front(chosen, this));
    };
    const auto addOwn = [this](Entry entry, const char *name, OwnText caption, std::function<void()> chosen) {
        m_menu.add(
            entry, name, [this, caption] { return m_program.texts()[caption]; }, std::move(chosen));
    };
    const auto addPassword = [this](Entry entry, const char *name, Type type) {
        m_menu.add(entry, name, passwordCaption(type), [this, type] { mnuAttPass_Click(type); });
    };
    const auto addManual = [this](Entry entry, const char *name, Text caption, const char *manual) {
        m_menu.add(entry, name, caption, [=, this] { mnuIstr_Click(caption, QLatin1String(manual)); });
    };
    add(Entry::ImpPrn, "mnuImpPrn", Text::MnuImpostaStampante, &MDIForm1::mnuImpPrn_Click);
    m_menu.separate(TopMenu::File, "mnuLineaBackup");
    addOwn(Entry::Backup, "mnuBackup", OwnText::MnuBackup, [this] { mnuBackup_Click(); });
    m_menu.separate(TopMenu::File, "mnuLinea");
    add(Entry::Exit, "mnuExit", Text::MnuEsci, &MDIForm1::mnuExit_Click);

    m_menu.add(Entry::Utenti, "mnuUtenti", Text::MnuListaUtenti, [this] { m_register.open(); });
    add(Entry::FascieOr, "mnuFascieOr", Text::MnuProgrammazioneSettimanale, &MDIForm1::mnuFascieOr_Click);
    add(Entry::ProgFerie, "mnuProgFerie", Text::MnuProgrammazioneFerie, &MDIForm1::mnuProgFerie_Click);

    m_menu.separate(TopMenu::Anagrafica, "mnuLineaAna");
    addOwn(Entry::RestoreUsers, "mnuRestoreUsers", OwnText::MnuRestoreUsers, [this] { m_register.restore(); });
    addOwn(Entry::ExportUsers, "mnuExportUsers", OwnText::MnuExportUsers, [this] { m_register.exportUsers(); });
    addOwn(Entry::ImportUsers, "mnuImportUsers", OwnText::MnuImportUsers, [this] { m_register.importUsers(); });

    add(Entry::Eventi, "mnuEventi", Text::MnuRicercaEventi, &MDIForm1::mnuEventi_Click);
    add(Entry::EventiOdierni, "mnuEventiOdierni", Text::MnuUltimiEventi, &MDIForm1::mnuEventiOdierni_Click);
    add(Entry::PrnLastEv, "mnuPrnLastEv", Text::MnuStampaUltimiEventi, &MDIForm1::mnuPrnLastEv_Click);
    m_menu.separate(TopMenu::Consult, "mnuLineaCons");
    m_menu.add(Entry::NumEvOdVis, "mnuNumEvOdVis", shownEventsCaption(), [this] { mnuNumEvOdVis_Click(); });
    m_menu.separate(TopMenu::Consult, "mnuLineaJournal");
    addOwn(Entry::Journal, "mnuJournal", OwnText::MnuJournal, [this] { mnuJournal_Click(); });

    add(Entry::ImpCom, "mnuImpCom", Text::MnuImpostazionePortaSeriale, &MDIForm1::mnuImpCom_Click);
    add(Entry::LetConfInt, "mnuLetConfInt", Text::MnuLetturaConfigurazioneInterfaccia, &MDIForm1::mnuLetConfInt_Click);
    add(Entry::Utility, "mnuUtility", Text::MnuDiagnostica, &MDIForm1::mnuUtility_Click);
    add(Entry::ImpContKor, "mnuImpContKor", Text::MnuImpostazioniDiControlloKor, &MDIForm1::mnuImpContKor_Click);
    m_menu.separate(TopMenu::Strumenti, "mnuLinea4");
    add(Entry::Lingua, "mnuLingua", Text::MnuLingua, &MDIForm1::mnuLingua_Click);
    m_menu.separate(TopMenu::Strumenti, "mnuLinea3");
    addPassword(Entry::AttPass, "mnuAttPass", Type::Main);
    addPassword(Entry::AttPassUte, "mnuAttPassUte", Type::Users);
    addPassword(Entry::AttPassUty, "mnuAttPassUty", Type::Diagnostics);

    addManual(Entry::IstrKOR, "mnuIstrKOR", Text::MnuIstruzioniHardware731, "man731");
    addManual(Entry::Istr752, "mnuIstr752", Text::MnuIstruzioniHardware752, "man752");
    addManual(Entry::IstrSwKOR, "mnuIstrSwKOR", Text::MnuIstruzioniSoftware, "mansw");
    m_menu.setShortcut(Entry::IstrSwKOR, Qt::Key_F1);
    m_menu.separate(TopMenu::Help, "mnuLineaH");
    add(Entry::About, "mnuAbout", Text::MnuInformazioniSu, &MDIForm1::mnuAbout_Click);
}

MainMenu::Caption MDIForm1::shownEventsCaption() const
{
    return [this] {
        const QString caption = m_program.texts()[Text::MnuNumeroEventiOdierni];
        return m_isCountChosen ? QStringLiteral("%1 (%2)").arg(caption).arg(m_program.settings().NumEvOd) : caption;
    };
}

MainMenu::Caption MDIForm1::passwordCaption(Passwords::Type type) const
{
    static constexpr std::array toSet = {Text::MnuAbilitazionePasswordPrincipale, Text::MnuAbilitazionePasswordUtenti,
                                         Text::MnuAbilitazionePasswordDiagnostica};
    static constexpr std::array toRemove = {Text::MnuDisabilitazionePasswordPrincipale,
                                            Text::MnuDisabilitazionePasswordUtenti,
                                            Text::MnuDisabilitazionePasswordDiagnostica};
    return [this, type] {
        const std::array<Text, 3> &captions = m_program.passwords().isSet(type) ? toRemove : toSet;
        return m_program.texts()[captions.at(static_cast<size_t>(type) - 1)];
    };
}

MenuInput MDIForm1::menuInput() const
{
    const auto *asked = m_windows.find<frmPassProg>();
    const auto isAskedFor = [asked](Passwords::Type type) {
        return asked && !asked->DisattivaPW && asked->tipoPass() == type;
    };
    MenuInput input;
    input.gateIsClosed = m_start.isGateClosed();
    input.portIsMissing = m_program.settings().PortaCom == 0;
    input.passwordWindowIsOpen = asked || m_windows.find<frmInsPass>();
    input.usersAreAsked = isAskedFor(Passwords::Type::Users);
    input.diagnosticsAreAsked = isAskedFor(Passwords::Type::Diagnostics);
    input.registerIsOpen = m_windows.find<frmLstUtenti>() != nullptr;
    return input;
}

void MDIForm1::mnuExit_Click()
{
    close();
}

// Printer and manuals ------------------------------------------------------------------------------------------------

void MDIForm1::mnuImpPrn_Click()
{
    m_windows.open<frmImpStampa>(
        [this] { return new frmImpStampa(m_program.texts(), m_program.printer(), m_messages); });
}

void MDIForm1::mnuBackup_Click()
{
    m_windows.open<frmBackup>([this] { return new frmBackup(m_program.texts(), m_program.backup(), m_messages); });
}

void MDIForm1::mnuIstr_Click(Text caption, const QString &name)
{
    if (auto *open = m_windows.find<frmIstruzioni>())
        open->unload();
    const QString file = manualFile(m_program.folder(), name, m_program.texts().language());
    auto *window = new frmIstruzioni(caption, file, m_program.texts(), m_messages);
    m_windows.openBeside(window);
    window->load();
}

void MDIForm1::mnuAbout_Click()
{
    m_windows.open<frmInfo>([this] {
        return new frmInfo(m_program.texts(), QPixmap(m_program.picture("Splash.bmp")), m_program.folder().root());
    });
}

// The time programme -------------------------------------------------------------------------------------------------

template<class Editor>
void MDIForm1::openEditor(TimeProgramme::Part part)
{
    m_windows.open<Editor>([this, part] {
        // The archive is the editor's while it is open; the line keeps the state it was told last.
        m_program.timeProgramme().suspend(part);
        auto *window = new Editor(m_program.texts(), m_messages, m_program.archives(), m_program.clock());
        connect(&m_program, &Program::refreshing, window, &GridEditor::showMoment);
        connect(window, &ChildWindow::unloaded, this, [this, part] { m_program.reloadTimeProgramme(part); });
        connect(window, &GridEditor::saved, &m_program.keeper(), [this, part] {
            m_program.journal().note(part == TimeProgramme::Part::Bands ? JournalKind::BandsSaved
                                                                        : JournalKind::HolidaysSaved);
        });
        return window;
    });
}

void MDIForm1::mnuFascieOr_Click()
{
    openEditor<frmSettimana>(TimeProgramme::Part::Bands);
}

void MDIForm1::mnuProgFerie_Click()
{
    openEditor<frmFerie>(TimeProgramme::Part::Holidays);
}

// Events -------------------------------------------------------------------------------------------------------------

/// Notes what a window tells that it has done with events.
template<class Window, class Signal>
void MDIForm1::noteEvents(Window *window, Signal done, JournalKind kind)
{
    JournalKeeper &keeper = m_program.keeper();
    connect(window, done, &keeper,
            [&keeper, kind](const DailyHours &hours, qsizetype rows) { keeper.noteEvents(kind, hours, rows); });
}

void MDIForm1::mnuEventi_Click()
{
    m_windows.open<frmEventi>([this] {
        auto *window = new frmEventi(m_program.texts(), m_messages, m_program.archives(), m_program.clock(),
                                     m_program.printer(), m_program.journal());
        window->setKeptElsewhere([this] { return m_program.log().unsaved() > 0; });
        connect(window, &frmEventi::journalWanted, this, [this](QDate first, QDate last) {
            mnuJournal_Click();
            if (auto *journal = m_windows.find<frmJournal>())
                journal->show(first, last);
        });
        noteEvents(window, &frmEventi::searched, JournalKind::Searched);
        noteEvents(window, &frmEventi::printed, JournalKind::Printed);
        noteEvents(window, &frmEventi::exported, JournalKind::Exported);
        return window;
    });
}

void MDIForm1::mnuEventiOdierni_Click()
{
    auto *opened = m_windows.open<frmEventiOdierni>([this] {
        auto *window = new frmEventiOdierni(m_program.texts(), m_messages, m_program.archives(), m_program.clock(),
                                            m_program.printer());
        noteEvents(window, &frmEventiOdierni::printed, JournalKind::Printed);
        return window;
    });
    if (opened)
        opened->setNumEv(m_program.settings().NumEvOd);
}

void MDIForm1::mnuPrnLastEv_Click()
{
    m_windows.open<frmPrnLastEv>([this] {
        auto *window = new frmPrnLastEv({m_program.log(), m_program.clock(), m_program.archives()}, m_program.printer(),
                                        m_program.texts(), m_messages);
        noteEvents(window, &frmPrnLastEv::printed, JournalKind::Printed);
        return window;
    });
}

void MDIForm1::mnuNumEvOdVis_Click()
{
    m_windows.open<frmNumEvOd>([this] {
        auto *window = new frmNumEvOd(m_program.texts(), m_program.settings(), m_messages);
        connect(window, &frmNumEvOd::NumeroCambiato, this, [this] {
            m_isCountChosen = true;
            applyTexts();
        });
        return window;
    });
}

void MDIForm1::mnuJournal_Click()
{
    m_windows.open<frmJournal>(
        [this] { return new frmJournal(m_program.texts(), m_messages, m_program.journal(), m_program.printer()); });
}

// The interface ------------------------------------------------------------------------------------------------------

void MDIForm1::mnuImpCom_Click()
{
    if (!m_windows.find<frmImpCom>())
        m_program.link().suspend();
    openPortWindow(false);
}

void MDIForm1::openPortWindow(bool first)
{
    m_windows.open<frmImpCom>([this, first] {
        auto *test = new PortTest(m_program.ports(), m_program.clock());
        auto *window = new frmImpCom(m_program.texts(), m_messages, *test);
        test->setParent(window);
        window->setPrima(first);
        window->setConfiguredPort(m_program.settings().LeggiImpostazione(QStringLiteral("COM")).toInt());
        connect(window, &frmImpCom::Chiudi, this, &MDIForm1::objImpCom_Chiudi);
        connect(window, &frmImpCom::FineProgramma, this, &MDIForm1::leave);
        return window;
    });
}

void MDIForm1::objImpCom_Chiudi(int port, frmImpCom::Esito outcome)
{
    if (m_ending)
        return;
    m_program.link().objImpCom_Chiudi(outcome == frmImpCom::Esito::Chosen ? std::optional(port) : std::nullopt);
    m_menu.applyState();
}

void MDIForm1::mnuLetConfInt_Click()
{
    m_windows.open<frmConfInt>([this] {
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

void MDIForm1::mnuUtility_Click()
{
    if (m_windows.find<frmUtility>() || !m_program.passwords().isSet(Passwords::Type::Diagnostics))
        openDiagnostics();
    else
        openPasswordWindow(Passwords::Type::Diagnostics, false);
}

void MDIForm1::openDiagnostics()
{
    m_windows.open<frmUtility>([this] {
        auto *window = new frmUtility(m_program.texts());
        connect(&m_program.road(), &EventRoad::recordReceived, window, &frmUtility::showRecord);
        return window;
    });
}

void MDIForm1::mnuImpContKor_Click()
{
    m_windows.open<frmTempochk>([this] {
        auto *window = new frmTempochk(m_program.texts(), m_program.settings(), m_messages);
        connect(window, &frmTempochk::ModificaMin, &m_program.link(), &LinkMonitor::objTempochk_ModificaMin);
        return window;
    });
}

// Language and passwords ---------------------------------------------------------------------------------------------

void MDIForm1::mnuLingua_Click()
{
    m_windows.open<frmLingua>([this] {
        auto *window = new frmLingua(m_program.texts(), m_program.settings(), m_messages);
        connect(window, &frmLingua::LinguaCambiata, this, &MDIForm1::translate);
        return window;
    });
}

void MDIForm1::mnuAttPass_Click(Passwords::Type type)
{
    if (m_program.passwords().isSet(type))
        openPasswordWindow(type, true);
    else
        setPassword(type);
}

void MDIForm1::openPasswordWindow(Passwords::Type type, bool toDeactivate)
{
    if (auto *open = m_windows.find<frmPassProg>())
        return m_windows.bringForward(open);
    auto *window = new frmPassProg(m_program.texts(), m_messages, m_program.passwords(), this);
    window->DisattivaPW = toDeactivate;
    window->setTipoPass(type);
    connect(window, &frmPassProg::Chiudi, this, &MDIForm1::objPassProg_Chiudi);
    connect(window, &frmPassProg::Errata, &m_program.keeper(),
            [this](Passwords::Type wrong) { m_program.keeper().notePassword(JournalKind::PasswordWrong, wrong); });
    m_windows.openDialog(window);
}

void MDIForm1::objPassProg_Chiudi(Passwords::Type type, frmPassProg::Codice code)
{
    using Codice = frmPassProg::Codice;
    if (code == Codice::RightToDeactivate) {
        deactivate(type);
    } else if (type == Passwords::Type::Main && code == Codice::Right) {
        m_start.pass();
    } else if (type == Passwords::Type::Main && code == Codice::Cancelled) {
        QMetaObject::invokeMethod(this, &MDIForm1::leave, Qt::QueuedConnection);
    } else if (type == Passwords::Type::Diagnostics && code == Codice::Right) {
        openDiagnostics();
    } else if (type == Passwords::Type::Users && code == Codice::Right) {
        m_register.passwordGiven();
    }
}

void MDIForm1::setPassword(Passwords::Type type)
{
    m_windows.open<frmInsPass>([this, type] {
        auto *window = new frmInsPass(m_program.texts(), m_messages, m_program.passwords());
        window->setTipoPass(type);
        connect(window, &frmInsPass::PasswordImpostata, this, &MDIForm1::applyTexts);
        connect(window, &frmInsPass::PasswordImpostata, &m_program.keeper(), [this](Passwords::Type stored) {
            m_program.keeper().notePassword(
                m_program.passwords().isSet(stored) ? JournalKind::PasswordSet : JournalKind::PasswordRemoved, stored);
        });
        return window;
    });
}

void MDIForm1::deactivate(Passwords::Type type)
{
    if (const Passwords::Fault fault = m_program.passwords().set(type, {}); fault != Passwords::Fault::None)
        return m_boxes.tell(m_program.texts().sentence(passwordMessage(fault, m_program.passwords().reason())));
    m_program.keeper().notePassword(JournalKind::PasswordRemoved, type);
    applyTexts();
}
