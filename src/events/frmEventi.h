#pragma once

#include "events/EventSearch.h"
#include "platform/Clock.h"
#include "widgets/ChildWindow.h"

#include <QPointer>
#include <QTimer>

class frmRicercapr;
class Messages;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
class RowsModel;
class Texts;
class UserCombo;

/// Searches the events of a range of days.
class frmEventi : public ChildWindow
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmEventi(const Texts &texts, Messages &messages, ArchiveStore &archives, const Clock &clock,
              QWidget *parent = nullptr);
    ~frmEventi() override;

    /// Reads the users. When they cannot be read, the operator is told and this window is of no use.
    bool open();

private:
    QGroupBox *buildParameters();
    void build();
    void captions();

    void txtCodice_Change();
    void dbcmbCognome_Change();
    void dbcmbNome_Change();
    void cmdRicerca_Click();
    void tmrRicerca_Timer();
    void objRicercaPr_Annulla();

    EventQuery query() const;
    void refuse(QueryFault fault);
    void showPartner(const UserCombo *chosen, UserCombo *other, QString UsersCopy::User::*name);
    void searchDone();
    void setBusy(bool busy);

    const Texts &m_texts;
    Messages &m_messages;
    UsersCopy m_users;
    EventSearch m_search;

    QGroupBox *FrameRic;
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
    QTableView *dbgrdDati;
    RowsModel *m_rows;
    QPushButton *cmdRicerca;
    QPushButton *cmdStampa;
    QPushButton *cmdToExcel;
    QPushButton *cmdChiudi;
    QTimer tmrRicerca;
    QPointer<frmRicercapr> m_progress;
};
