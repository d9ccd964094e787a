#pragma once

#include "mainwindow/Program.h"

class QMainWindow;
class StatusPanels;

/// What the main window shows of the program in its caption and its status bar: date and time, the time programme, the
/// link, what waits. While the alarm stands it flashes.
class StatusDisplay : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this object.
    StatusDisplay(Program &program, QMainWindow &window);

    /// Shows everything anew, in the language in force.
    void applyTexts();
    /// The start waits for the register, for that reason; none: it does not any more.
    void setRegisterWait(std::optional<Message> why);
    /// The window closes: nothing flashes any more.
    void stop() { tmrFlash->stop(); }

Q_SIGNALS:
    /// Once a beat of the flashing.
    void flashed();

private:
    void showClock();
    void showTime(bool isEnabled);
    void showLink();
    void showWaiting();
    void tmrFlash_Timer();
    QString caption() const;

    Program &m_program;
    QMainWindow &m_window;
    StatusPanels *StatusBar1;
    QTimer *tmrFlash;
    std::optional<Message> m_registerWait;
};
