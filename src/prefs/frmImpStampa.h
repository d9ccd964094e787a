#pragma once

#include "startup/CurrentPrinter.h"
#include "widgets/ChildWindow.h"

class Messages;
class QComboBox;
class QLabel;
class Texts;

/// Choice of the printer. Opens with an empty list, which is filled when the print system has answered.
class frmImpStampa : public ChildWindow
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmImpStampa(const Texts &texts, CurrentPrinter &printer, Messages &messages, QWidget *parent = nullptr);
    void setCaptions() override;

private:
    void fill(const Result<PrinterList> &list);
    void cmdOk_Click();

    const Texts &m_texts;
    CurrentPrinter &m_printer;
    Messages &m_messages;

    QLabel *lblSelStampa;
    QComboBox *cmbStampanti;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
    std::unique_ptr<Printers::ListErrand> m_list;
};
