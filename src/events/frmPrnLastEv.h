#pragma once

#include "codes/UserDirectory.h"
#include "events/LastEvents.h"
#include "journal/CoverageReading.h"
#include "widgets/ChildWindow.h"
#include "widgets/Printing.h"
#include "widgets/TaskRunner.h"

class Clock;
class EventLog;
class QLabel;
class QLineEdit;

/// Print of the day's last events.
class frmPrnLastEv : public ChildWindow
{
    Q_OBJECT

public:
    /// What is printed.
    struct Source {
        const EventLog &log;
        const Clock &clock;
        ArchiveStore &archives; ///< with the users register
    };

    /// @param source  what it refers to, like all others, must outlive this window
    frmPrnLastEv(Source source, const CurrentPrinter &printer, const Texts &texts, Messages &messages,
                 QWidget *parent = nullptr);

    /// Begins to read the users.
    bool open() override;
    void setCaptions() override;

Q_SIGNALS:
    /// Events were handed to the printer. @param hours  days of the first and of the last of them
    void printed(const DailyHours &hours, qsizetype rows);

private:
    void txtNumEv_Change();
    void cmdOk_Click();
    bool usersRead(const Result<void> &read);
    void printLast(qsizetype number);
    void eventsRead(const Result<void> &read);

    const EventLog &m_log;
    const Clock &m_clock;
    const Texts &m_texts;
    Messages &m_messages;
    ArchiveStore &m_archives;
    UserDirectory m_users;
    LastEvents m_events;
    TaskRunner m_runner;
    Printing m_printing;

    QLabel *lblPrnLast;
    QLineEdit *txtNumEv;
    QLabel *lblPrnEv;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
};
