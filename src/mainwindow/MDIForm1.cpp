#include "mainwindow/MDIForm1.h"

#include "prefs/Splash.h"
#include "startup/DateTimeText.h"
#include "startup/Version.h"
#include "widgets/ClientArea.h"

#include <QAction>
#include <QApplication>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSessionManager>

namespace {

constexpr int showMilliseconds = 1000;
constexpr int flashMilliseconds = 300;

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
    : QMainWindow(parent),
      m_program(program),
      m_messages(messages),
      m_start(program, *this),
      m_area(new ClientArea(program.settings(), this)),
      StatusBar1(new StatusPanels(QStringLiteral("StatusBar1"), {2500, 700, 640, 1500, 0, 400}, this))
{
    setObjectName(QStringLiteral("MDIForm1"));
    m_area->setObjectName(QStringLiteral("Client"));
    // When a window closes, the one that was in front before it comes back.
    m_area->setActivationOrder(QMdiArea::ActivationHistoryOrder);
    setCentralWidget(m_area);
    connect(m_area, &QMdiArea::subWindowActivated, this, &MDIForm1::subWindowActivated);
    buildMenu();
    setStatusBar(StatusBar1);
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
    connect(&program.log(), &EventLog::waitingChanged, this, &MDIForm1::showWaiting);
    connect(&program.notices(), &Notices::posted, this, &MDIForm1::showNext, Qt::QueuedConnection);
    connect(qApp, &QGuiApplication::commitDataRequest, this, [this](QSessionManager &manager) {
        if (!closeForSession(manager.allowsInteraction()))
            manager.cancel();
    });
    qApp->installEventFilter(this);
    connectLink();
}

MDIForm1::~MDIForm1()
{
    // What they tell when they go is heard while there is somebody to hear it.
    qDeleteAll(openWindows());
    delete m_alarm;
    m_area->disconnect(this);
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
    const auto separate = [](QMenu *menu, const char *name) {
        menu->addSeparator()->setObjectName(QString::fromLatin1(name));
    };
    addEntry(file, Entry::ImpPrn, "mnuImpPrn", &MDIForm1::mnuImpPrn_Click);
    separate(file, "mnuLinea");
    addEntry(file, Entry::Exit, "mnuExit", &MDIForm1::mnuExit_Click);

    addEntry(users, Entry::Utenti, "mnuUtenti", &MDIForm1::mnuUtenti_Click);
    addEntry(users, Entry::FascieOr, "mnuFascieOr", &MDIForm1::mnuFascieOr_Click);
    addEntry(users, Entry::ProgFerie, "mnuProgFerie", &MDIForm1::mnuProgFerie_Click);

    addEntry(events, Entry::Eventi, "mnuEventi", &MDIForm1::mnuEventi_Click);
    addEntry(events, Entry::EventiOdierni, "mnuEventiOdierni", &MDIForm1::mnuEventiOdierni_Click);
    addEntry(events, Entry::PrnLastEv, "mnuPrnLastEv", &MDIForm1::mnuPrnLastEv_Click);
    separate(events, "mnuLineaCons");
    addEntry(events, Entry::NumEvOdVis, "mnuNumEvOdVis", &MDIForm1::mnuNumEvOdVis_Click);

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
    m_entries.at(static_cast<size_t>(Entry::IstrSwKOR))->setShortcut(Qt::Key_F1);
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

// Loading ------------------------------------------------------------------------------------------------------------

void MDIForm1::load()
{
    m_translation.apply(m_program.texts().language());
    m_messages.setTitle(m_program.texts()[Text::InterfacciaMultiprotocollo]);
    QApplication::setWindowIcon(QIcon(QPixmap(pictureFile("Icon.png"))));
    setGeometry(screen()->availableGeometry());
    setWindowState(Qt::WindowMaximized);
    setEnabled(false);
    m_splash = new Splash(QPixmap(pictureFile("Splash.bmp")));
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
    showNext();
    m_start.run();
}

void MDIForm1::tellTriedAgain(const Message &why)
{
    m_registerWait = m_program.texts().sentence(why);
    applyTexts();
}

void MDIForm1::askPassword()
{
    m_registerWait.clear();
    applyTexts();
    askPassword(Passwords::Type::Main, false);
}

void MDIForm1::refuse(const Message &why)
{
    m_registerWait.clear();
    applyTexts();
    showCritical(m_program.texts().sentence(why), [this] { end(); });
}

void MDIForm1::passed()
{
    m_registerWait.clear();
    applyTexts();
}

// What is shown ------------------------------------------------------------------------------------------------------

void MDIForm1::applyTexts()
{
    const Texts &texts = m_program.texts();
    setWindowTitle(caption());
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
    QAction *number = m_entries.at(static_cast<size_t>(Entry::NumEvOdVis));
    number->setText(QStringLiteral("%1 (%2)").arg(number->text()).arg(m_program.settings().NumEvOd));
    applyMenu();
    showLink();
    showClock();
    showWaiting();
    showTime(m_program.timeProgramme().isEnabled());
}

QString MDIForm1::caption() const
{
    return m_program.texts()[Text::InterfacciaMultiprotocollo] + QStringLiteral(" - V") + programVersion();
}

void MDIForm1::applyMenu()
{
    m_menu.gateIsClosed = m_start.isGateClosed();
    const MenuState state = menuState(m_menu);
    for (size_t i = 0; i < m_menus.size(); ++i)
        m_menus.at(i)->setEnabled(state.menus.at(i));
    for (size_t i = 0; i < m_entries.size(); ++i)
        m_entries.at(i)->setEnabled(state.entries.at(i));
}

void MDIForm1::showClock()
{
    const QDateTime now = m_program.clock().now();
    StatusBar1->showText(1, DataEstesa(now.date(), m_program.texts()), DataBarre(m_program.clock().date()));
    StatusBar1->showText(2, now.toString(QStringLiteral("HH:mm")));
}

void MDIForm1::showTime(bool enabled)
{
    const Texts &texts = m_program.texts();
    const std::optional<bool> level = m_program.serial().rtsLevel();
    const OwnText line = !level ? OwnText::RtsNotKnown : *level ? OwnText::RtsAsserted : OwnText::RtsReleased;
    const QString state =
        texts[Text::Interfaccia] + QLatin1Char(' ') + texts[enabled ? Text::Abilitata : Text::Disabilitata].toLower();
    StatusBar1->showPicture(3, pictureFile(enabled ? "Time_En.bmp" : "Time_Dis.bmp"),
                            state + QStringLiteral(" (") + texts[line] + QLatin1Char(')'), state);
}

QString MDIForm1::pictureFile(const char *name) const
{
    return m_program.folder().fileToOpen(QStringLiteral("Immagini/") + QLatin1String(name));
}

// What is told -------------------------------------------------------------------------------------------------------

void MDIForm1::showNext()
{
    while (!m_boxIsShown && isEnabled()) {
        if (!m_program.notices().isEmpty()) {
            const Notice notice = m_program.notices().take();
            showBox(notice.icon, m_program.texts().sentence(notice.message));
            continue;
        }
        if (m_waiting.isEmpty())
            return;
        const Waiting next = m_waiting.takeFirst();
        if (next.text.isEmpty())
            next.then();
        else
            showBox(Icon::Critical, next.text, next.then);
    }
}

void MDIForm1::showBox(Icon icon, const QString &text, std::function<void()> then)
{
    m_boxIsShown = true;
    m_messages.show(this, icon, text, [this, then = std::move(then)] {
        m_boxIsShown = false;
        if (then)
            then();
        showNext();
    });
}

void MDIForm1::showCritical(const QString &text, std::function<void()> then)
{
    m_waiting.append({text, std::move(then)});
    showNext();
}

void MDIForm1::whenTold(std::function<void()> then)
{
    m_waiting.append({{}, std::move(then)});
    showNext();
}
