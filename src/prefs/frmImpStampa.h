#pragma once

#include "widgets/ChildWindow.h"

class CurrentPrinter;
class Messages;
class QComboBox;
class QLabel;
class Texts;

/// Choice of the printer.
class frmImpStampa : public ChildWindow
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmImpStampa(const Texts &texts, CurrentPrinter &printer, Messages &messages, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void captions();
    void cmdOk_Click();

    const Texts &m_texts;
    CurrentPrinter &m_printer;
    Messages &m_messages;

    QLabel *lblSelStampa;
    QComboBox *cmbStampanti;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
    bool m_isTold = false; ///< that no printer is installed
};
