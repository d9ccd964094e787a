#pragma once

#include "mainwindow/Program.h"

/// Where the main password of a run without a window comes from.
struct ConsoleGate {
    QString passwordFile; ///< "" = it is asked for on the terminal

    /// Reads the passwords and, with a main password set, lets nobody pass who does not know it. A register that is
    /// locked is tried again until it can be read. Each wrong password costs a second.
    /// @return why the program must not go on, in words; "" when it may
    QString pass(Program &program) const;

private:
    QString readPasswords(Program &program) const;
    QString fromFile(Program &program) const;
    QString fromTerminal(Program &program) const;
};
