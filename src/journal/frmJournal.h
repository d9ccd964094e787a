#pragma once

#include "journal/Journal.h"
#include "journal/JournalWords.h"
#include "widgets/ChildWindow.h"
#include "widgets/Printing.h"
#include "widgets/RowsModel.h"
#include "widgets/TaskRunner.h"

class BandLegend;
class DayBand;
class Fields;
class Grid;
class Messages;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// The service journal of a range of days: when the program listened, day by day, and what happened to it.
class frmJournal : public ChildWindow
{
    Q_OBJECT

public:
    /// Days that are shown as bands.
    static constexpr int MostDays = 31;

    /// Shows the last week. All must outlive this window.
    frmJournal(const Texts &texts, Messages &messages, Journal &journal, const CurrentPrinter &printer,
               QWidget *parent = nullptr);
    ~frmJournal() override;

    /// Shows other days.
    void show(QDate first, QDate last);
    using ChildWindow::show;

    bool open() override;
    void setCaptions() override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    Fields *buildParameters();
    void build();
    QList<RowsModel::Column> dayColumns() const;
    QList<RowsModel::Column> noteColumns() const;

    void cmdShow_Click();
    void chkGroups_Click();
    void cmdStampa_Click();

    void refuse(Text message, QLineEdit *box);
    void read(QDate first, QDate last);
    void showRead();
    QString coverage() const;
    void sayCoverage();
    void showDays();
    void showRows();
    void goToEnd();
    void print();

    const Texts &m_texts;
    Messages &m_messages;
    Journal &m_journal;
    TaskRunner m_runner;
    Printing m_printing;
    std::unique_ptr<CoverageReading> m_reading;
    QDate m_first; ///< of the days that are shown, as they were read
    QDate m_last;
    FreedInTurns<QList<JournalRow>> m_rows;
    QList<qsizetype> m_shown; ///< of the rows
    bool m_hasOpened = false;

    Fields *fraRange;
    QLabel *lblFrom;
    QLineEdit *txtFrom;
    QLabel *lblTo;
    QLineEdit *txtTo;
    QLabel *lblGroups;
    std::array<QCheckBox *, JournalGroupCount> chkGroups{};
    Grid *grdDays;
    RowsModel *m_dayRows;
    DayBand *m_bands;
    BandLegend *m_legend;
    QLabel *lblDays;
    QLabel *lblCoverage;
    Grid *grdRows;
    RowsModel *m_noteRows;
    QPushButton *cmdShow;
    QPushButton *cmdStampa;
    QPushButton *cmdChiudi;
};
