#include "mainwindow/MDIForm1.h"

#include "link/PortTest.h"
#include "link/frmConfInt.h"
#include "link/frmImpCom.h"
#include "link/frmUtility.h"
#include "prefs/Splash.h"
#include "prefs/frmInfo.h"
#include "prefs/frmInsPass.h"
#include "prefs/frmIstruzioni.h"
#include "prefs/frmLingua.h"
#include "prefs/frmMessage.h"
#include "prefs/frmPassProg.h"
#include "prefs/frmTempochk.h"
#include "startup/DateTimeText.h"
#include "startup/Version.h"
#include "timeprog/frmFerie.h"
#include "timeprog/frmSettimana.h"
#include "widgets/Twips.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSessionManager>
#include <QStatusBar>

namespace {

constexpr int showMilliseconds = 1000;
constexpr int flashMilliseconds = 300;

QString title(const Texts &texts)
{
    return texts[Text::InterfacciaMultiprotocollo] + QStringLiteral(" - V") + programVersion();
}

Text stateText(LinkMonitor::Link link)
{
    switch (link) {
    case LinkMonitor::Link::Answering:
        return Text::InterfacciaInLinea;
    case LinkMonitor::Link::PortNotAvailable:
        return Text::PortaSerialeNonDisponibile;
    case LinkMonitor::Link::NotAnswering:
        break;
    }
    return Text::InterfacciaNonInLinea;
}

Text captionOf(Passwords::Type type, bool isSet)
{
    switch (type) {
    case Passwords::Type::Main:
        return isSet ? Text::MnuDisabilitazionePasswordPrincipale : Text::MnuAbilitazionePasswordPrincipale;
    case Passwords::Type::Users:
        return isSet ? Text::MnuDisabilitazionePasswordUtenti : Text::MnuAbilitazionePasswordUtenti;
    case Passwords::Type::Diagnostics:
        break;
    }
    return isSet ? Text::MnuDisabilitazionePasswordDiagnostica : Text::MnuAbilitazionePasswordDiagnostica;
}

} // namespace

MDIForm1::MDIForm1(Program &program, Messages &messages, QWidget *parent)
    : QMainWindow(parent), m_program(program), m_messages(messages), m_area(new QMdiArea(this))
{
    setObjectName(QStringLiteral("MDIForm1"));
    m_area->setObjectName(QStringLiteral("Client"));
    setCentralWidget(m_area);
    buildMenu();
    buildStatusBar();
    for (const auto &[timer, name] : {std::pair(&tmrShow, "tmrShow"), std::pair(&tmrFlash, "tmrFlash")}) {
        timer->setParent(this);
        timer->setObjectName(QString::fromLatin1(name));
    }
    tmrShow.setSingleShot(true);
    tmrFlash.setInterval(flashMilliseconds);
    connect(&tmrShow, &QTimer::timeout, this, &MDIForm1::tmrShow_Timer);
    connect(&tmrFlash, &QTimer::timeout, this, &MDIForm1::tmrFlash_Timer);
    connect(&program, &Program::refreshing, this, &MDIForm1::showClock);
    connect(&program.timeProgramme(), &TimeProgramme::applied, this, &MDIForm1::showTime);
    connect(&program.notices(), &Notices::posted, this, &MDIForm1::showNotices, Qt::QueuedConnection);
    // At the end of a session nobody can be asked to give the password first.
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager &) { m_ending = true; });
    connectLink();
}

MDIForm1::~MDIForm1()
{
    delete m_splash;
}

void MDIForm1::buildMenu()
{
    static constexpr std::array names = {"mnuFile", "mnuAnagrafica", "mnuConsult", "mnuStrumenti", "mnuHelp"};
    for (size_t i = 0; i < names.size(); ++i) {
        m_menus.at(i) = menuBar()->addMenu(QString());
        m_menus.at(i)->setObjectName(QString::fromLatin1(names.at(i)));
        m_menus.at(i)->menuAction()->setObjectName(QString::fromLatin1(names.at(i)));
    }
    const auto [file, users, events, tools, help] = m_menus;
    const std::function<void()> notBuilt = [] {};
    const auto separate = [](QMenu *menu, const char *name) {
        menu->addSeparator()->setObjectName(QString::fromLatin1(name));
    };
    addEntry(file, Entry::ImpPrn, "mnuImpPrn", notBuilt);
    separate(file, "mnuLinea");
    addEntry(file, Entry::Exit, "mnuExit", &MDIForm1::mnuExit_Click);

    addEntry(users, Entry::Utenti, "mnuUtenti", notBuilt);
    addEntry(users, Entry::FascieOr, "mnuFascieOr", &MDIForm1::mnuFascieOr_Click);
    addEntry(users, Entry::ProgFerie, "mnuProgFerie", &MDIForm1::mnuProgFerie_Click);

    addEntry(events, Entry::Eventi, "mnuEventi", notBuilt);
    addEntry(events, Entry::EventiOdierni, "mnuEventiOdierni", notBuilt);
    addEntry(events, Entry::PrnLastEv, "mnuPrnLastEv", notBuilt);
    separate(events, "mnuLineaCons");
    addEntry(events, Entry::NumEvOdVis, "mnuNumEvOdVis", notBuilt);

    addEntry(tools, Entry::ImpCom, "mnuImpCom", &MDIForm1::mnuImpCom_Click);
    addEntry(tools, Entry::LetConfInt, "mnuLetConfInt", &MDIForm1::mnuLetConfInt_Click);
    addEntry(tools, Entry::Utility, "mnuUtility", &MDIForm1::mnuUtility_Click);
    addEntry(tools, Entry::ImpContKor, "mnuImpContKor", &MDIForm1::mnuImpContKor_Click);
    separate(tools, "mnuLinea4");
    addEntry(tools, Entry::Lingua, "mnuLingua", &MDIForm1::mnuLingua_Click);
    separate(tools, "mnuLinea3");
    addEntry(tools, Entry::AttPass, "mnuAttPass", [this] { mnuAttPass_Click(Passwords::Type::Main); });
    addEntry(tools, Entry::AttPassUte, "mnuAttPassUte", [this] { mnuAttPass_Click(Passwords::Type::Users); });
    addEntry(tools, Entry::AttPassUty, "mnuAttPassUty", [this] { mnuAttPass_Click(Passwords::Type::Diagnostics); });

    addEntry(help, Entry::IstrKOR, "mnuIstrKOR",
             [this] { mnuIstr_Click(Text::MnuIstruzioniHardware731, QStringLiteral("Istruzioni/man731.pdf")); });
    addEntry(help, Entry::Istr752, "mnuIstr752",
             [this] { mnuIstr_Click(Text::MnuIstruzioniHardware752, QStringLiteral("Istruzioni/man752.pdf")); });
    addEntry(help, Entry::IstrSwKOR, "mnuIstrSwKOR",
             [this] { mnuIstr_Click(Text::MnuIstruzioniSoftware, QStringLiteral("Istruzioni/mansw.pdf")); });
    separate(help, "mnuLineaH");
    addEntry(help, Entry::About, "mnuAbout", &MDIForm1::mnuAbout_Click);
}

void MDIForm1::addEntry(QMenu *menu, Entry entry, const char *name, void (MDIForm1::*clicked)())
{
    addEntry(menu, entry, name, [this, clicked] { (this->*clicked)(); });
}

void MDIForm1::addEntry(QMenu *menu, Entry entry, const char *name, std::function<void()> clicked)
{
    QAction *action = menu->addAction(QString());
    action->setObjectName(QString::fromLatin1(name));
    m_entries.at(static_cast<size_t>(entry)) = action;
    // Keys and screen readers find ways past a disabled menu: the gate is asked at the entry itself.
    connect(action, &QAction::triggered, this, [this, entry, clicked = std::move(clicked)] {
        if (isEnabled() && isAllowed(entry))
            clicked();
    });
}

void MDIForm1::buildStatusBar()
{
    static constexpr std::array twips = {2500, 700, 640, 1500, 0, 400};
    statusBar()->setObjectName(QStringLiteral("StatusBar1"));
    for (size_t i = 0; i < m_panels.size(); ++i) {
        auto *panel = new QLabel(this);
        panel->setObjectName(QStringLiteral("StatusBar1.Panels(%1)").arg(i + 1));
        panel->setMinimumWidth(pixels(twips.at(i)));
        panel->setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Sunken));
        panel->setMargin(2);
        panel->setTextFormat(Qt::PlainText);
        if (i != 4 && i != 0)
            panel->setAlignment(Qt::AlignCenter);
        statusBar()->addPermanentWidget(panel, i == 4 ? 1 : 0);
        m_panels.at(i) = panel;
    }
    statusBar()->setSizeGripEnabled(false);
}

void MDIForm1::connectLink()
{
    LinkMonitor &link = m_program.link();
    connect(&link, &LinkMonitor::noPortChosen, this, [this] { openPortWindow(true); });
    connect(&link, &LinkMonitor::portNotAvailable, this, [this](const Fault &fault) {
        const bool isTaken = fault.code == FaultCode::AlreadyInUse;
        showCritical(m_program.texts().sentence(
            {Text::PortaSerialeGiaAperta, {}, isTaken ? std::nullopt : std::optional<Fault>(fault)}));
    });
    connect(&link, &LinkMonitor::linkChanged, this, [this](LinkMonitor::Link state) {
        m_panel5Cleared = false;
        // A port that could not be opened says nothing about the interface; one that was lost shows when the operator
        // has closed its message.
        if (state != LinkMonitor::Link::PortNotAvailable)
            showLed(state);
        applyPanel5();
    });
    connect(&link, &LinkMonitor::queryEnded, this, [this](LinkMonitor::Purpose purpose, const InterfaceConfig &config) {
        if (purpose == LinkMonitor::Purpose::LinkStart && !config.answered() && m_program.serial().portOpen())
            showCritical(m_program.texts()[Text::InterfacciaNonCollegata]);
        if (purpose != LinkMonitor::Purpose::Window)
            return;
        if (auto *window = qobject_cast<frmConfInt *>(child("frmConfInt")))
            window->configurationRead(config);
    });
    connect(&link, &LinkMonitor::alarmRaised, this, &MDIForm1::raiseAlarm);
    connect(&link, &LinkMonitor::alarmEnded, this, [this] {
        if (ChildWindow *message = child("frmMessage")) {
            m_closedByRePower = true;
            message->unload();
        }
    });
}

// Loading ------------------------------------------------------------------------------------------------------------

void MDIForm1::load()
{
    m_translation.apply(m_program.texts().language());
    m_messages.setTitle(m_program.texts()[Text::InterfacciaMultiprotocollo]);
    QApplication::setWindowIcon(QIcon(picture(QStringLiteral("Icon.png"))));
    setGeometry(screen()->availableGeometry());
    setWindowState(Qt::WindowMaximized);
    setEnabled(false);
    m_splash = new Splash(picture(QStringLiteral("Splash.bmp")));
    m_splash->setAttribute(Qt::WA_DeleteOnClose);
    m_splash->show();
    applyTexts();
    showClock();
    showPicture(m_panels[5], QStringLiteral("Led_G.bmp"), m_program.texts()[OwnText::LedUnknown]);
    show();
    m_splash->raise();
    m_program.load();
    tmrShow.start(showMilliseconds);
}

void MDIForm1::tmrShow_Timer()
{
    setEnabled(true);
    if (m_splash)
        m_splash->close();
    if (!readPasswords())
        return;
    showNotices();
    applyTexts();
    if (m_program.passwords().isSet(Passwords::Type::Main)) {
        m_menu.gateIsClosed = true;
        applyMenu();
        askPassword(Passwords::Type::Main, false);
        return;
    }
    m_panel5Cleared = true;
    applyPanel5();
    m_program.link().ApriCollegamento();
}

/// Reads the three passwords; without them nobody may pass. @return false when the window does not come to life yet
bool MDIForm1::readPasswords()
{
    const Texts &texts = m_program.texts();
    switch (m_program.passwords().load()) {
    case Passwords::Fault::None:
        return true;
    case Passwords::Fault::RegisterUnusable:
        showCritical(texts[Text::FileMancanteODanneggiato], [this] { end(); });
        break;
    case Passwords::Fault::Corrupt:
        showCritical(texts[Text::FilePasswordCorrotto], [this] { end(); });
        break;
    case Passwords::Fault::Unreadable:
        // Another program holds the register for the moment; nothing opens before it can be read.
        m_menu.gateIsClosed = true;
        applyMenu();
        m_panels[4]->setText(texts.sentence(
            {OwnText::RegisterTriedAgain, {QStringLiteral("Anagrafico.zeb")}, m_program.passwords().reason()}));
        tmrShow.start(showMilliseconds);
        return false;
    }
    m_menu.gateIsClosed = true;
    applyMenu();
    return false;
}

void MDIForm1::end()
{
    m_ending = true;
    close();
}

void MDIForm1::closeEvent(QCloseEvent *event)
{
    const bool isHeld = !isEnabled() || !menuState(m_menu)[TopMenu::File];
    if (!m_ending && isHeld) {
        event->ignore();
        return;
    }
    const QList<ChildWindow *> open = findChildren<ChildWindow *>();
    for (ChildWindow *window : open) {
        // A window in the client area closes with its frame, one of its own by itself.
        QWidget *frame = qobject_cast<QMdiSubWindow *>(window->parentWidget());
        if (m_ending)
            window->unload();
        else if (!(frame ? frame : window)->close()) {
            // It asks the operator first, and this window closes when it has.
            m_closeAgain = true;
            event->ignore();
            return;
        }
    }
    tmrShow.stop();
    tmrFlash.stop();
    if (m_splash)
        m_splash->close();
    m_program.end();
    event->accept();
    Q_EMIT unloaded();
}

// What is shown ------------------------------------------------------------------------------------------------------

void MDIForm1::applyTexts()
{
    const Texts &texts = m_program.texts();
    setWindowTitle(title(texts));
    m_messages.setTitle(texts[Text::InterfacciaMultiprotocollo]);
    static constexpr std::array menus = {Text::MnuFile, Text::MnuAnagrafica, Text::MnuConsultazioni, Text::MnuStrumenti,
                                         Text::MnuAiuto};
    for (size_t i = 0; i < menus.size(); ++i)
        m_menus.at(i)->setTitle(texts[menus.at(i)]);
    const Passwords &passwords = m_program.passwords();
    const auto password = [&](Passwords::Type type) { return captionOf(type, passwords.isSet(type)); };
    const std::array<Text, EntryCount> captions = {
        Text::MnuImpostaStampante,
        Text::MnuEsci,
        Text::MnuListaUtenti,
        Text::MnuProgrammazioneSettimanale,
        Text::MnuProgrammazioneFerie,
        Text::MnuRicercaEventi,
        Text::MnuUltimiEventi,
        Text::MnuStampaUltimiEventi,
        Text::MnuNumeroEventiOdierni,
        Text::MnuImpostazionePortaSeriale,
        Text::MnuLetturaConfigurazioneInterfaccia,
        Text::MnuDiagnostica,
        Text::MnuImpostazioniDiControlloKor,
        Text::MnuLingua,
        password(Passwords::Type::Main),
        password(Passwords::Type::Users),
        password(Passwords::Type::Diagnostics),
        Text::MnuIstruzioniHardware731,
        Text::MnuIstruzioniHardware752,
        Text::MnuIstruzioniSoftware,
        Text::MnuInformazioniSu,
    };
    for (size_t i = 0; i < captions.size(); ++i)
        m_entries.at(i)->setText(texts[captions.at(i)]);
    applyMenu();
    applyPanel5();
    showClock();
    if (m_ledIsKnown)
        showLed(m_program.link().link());
    showTime(m_program.timeProgramme().isEnabled());
}

void MDIForm1::applyMenu()
{
    const MenuState state = menuState(m_menu);
    for (size_t i = 0; i < m_menus.size(); ++i)
        m_menus.at(i)->setEnabled(state.menus.at(i));
    for (size_t i = 0; i < m_entries.size(); ++i)
        m_entries.at(i)->setEnabled(state.entries.at(i));
}

void MDIForm1::applyPanel5()
{
    const Text text = stateText(m_program.link().link());
    m_panels[4]->setText(m_panel5Cleared ? QString() : m_program.texts()[text].toUpper().trimmed());
}

void MDIForm1::showClock()
{
    const QDateTime now = m_program.clock().now();
    m_panels[0]->setText(DataEstesa(now.date(), m_program.texts()));
    m_panels[1]->setText(now.toString(QStringLiteral("HH:mm")));
}

void MDIForm1::showTime(bool enabled)
{
    const Texts &texts = m_program.texts();
    const std::optional<bool> level = m_program.serial().rtsLevel();
    const OwnText line = !level ? OwnText::RtsNotKnown : *level ? OwnText::RtsAsserted : OwnText::RtsReleased;
    const Text state = enabled ? Text::Abilitata : Text::Disabilitata;
    showPicture(m_panels[2], enabled ? QStringLiteral("Time_En.bmp") : QStringLiteral("Time_Dis.bmp"),
                texts[Text::Interfaccia] + QLatin1Char(' ') + texts[state].toLower() + QStringLiteral(" (") +
                    texts[line] + QLatin1Char(')'));
}

void MDIForm1::showLed(LinkMonitor::Link link)
{
    const bool answers = link == LinkMonitor::Link::Answering;
    m_ledIsKnown = true;
    showPicture(m_panels[5], answers ? QStringLiteral("Led_V.bmp") : QStringLiteral("Led_R.bmp"),
                m_program.texts()[stateText(link)].trimmed());
}

QPixmap MDIForm1::picture(const QString &file) const
{
    return QPixmap(m_program.folder().path(QStringLiteral("Immagini/") + file));
}

void MDIForm1::showPicture(QLabel *panel, const QString &file, const QString &words)
{
    const QPixmap loaded = picture(file);
    const int height = panel->fontMetrics().height() + 2;
    if (loaded.isNull())
        panel->clear();
    else
        panel->setPixmap(loaded.scaled(height, height, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    panel->setProperty("file", file);
    panel->setToolTip(words);
    panel->setAccessibleName(words);
}

void MDIForm1::showNotices()
{
    if (m_noticeIsShown || !isEnabled() || m_program.notices().isEmpty())
        return;
    m_noticeIsShown = true;
    const Notice notice = m_program.notices().take();
    m_messages.show(this, notice.icon, m_program.texts().sentence(notice.message), [this] {
        m_noticeIsShown = false;
        showNotices();
    });
}

void MDIForm1::showCritical(const QString &text, std::function<void()> then)
{
    m_messages.show(this, Icon::Critical, text, std::move(then));
}

// The link's alarm ---------------------------------------------------------------------------------------------------

void MDIForm1::raiseAlarm()
{
    tmrFlash.start();
    openOnce<frmMessage>([this] {
        auto *message = new frmMessage(m_program.texts(), picture(QStringLiteral("Warning.bmp")));
        connect(message, &ChildWindow::unloaded, this, &MDIForm1::objMessage_Chiudi);
        return message;
    });
}

void MDIForm1::objMessage_Chiudi()
{
    if (!std::exchange(m_closedByRePower, false)) {
        m_program.link().objMessage_Chiudi();
        showLed(m_program.link().link());
    }
    tmrFlash.stop();
    m_panels[4]->setBackgroundRole(QPalette::Window);
    m_panels[4]->setAutoFillBackground(false);
    setWindowTitle(title(m_program.texts()));
}

void MDIForm1::tmrFlash_Timer()
{
    if (const ChildWindow *message = child("frmMessage"))
        m_area->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(message->parentWidget()));
    QApplication::alert(this);
    const bool inverted = !m_panels[4]->autoFillBackground();
    m_panels[4]->setBackgroundRole(inverted ? QPalette::Highlight : QPalette::Window);
    m_panels[4]->setAutoFillBackground(inverted);
    setWindowTitle(inverted ? QStringLiteral("\u25CF ") + title(m_program.texts()) : title(m_program.texts()));
}

// Windows ------------------------------------------------------------------------------------------------------------

ChildWindow *MDIForm1::child(const char *name) const
{
    return findChild<ChildWindow *>(QString::fromLatin1(name));
}

template<class Window, class Make>
void MDIForm1::openOnce(Make make)
{
    ChildWindow *open = child(Window::staticMetaObject.className());
    if (!open)
        openChild(make());
    else
        m_area->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(open->parentWidget()));
}

void MDIForm1::openChild(ChildWindow *window, Qt::WindowFlags more)
{
    QMdiSubWindow *frame = m_area->addSubWindow(window, Qt::SubWindow | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                                            Qt::WindowCloseButtonHint | more);
    frame->setAttribute(Qt::WA_DeleteOnClose);
    connect(window, &ChildWindow::closeRefused, this, [this] { m_closeAgain = false; });
    connect(window, &QObject::destroyed, this, [this] {
        if (std::exchange(m_closeAgain, false))
            QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    });
    window->show();
    frame->adjustSize();
    const QSize area = m_area->viewport()->size();
    frame->resize(frame->size().boundedTo(area));
    const QSize own = frame->size();
    const QPoint wanted = window->place(area, own);
    frame->move(qBound(0, wanted.x(), area.width() - own.width()), qBound(0, wanted.y(), area.height() - own.height()));
    m_area->setActiveSubWindow(frame);
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

void MDIForm1::objImpCom_Chiudi(int port, int result)
{
    if (m_ending)
        return;
    if (result == 1)
        m_menu.portIsMissing = false;
    applyMenu();
    m_panel5Cleared = true;
    applyPanel5();
    m_program.link().objImpCom_Chiudi(port, result);
}

void MDIForm1::mnuLetConfInt_Click()
{
    openOnce<frmConfInt>([this] {
        auto *window = new frmConfInt(m_program.texts(), m_messages);
        connect(window, &frmConfInt::Leggi, this, [this, window] {
            // What the operator has been shown counts, not what may be known by now.
            const QString offLine = m_program.texts()[Text::InterfacciaNonInLinea].toUpper().trimmed();
            if (m_panels[4]->text() == offLine)
                window->notOnLine();
            else
                m_program.link().readConfiguration();
        });
        connect(window, &ChildWindow::unloaded, this, [this] { m_program.link().configurationClosed(); });
        return window;
    });
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
    auto *window =
        new frmIstruzioni(m_program.texts()[caption], m_program.folder().path(file), m_program.texts(), m_messages);
    openChild(window, Qt::WindowMaximizeButtonHint);
    window->load();
}

void MDIForm1::mnuAbout_Click()
{
    openOnce<frmInfo>([this] { return new frmInfo(m_program.texts(), picture(QStringLiteral("Splash.bmp"))); });
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
    connect(window, &ChildWindow::unloaded, this, [this] {
        m_menu.passwordWindowIsOpen = false;
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
        connect(window, &ChildWindow::unloaded, this, [this] {
            m_menu.passwordWindowIsOpen = false;
            applyMenu();
        });
        return window;
    });
}

void MDIForm1::objPassProg_Chiudi(int type, int code)
{
    enum Code { Right = 1, Cancelled = 2, RightToDeactivate = 3 };
    const auto which = static_cast<Passwords::Type>(type);
    if (code == RightToDeactivate) {
        deactivate(which);
    } else if (which == Passwords::Type::Main && code == Right) {
        m_menu.gateIsClosed = false;
        applyMenu();
        m_panel5Cleared = true;
        applyPanel5();
        m_program.link().ApriCollegamento();
    } else if (which == Passwords::Type::Main && code == Cancelled) {
        QMetaObject::invokeMethod(this, &MDIForm1::end, Qt::QueuedConnection);
    } else if (which == Passwords::Type::Diagnostics && code == Right) {
        openDiagnostics();
    }
}

void MDIForm1::deactivate(Passwords::Type type)
{
    if (m_program.passwords().set(type, {}) != Passwords::Fault::None) {
        showCritical(m_program.texts().sentence(
            {OwnText::UsersUnreadable, {QStringLiteral("Anagrafico.zeb")}, m_program.passwords().reason()}));
        return;
    }
    applyTexts();
}
