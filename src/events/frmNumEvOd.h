#pragma once

#include "widgets/ChildWindow.h"

class Messages;
class QLabel;
class QLineEdit;
class Settings;
class Texts;

/// How many events the view of the day shows.
class frmNumEvOd : public ChildWindow
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmNumEvOd(const Texts &texts, Settings &settings, Messages &messages, QWidget *parent = nullptr);
    void setCaptions() override;

Q_SIGNALS:
    /// The setting has another value now.
    void NumeroCambiato();

private:
    void txtNumEv_Change();
    void cmdOk_Click();
    void selectNumEv();

    const Texts &m_texts;
    Settings &m_settings;
    Messages &m_messages;

    QLabel *lblNumEv;
    QLineEdit *txtNumEv;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
};
