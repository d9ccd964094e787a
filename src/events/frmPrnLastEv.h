#pragma once

#include "codes/UserDirectory.h"
#include "widgets/ChildWindow.h"
#include "widgets/Printing.h"
#include "widgets/TaskRunner.h"

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
        ArchiveStore &archives; ///< with the users register
    };

    /// @param source  what it refers to, like all others, must outlive this window
    frmPrnLastEv(Source source, const CurrentPrinter &printer, const Texts &texts, Messages &messages,
                 QWidget *parent = nullptr);

    /// Begins to read the users.
    bool open() override;
    void setCaptions() override;

private:
    void txtNumEv_Change();
    void cmdOk_Click();
    bool usersRead(const Result<void> &read);
    void printLast(qsizetype number);

    const EventLog &m_log;
    const Texts &m_texts;
    Messages &m_messages;
    UserDirectory m_users;
    TaskRunner m_runner;
    Printing m_printing;

    QLabel *lblPrnLast;
    QLineEdit *txtNumEv;
    QLabel *lblPrnEv;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
};
