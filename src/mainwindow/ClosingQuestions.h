#pragma once

#include "mainwindow/BoxQueue.h"
#include "mainwindow/Program.h"

/// What the operator is asked before the program ends by his hand, and told when it has ended. No question stands
/// twice.
class ClosingQuestions : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this object.
    ClosingQuestions(Program &program, BoxQueue &boxes) : m_program(program), m_boxes(boxes) {}

    /// Whether supervision may end; asked before any window asks what becomes of its work. @return false while nobody
    /// has agreed: he is being asked
    bool maySupervisionEnd();
    /// Whether events may be lost that are in memory only; true when there are none.
    bool mayEventsBeLost();
    /// A window has stayed open: the next time supervision is to end, that is asked anew.
    void forget() { m_endIsAgreed = false; }

    /// The program has ended: tells what was found out at the very end, on the standard error too.
    /// @param isHeldUp  the system waits for the program: nothing less than a loss is told in a box, and not for long
    /// @return whether the window must stay until mayGoOn()
    bool tellRest(bool isHeldUp);

Q_SIGNALS:
    /// What kept the window from closing does so no more.
    void mayGoOn();
    /// The operator does not want what he was asked for.
    void calledOff();

private:
    Program &m_program;
    BoxQueue &m_boxes;
    bool m_endIsAsked = false;
    bool m_endIsAgreed = false;
    bool m_lossIsAsked = false;
    bool m_lossIsAgreed = false;
};
