#pragma once

#include "link/EventRecord.h"
#include "texts/Texts.h"
#include "widgets/ChildWindow.h"

class QLabel;
class QLineEdit;

/// Diagnostics: shows the last record that came from the interface, whether its code is registered or not.
class frmUtility : public ChildWindow
{
    Q_OBJECT

public:
    explicit frmUtility(const Texts &texts, QWidget *parent = nullptr);

    void showRecord(const EventRecord &record);

    QPoint place(QSize area, QSize own) const override;
    void setCaptions() override;

private:
    const Texts &m_texts;
    std::optional<EventRecord> m_record; ///< last one
    QLabel *lblCodice;
    QLabel *lblCanale;
    QLabel *lblTipo;
    QLineEdit *txtCodice;
    QLineEdit *txtCanale;
    QLineEdit *txtTipo;
    QPushButton *cmdOk;
};
