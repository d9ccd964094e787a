#pragma once

#include "mainwindow/Program.h"
#include "platform/ConsoleOutput.h"

/// The program without a window: tells what happens, one line each, on the standard output.
class Console : public QObject
{
    Q_OBJECT

public:
    /// @param program  prepared, not yet running; must outlive this object
    explicit Console(Program &program, QObject *parent = nullptr);

    /// A line of the console's own, after what has been told so far.
    void tell(const QString &line);

private:
    void tellStored(const Event &event);
    void tellLink(LinkMonitor::Purpose purpose, const InterfaceConfig &config);
    void tellNotices();
    void tellState(Text text);

    Program &m_program;
    ConsoleOutput m_output;
};
