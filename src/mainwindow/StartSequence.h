#pragma once

#include "mainwindow/Program.h"

/// What the main window or the terminal puts between a start and the program's data.
class Gate
{
public:
    Gate() = default;
    virtual ~Gate() = default;
    Gate(const Gate &) = delete;
    Gate &operator=(const Gate &) = delete;

    /// Whether the start waits for a register that cannot be read for this reason; else it is refused.
    virtual bool waitsFor(const Fault &reason) const = 0;
    /// The register cannot be read for the moment, and is tried again every second; told after each attempt. Events
    /// are received meanwhile.
    virtual void tellTriedAgain(const Message &why) = 0;
    /// A main password is set: StartSequence::pass() lets in who knows it.
    virtual void askPassword() = 0;
    /// The program cannot go on, and must be ended.
    virtual void refuse(const Message &why) = 0;
    /// The gate is open: what is stored may be shown. The program is loaded and its link opened next, as far as that
    /// has not been done.
    virtual void passed() = 0;
};

/// The one order in which a prepared program starts: the passwords are read, the gate is asked when a main password is
/// set, the archives are loaded, the link is opened.
///
/// A register that is locked holds the gate closed, not the port: archives and link are opened at once, what comes
/// waits undecided, and the register is tried again. As soon as it can be read the events are decided, and the gate is
/// asked.
class StartSequence : public QObject
{
    Q_OBJECT

public:
    /// @param program  prepared; both must outlive this object
    StartSequence(Program &program, Gate &gate, QObject *parent = nullptr);

    /// Loads the program, unless that has been done: the main window does it before its gate.
    void load();
    /// Goes to the gate.
    void run();
    /// The main password has been given: opens the gate.
    void pass();
    /// Nothing is tried any more, and the program ends.
    void end();

    bool isGateClosed() const { return m_isGateClosed; }

private:
    void receive();

    Program &m_program;
    Gate &m_gate;
    QTimer m_again;
    bool m_isLoaded = false;
    bool m_isReceiving = false;
    bool m_isGateClosed = true;
};
