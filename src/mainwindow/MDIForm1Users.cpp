#include "mainwindow/MDIForm1.h"
#include "reports/TextReport.h"
#include "users/UserListReport.h"
#include "users/frmLstUtenti.h"
#include "users/frmRestore.h"
#include "widgets/Printing.h"

// The register of users: opened, restored, printed.

void MDIForm1::mnuUtenti_Click()
{
    m_isToRestore = false;
    if (m_windows.find<frmLstUtenti>())
        openRegister();
    else
        askUsersPassword();
}

void MDIForm1::mnuRestoreUsers_Click()
{
    m_isToRestore = true;
    askUsersPassword();
}

void MDIForm1::askUsersPassword()
{
    if (m_program.passwords().isSet(Passwords::Type::Users))
        openPasswordWindow(Passwords::Type::Users, false);
    else
        usersPasswordGiven();
}

void MDIForm1::usersPasswordGiven()
{
    if (std::exchange(m_isToRestore, false))
        chooseRegister();
    else
        openRegister();
}

void MDIForm1::chooseRegister()
{
    auto *choice = findChild<frmRestore *>();
    if (!choice) {
        choice = new frmRestore(m_program.texts(), m_program.folder(), this);
        connect(choice, &frmRestore::fileSelected, this, &MDIForm1::openRegister);
    }
    choice->open();
}

/// @param restored  file that the users come from; "" = the register itself
void MDIForm1::openRegister(const QString &restored)
{
    m_windows.open<frmLstUtenti>([this, restored] {
        const frmLstUtenti::Interface interface = {[this] { return m_program.settings().CodProtocollo; },
                                                   m_program.link().link() != LinkMonitor::Link::Answering,
                                                   m_program.road().lastReceived()};
        auto *window = new frmLstUtenti(m_program.texts(), m_messages, m_program.archives(), interface);
        if (!restored.isEmpty())
            window->restoreFrom(restored);
        auto *printing = new Printing(window, m_program.printer(), m_program.texts(), m_messages);
        connect(window, &frmLstUtenti::openChild, this, [this, window](ChildWindow *child) {
            window->setWaitsFor(child);
            m_windows.openBeside(child);
        });
        connect(window, &frmLstUtenti::Stampa, this,
                [this, window, printing] { printing->findPrinter([=, this] { printRegister(window, printing); }); });
        connect(window, &frmLstUtenti::StampaDoppioni, this, &MDIForm1::printDuplicates);
        connect(window, &frmLstUtenti::Chiudi, this, &MDIForm1::objLstUtenti_Chiudi);
        if (!restored.isEmpty()) {
            connect(window, &frmLstUtenti::Chiudi, &m_program.keeper(), [this](frmLstUtenti::Esito outcome) {
                if (outcome == frmLstUtenti::Esito::Saved)
                    m_program.journal().note(JournalKind::Restored);
            });
        }
        return window;
    });
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
