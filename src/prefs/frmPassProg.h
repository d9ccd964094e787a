#pragma once

#include "prefs/Passwords.h"
#include "widgets/ChildWindow.h"

class Messages;
class QLabel;
class QLineEdit;
class Texts;

/// Asks a stored password, to open what it guards or to remove it. Only its two buttons close it.
class frmPassProg : public ChildWindow
{
    Q_OBJECT

public:
    /// How it was answered; the last two where it was asked in order to remove it.
    enum class Codice { Right = 1, Cancelled = 2, RightToDeactivate = 3, CancelledToDeactivate = 4 };

    /// All must outlive this window.
    frmPassProg(const Texts &texts, Messages &messages, const Passwords &passwords, QWidget *parent = nullptr);

    bool DisattivaPW = false; ///< the password is asked in order to remove it
    void setTipoPass(Passwords::Type type);
    Passwords::Type tipoPass() const { return m_type; }
    void setCaptions() override;

Q_SIGNALS:
    /// @param tipo  the password that was asked
    void Chiudi(Passwords::Type tipo, frmPassProg::Codice codice);
    /// Another one was typed.
    void Errata(Passwords::Type tipo);

protected:
    bool canClose() override;

private:
    void txtPass_Change();
    void cmdOk_Click();
    void cmdAnnulla_Click();
    void selectPass();

    const Texts &m_texts;
    Messages &m_messages;
    const Passwords &m_passwords;
    Passwords::Type m_type = Passwords::Type::Main;

    QLabel *lblPass;
    QLineEdit *txtPass;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
};
