#pragma once

#include "events/DayView.h"
#include "widgets/ChildWindow.h"

#include <QTimer>

class Messages;
class QPushButton;
class QTableView;
class RowsModel;
class Texts;

/// The latest events of the day, live.
class frmEventiOdierni : public ChildWindow
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmEventiOdierni(const Texts &texts, Messages &messages, ArchiveStore &archives, const Clock &clock,
                     QWidget *parent = nullptr);

    /// Reads the users and begins to look at the day. When the users cannot be read, the operator is told and this
    /// window is of no use.
    bool open();
    /// Most rows to be shown, 1 to 1000; an open view keeps those that it began with.
    void setNumEv(int rows) { m_limit = rows; }

    /// The grid is not to change, because it is being printed.
    void holdStill(bool still);
    /// The rows that hold an event, as they are shown.
    const QList<QStringList> &shownRows() const { return m_view.rows(); }

Q_SIGNALS:
    void StampaRichiesta();

private:
    void captions();
    void tmrLoad_Timer();
    void tmrRefresh_Timer();
    void fill();

    const Texts &m_texts;
    Messages &m_messages;
    DayView m_view;
    int m_limit = 1;
    bool m_faultTold = false;

    QTableView *flxgrdEventi;
    RowsModel *m_rows;
    QPushButton *cmdStampa;
    QPushButton *cmdChiudi;
    QTimer tmrLoad{this};
    QTimer tmrRefresh{this};
};
