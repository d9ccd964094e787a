#pragma once

#include "mainwindow/ExportEntry.h"
#include "mainwindow/Program.h"
#include "mainwindow/WindowSet.h"
#include "users/frmLstUtenti.h"
#include "widgets/Messages.h"

class Printing;

/// The menu entries that lead to the register of users, to be edited, restored, exported or imported into, and what its
/// window asks for. Where that window is open, nobody is asked for the password again.
class RegisterEntries : public QObject
{
    Q_OBJECT

public:
    /// All must outlive this object. @param over  window that the choice of a file lies over
    RegisterEntries(Program &program, Messages &messages, WindowSet &windows, QWidget *over);

    /// Opens the register, or brings it forward; with a users password once that has been given.
    void open();
    /// The same with the users of a file that the operator chooses.
    void restore();
    /// Writes the users into a file: those of the window where it is open, else those of the register as it is saved.
    void exportUsers();
    /// Opens the register like open(), with what a file would change in it.
    void importUsers();
    /// The password that passwordWanted() asks for has been given.
    void passwordGiven();

Q_SIGNALS:
    void passwordWanted();

private:
    enum class Purpose { Edit, Restore, Export, Import };

    void enter(Purpose purpose);
    void askPassword(Purpose purpose);
    void go(Purpose purpose);
    void chooseRestored();
    void chooseImported();
    void take(const QString &imported);
    frmLstUtenti *openWindow(const QString &restored = {});
    void saved(const std::optional<UserChanges> &changes);
    void print(frmLstUtenti *window, Printing *printing);
    void printDuplicates(ChildWindow *window, const QString &report);

    Program &m_program;
    Messages &m_messages;
    WindowSet &m_windows;
    QWidget *m_over;
    ExportEntry m_export;
    Purpose m_purpose = Purpose::Edit; ///< what the password is asked for
};
