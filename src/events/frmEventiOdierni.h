#pragma once

#include "events/DailyEventCount.h"
#include "events/DayView.h"
#include "journal/CoverageReading.h"
#include "widgets/ChildWindow.h"
#include "widgets/Printing.h"
#include "widgets/TaskRunner.h"

#include <QTimer>

class Grid;
class QPushButton;
class RowsModel;

/// The latest events of the day, live.
class frmEventiOdierni : public ChildWindow
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmEventiOdierni(const Texts &texts, Messages &messages, ArchiveStore &archives, const Clock &clock,
                     const CurrentPrinter &printer, QWidget *parent = nullptr);

    /// Begins to read the users and to look at the day.
    bool open() override;
    /// Most rows to be shown, limited to 1 to 1000; an open view keeps those that it began with.
    void setNumEv(int rows) { m_limit = qBound(1, rows, HighestDailyEventCount); }
    void setCaptions() override;

Q_SIGNALS:
    /// Events were handed to the printer. @param hours  days of the first and of the last of them
    void printed(const DailyHours &hours, qsizetype rows);

private:
    QStringList shownRow(qsizetype row) const;
    void tmrLoad_Timer();
    void tmrRefresh_Timer();
    void cmdStampa_Click();
    void printShown();
    void holdStill(bool still);
    bool usersRead(const Result<void> &read);
    void fill();

    const Texts &m_texts;
    Messages &m_messages;
    DayView m_view;
    TaskRunner m_runner;
    Printing m_printing;
    int m_limit = 1;
    int m_failedLooks = 0;
    bool m_faultIsTold = false; ///< its message stands open

    Grid *flxgrdEventi;
    RowsModel *m_rows;
    QPushButton *cmdStampa;
    QPushButton *cmdChiudi;
    QTimer tmrLoad{this};
    QTimer tmrRefresh{this};
};
