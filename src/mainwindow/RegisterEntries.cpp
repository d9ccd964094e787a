#include "mainwindow/RegisterEntries.h"

#include "reports/TextReport.h"
#include "users/UserListReport.h"
#include "users/frmRestore.h"
#include "widgets/Printing.h"

RegisterEntries::RegisterEntries(Program &program, Messages &messages, WindowSet &windows, QWidget *over)
    : m_program(program), m_messages(messages), m_windows(windows), m_over(over)
{
}

void RegisterEntries::open()
{
    m_isToRestore = false;
    if (m_windows.find<frmLstUtenti>())
        openWindow();
    else
        askPassword();
}

void RegisterEntries::restore()
{
    m_isToRestore = true;
    askPassword();
}

void RegisterEntries::askPassword()
{
    if (m_program.passwords().isSet(Passwords::Type::Users))
        Q_EMIT passwordWanted();
    else
        passwordGiven();
}

void RegisterEntries::passwordGiven()
{
    if (std::exchange(m_isToRestore, false))
        chooseFile();
    else
        openWindow();
}

void RegisterEntries::chooseFile()
{
    auto *choice = m_over->findChild<frmRestore *>();
    if (!choice) {
        choice = new frmRestore(m_program.texts(), m_program.folder(), m_over);
        connect(choice, &frmRestore::fileSelected, this, &RegisterEntries::openWindow);
    }
    choice->open();
}

/// @param restored  file that the users come from; "" = the register itself
void RegisterEntries::openWindow(const QString &restored)
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
                [this, window, printing] { printing->findPrinter([=, this] { print(window, printing); }); });
        connect(window, &frmLstUtenti::StampaDoppioni, this, &RegisterEntries::printDuplicates);
        connect(window, &frmLstUtenti::Chiudi, this, [this, window, isRestored = !restored.isEmpty()](auto outcome) {
            if (outcome == frmLstUtenti::Esito::Saved)
                saved(isRestored ? std::nullopt : std::optional(window->changes()));
        });
        return window;
    });
}

/// @param changes  none when all of the register was restored
void RegisterEntries::saved(const std::optional<UserChanges> &changes)
{
    if (!changes)
        m_program.journal().note(JournalKind::Restored);
    m_program.journal().note(JournalKind::RegisterSaved, changes ? changes->text() : QString());
    m_program.reloadUsers();
}

void RegisterEntries::print(frmLstUtenti *window, Printing *printing)
{
    // As it stands now, whatever is changed while it is printed.
    printing->print(std::make_unique<UserListReport>(m_program.texts(), window->users()),
                    m_program.texts()[Text::ListaUtenti]);
}

void RegisterEntries::printDuplicates(ChildWindow *window, const QString &report)
{
    auto *printing = window->findChild<Printing *>(QString(), Qt::FindDirectChildrenOnly);
    if (!printing)
        printing = new Printing(window, m_program.printer(), m_program.texts(), m_messages);
    printing->findPrinter(
        [=] { printing->print(std::make_unique<TextReport>(report.split(QLatin1Char('\n'))), window->windowTitle()); },
        {}, Icon::None);
}
