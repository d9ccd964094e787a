#pragma once

#include "mainwindow/Program.h"
#include "platform/ConsoleOutput.h"

/// The program without a window: tells what happens, one line each, on the standard output.
class Console : public QObject
{
    Q_OBJECT

public:
    /// @param program  prepared, not yet running; must outlive this object
    /// @param remark   told at the head, "" for none
    Console(Program &program, const QString &remark, QObject *parent = nullptr);

private:
    void tell(const QString &line);
    void tellStored(const Event &event);
    void tellLink(LinkMonitor::Link link);
    void tellLine(bool asserted, TimeProgramme::Cause cause);
    void tellNotices();
    void tellState(Text text);

    Program &m_program;
    ConsoleOutput m_output;
};
