#include "mainwindow/RegisterEntries.h"

#include "reports/TextReport.h"
#include "startup/PlainText.h"
#include "texts/OwnText.h"
#include "users/UserListReport.h"
#include "users/frmRestore.h"
#include "widgets/Printing.h"

#include <QFileDialog>

RegisterEntries::RegisterEntries(Program &program, Messages &messages, WindowSet &windows, QWidget *over)
    : m_program(program), m_messages(messages), m_windows(windows), m_over(over), m_export(program, messages, over)
{
}

void RegisterEntries::open()
{
    enter(Purpose::Edit);
}

void RegisterEntries::restore()
{
    askPassword(Purpose::Restore);
}

void RegisterEntries::exportUsers()
{
    enter(Purpose::Export);
}

void RegisterEntries::importUsers()
{
    enter(Purpose::Import);
}

void RegisterEntries::enter(Purpose purpose)
{
    const auto *window = m_windows.find<frmLstUtenti>();
    if (!window)
        return askPassword(purpose);
    // While the register works, or a box of its is open, that comes first.
    go(window->isEnabled() ? purpose : Purpose::Edit);
}

void RegisterEntries::askPassword(Purpose purpose)
{
    m_purpose = purpose;
    if (m_program.passwords().isSet(Passwords::Type::Users))
        Q_EMIT passwordWanted();
    else
        passwordGiven();
}

void RegisterEntries::passwordGiven()
{
    go(std::exchange(m_purpose, Purpose::Edit));
}

void RegisterEntries::go(Purpose purpose)
{
    switch (purpose) {
    case Purpose::Edit:
        openWindow();
        break;
    case Purpose::Restore:
        chooseRestored();
        break;
    case Purpose::Export: {
        auto *window = m_windows.find<frmLstUtenti>();
        std::optional<UserRows> users = window ? window->rows() : std::nullopt;
        if (users || !window)
            m_export.choose(std::move(users));
        break;
    }
    case Purpose::Import:
        chooseImported();
        break;
    }
}

void RegisterEntries::chooseRestored()
{
    auto *choice = m_over->findChild<frmRestore *>();
    if (!choice) {
        choice = new frmRestore(m_program.texts(), m_program.folder(), m_over);
        connect(choice, &frmRestore::fileSelected, this, &RegisterEntries::openWindow);
    }
    choice->open();
}

void RegisterEntries::chooseImported()
{
    const Texts &texts = m_program.texts();
    auto *choice = new QFileDialog(m_over, titleOf(texts[OwnText::MnuImportUsers]));
    choice->setObjectName(QStringLiteral("ComDial"));
    choice->setAttribute(Qt::WA_DeleteOnClose);
    choice->setFileMode(QFileDialog::ExistingFile);
    choice->setOptions(QFileDialog::ReadOnly | QFileDialog::DontUseNativeDialog);
    choice->setViewMode(QFileDialog::Detail);
    choice->setNameFilters({texts[OwnText::CsvFiles] + QStringLiteral(" (*.csv *.txt)"), QStringLiteral("*")});
    connect(choice, &QFileDialog::fileSelected, this, &RegisterEntries::take);
    choice->open();
}

void RegisterEntries::take(const QString &imported)
{
    auto *window = m_windows.find<frmLstUtenti>();
    if (!window)
        window = openWindow();
    if (window)
        window->importFrom(imported);
}

/// @param restored  file that the users come from; "" = the register itself
/// @return the new window; null when there was one, or when it could not be opened
frmLstUtenti *RegisterEntries::openWindow(const QString &restored)
{
    return m_windows.open<frmLstUtenti>([this, restored] {
        const frmLstUtenti::Interface interface = {[this] { return m_program.settings().CodProtocollo; },
                                                   m_program.link().link() != LinkMonitor::Link::Answering};
        auto *window = new frmLstUtenti(m_program.texts(), m_messages, m_program.archives(), interface);
        connect(&m_program.road(), &EventRoad::recordReceived, window, &frmLstUtenti::recordReceived);
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
    // What is printed is a copy of the rows: nothing has to wait for its end.
    window->printed();
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
