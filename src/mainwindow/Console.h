#pragma once

#include "mainwindow/Program.h"
#include "platform/ConsoleOutput.h"

/// The program without a window: tells what happens, one line each, on the standard output. Events, and whose they are,
/// only behind the gate.
class Console : public QObject
{
    Q_OBJECT

public:
    /// @param program  prepared, not yet running; must outlive this object
    /// @param remark   told at the head, "" for none
    Console(Program &program, const QString &remark, QObject *parent = nullptr);

    /// The gate has been passed: tells events from now on.
    void tellEvents();

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
