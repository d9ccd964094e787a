#pragma once

#include "mainwindow/Program.h"
#include "mainwindow/WindowSet.h"
#include "users/frmLstUtenti.h"
#include "widgets/Messages.h"

class Printing;

/// The menu entries that lead to the register of users, to be edited or restored, and what its window asks for.
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
    /// The password that passwordWanted() asks for has been given.
    void passwordGiven();

Q_SIGNALS:
    void passwordWanted();

private:
    void askPassword();
    void chooseFile();
    void openWindow(const QString &restored = {});
    void saved(const std::optional<UserChanges> &changes);
    void print(frmLstUtenti *window, Printing *printing);
    void printDuplicates(ChildWindow *window, const QString &report);

    Program &m_program;
    Messages &m_messages;
    WindowSet &m_windows;
    QWidget *m_over;
    bool m_isToRestore = false; ///< what the password is asked for
};
