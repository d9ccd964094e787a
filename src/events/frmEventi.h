#pragma once

#include "events/EventSearch.h"
#include "platform/Clock.h"
#include "platform/TaskSequence.h"
#include "widgets/ChildWindow.h"
#include "widgets/Printing.h"
#include "widgets/TaskRunner.h"

class CoverageLine;
class EventHistogram;
class Fields;
class Grid;
class Journal;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class RowsModel;
class UserCombo;

/// Searches the events of a range of days, prints and exports what was found.
class frmEventi : public ChildWindow
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmEventi(const Texts &texts, Messages &messages, ArchiveStore &archives, const Clock &clock,
              const CurrentPrinter &printer, Journal &journal, QWidget *parent = nullptr);
    ~frmEventi() override;

    /// Begins to read the users, whose names come a moment later when there are many.
    bool open() override;
    void setCaptions() override;
    void setKeptElsewhere(std::function<bool()> isAny) { m_search.setKeptElsewhere(std::move(isAny)); }

Q_SIGNALS:
    /// The operator wants to see when the program listened on these days.
    void journalWanted(QDate first, QDate last);
    /// A search has ended, or what it found was handed to the printer or written to a file.
    void searched(const DailyHours &hours, qsizetype rows);
    void printed(const DailyHours &hours, qsizetype rows);
    void exported(const DailyHours &hours, qsizetype rows);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    Fields *buildParameters();
    void build();

    void txtCodice_Change();
    void dbcmbCognome_Change();
    void dbcmbNome_Change();
    void cmdRicerca_Click();
    void cmdStampa_Click();
    void printFound();
    void cmdToExcel_Click();

    TypedQuery query() const;
    void refuse(QueryFault fault);
    void showPartner(const UserCombo *chosen, UserCombo *other, QString User::*name);
    void searchDone(const Result<void> &searched);
    void tellOutcome(const Result<void> &searched);
    QString lacks(const Result<void> &searched) const;
    void showFound(bool isKnown);
    void showCount(bool isKnown);
    void fitButtons();
    Result<QStringList> foundRow(qsizetype row) const;
    QStringList shownRow(qsizetype row);
    void exportTo(const QString &file);
    bool namesRead(const Result<void> &read);
    /// What needs the users waits until they are known.
    void setReading(bool reading);
    /// While a search, a print or an export runs, none of them can begin.
    void setBusy(bool busy);

    const Texts &m_texts;
    Messages &m_messages;
    const Clock &m_clock;
    Disk &m_disk;
    UserDirectory m_users;
    NameSort m_surnames;
    NameSort m_firstNames;
    TaskSequence m_opening;
    EventSearch m_search;
    TaskRunner m_runner;
    Printing m_printing;

    Fields *FrameRic;
    QLabel *lblDataOrig;
    QLineEdit *txtDataOrig;
    QLabel *lblDataFine;
    QLineEdit *txtDataFine;
    QLabel *lblOraPart;
    QLineEdit *txtOraIn;
    QLabel *lblOraFine;
    QLineEdit *txtOraFine;
    QLabel *lblCodice;
    QLineEdit *txtCodice;
    QLabel *lblCognome;
    UserCombo *dbcmbCognome;
    QLabel *lblNome;
    UserCombo *dbcmbNome;
    QLabel *lblCanali;
    std::array<QCheckBox *, 4> chkCanali{};
    QLabel *lblTipo;
    std::array<QCheckBox *, 2> chkTipo{};
    QLabel *lblTipoEv;
    QComboBox *cmbCanali;
    Grid *dbgrdDati;
    RowsModel *m_rows;
    CoverageLine *m_coverage;
    EventHistogram *m_histogram;
    QLabel *lblTrovati;
    QGridLayout *m_buttons;
    QPushButton *cmdRicerca;
    QPushButton *cmdStampa;
    QPushButton *cmdToExcel;
    QPushButton *cmdChiudi;
    DailyHours m_searched; ///< by the last search
    Moment m_searchedAt;   ///< when it began
    bool m_rowFaultTold = false;
};
