#include "mainwindow/MDIForm1.h"
#include "reports/TextReport.h"
#include "users/UserListReport.h"
#include "users/frmLstUtenti.h"
#include "widgets/Printing.h"

// The register of users.

void MDIForm1::mnuUtenti_Click()
{
    if (child("frmLstUtenti") || !m_program.passwords().isSet(Passwords::Type::Users)) {
        openRegister();
        return;
    }
    m_menu.usersAreAsked = true;
    askPassword(Passwords::Type::Users, false);
}

void MDIForm1::openRegister()
{
    frmLstUtenti *made = nullptr;
    openOnce<frmLstUtenti>([&] {
        const frmLstUtenti::Interface interface = {[this] { return m_program.settings().CodProtocollo; },
                                                   m_program.link().link() != LinkMonitor::Link::Answering,
                                                   m_program.road().lastReceived()};
        made = new frmLstUtenti(m_program.texts(), m_messages, m_program.archives(), interface);
        return made;
    });
    if (!made)
        return;
    m_menu.registerIsOpen = true;
    applyMenu();
    auto *printing = new Printing(made, m_program.printer(), m_program.texts(), m_messages);
    connect(made, &frmLstUtenti::openChild, this, [this, made](ChildWindow *window) {
        made->setWaitsFor(window);
        openChild(window);
    });
    connect(made, &frmLstUtenti::Stampa, this,
            [this, made, printing] { printing->findPrinter([=, this] { printRegister(made, printing); }); });
    connect(made, &frmLstUtenti::StampaDoppioni, this, &MDIForm1::printDuplicates);
    connect(made, &frmLstUtenti::Chiudi, this, &MDIForm1::objLstUtenti_Chiudi);
    // Whatever way it goes, its copy has gone with it.
    connect(made, &QObject::destroyed, this, [this] {
        m_menu.registerIsOpen = false;
        applyMenu();
    });
    if (!made->open())
        made->unload();
}

void MDIForm1::objLstUtenti_Chiudi(frmLstUtenti::Esito outcome)
{
    if (outcome == frmLstUtenti::Esito::Saved)
        m_program.reloadUsers();
}

void MDIForm1::printRegister(frmLstUtenti *window, Printing *printing)
{
    // As it stands now, whatever is changed while it is printed.
    printing->print(std::make_unique<UserListReport>(m_program.texts(), window->users()),
                    m_program.texts()[Text::ListaUtenti]);
}

void MDIForm1::printDuplicates(ChildWindow *window, const QString &report)
{
    auto *printing = window->findChild<Printing *>(QString(), Qt::FindDirectChildrenOnly);
    if (!printing)
        printing = new Printing(window, m_program.printer(), m_program.texts(), m_messages);
    printing->findPrinter(
        [=] { printing->print(std::make_unique<TextReport>(report.split(QLatin1Char('\n'))), window->windowTitle()); },
        {}, Icon::None);
}
