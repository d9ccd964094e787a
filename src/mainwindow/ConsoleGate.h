#pragma once

#include "mainwindow/Console.h"
#include "mainwindow/StartSequence.h"
#include "prefs/PasswordPrompt.h"

/// Start and gate of a run without a window. A wrong password costs a second.
class ConsoleGate : public QObject, private Gate
{
    Q_OBJECT

public:
    /// What the command line says of the run.
    struct Options {
        QString passwordFile; ///< the main password is its first line; "" = it is asked for on the terminal
        QString remark;       ///< told at the head, "" for none
    };

    /// @param program  prepared; must outlive this object
    ConsoleGate(Program &program, Options options, QObject *parent = nullptr);

    void run() { m_start.run(); }
    /// Ends the program, and tells what is found out at the very end.
    void end() { m_start.end(); }

Q_SIGNALS:
    /// Events are received, or will be as soon as there is a port, and the register can be read; told once or more.
    void works();
    /// The program must not go on. @param why  in words
    void refused(const QString &why);

private:
    bool waitsFor(const Fault &reason) const override { return reason.code == FaultCode::Locked; }
    void tellTriedAgain(const Message &why) override;
    void askPassword() override;
    void refuse(const Message &why) override;
    void passed() override;

    Console &console();

    Program &m_program;
    const Options m_options;
    StartSequence m_start;
    std::unique_ptr<PasswordPrompt> m_prompt;
    std::unique_ptr<Console> m_console;
};
