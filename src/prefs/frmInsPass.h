#pragma once

#include "prefs/Passwords.h"
#include "widgets/ChildWindow.h"

class Messages;
class QLabel;
class QLineEdit;
class Texts;

/// Sets one of the three passwords.
class frmInsPass : public ChildWindow
{
    Q_OBJECT

public:
    /// All must outlive this window.
    frmInsPass(const Texts &texts, Messages &messages, Passwords &passwords, QWidget *parent = nullptr);

    void setTipoPass(Passwords::Type type);
    void setCaptions() override;

Q_SIGNALS:
    /// @param tipo  the password that was stored; with nothing typed it is stored as none
    void PasswordImpostata(Passwords::Type tipo);

private:
    void txtPass_Change();
    void txtConfPass_Change();
    void cmdOk_Click();
    void selectPass();

    const Texts &m_texts;
    Messages &m_messages;
    Passwords &m_passwords;
    Passwords::Type m_type = Passwords::Type::Main;

    QLabel *lblSpiegIns;
    QLabel *lblPass;
    QLineEdit *txtPass;
    QLabel *lblConfPass;
    QLineEdit *txtConfPass;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
};
