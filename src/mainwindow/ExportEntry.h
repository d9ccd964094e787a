#pragma once

#include "mainwindow/Program.h"
#include "users/UserExport.h"
#include "widgets/TaskRunner.h"

class Messages;

/// The menu entry that writes the users into a file, and what it tells of it.
class ExportEntry : public QObject
{
    Q_OBJECT

public:
    /// All must outlive this object. @param over  window that the choice of a file lies over
    ExportEntry(Program &program, Messages &messages, QWidget *over);

    /// Has the operator choose the file. @param users  those that he sees; none: those of the register as it is saved
    void choose(std::optional<UserRows> users);

private:
    void read(const QString &file);
    void write(const QString &file, const UserRows &users);

    Program &m_program;
    Messages &m_messages;
    QWidget *m_over;
    TaskRunner m_runner;
    std::unique_ptr<SavedUsers> m_saved; ///< being read
};
