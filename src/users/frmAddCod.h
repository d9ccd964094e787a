#pragma once

#include "users/UserRegister.h"
#include "widgets/ChildWindow.h"
#include "widgets/TaskRunner.h"

class Messages;
class QLabel;
class QLineEdit;
class QProgressBar;
class Texts;

/// Adds a run of pre-coded transmitters.
class frmAddCod : public ChildWindow
{
    Q_OBJECT

public:
    enum class Esito { Done, Cancelled };

    /// @param users  the run is added to its working copy, which must stay until this window has unloaded; like the
    /// texts and the messages, must outlive it
    frmAddCod(const Texts &texts, Messages &messages, UserRegister &users, QWidget *parent = nullptr);
    void setCaptions() override;

Q_SIGNALS:
    /// Not told when the program itself closes the window.
    /// When it is done the first user that was added, if any, is current. @param Codice  his code, "" if none
    void Chiudi(frmAddCod::Esito esito, const QString &Codice);

protected:
    bool canClose() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    using Words = std::function<QString()>; ///< in the language in force

    void txtNumTrasm_Change();
    void txtCodPart_Change();
    void cmdOK_Click();
    void cmdAnnulla_Click();
    void runEnded(const CodeRun &run, const Result<void> &result);
    void tellFault(const Fault &fault);
    void end(const QList<CodeRun::Added> &added);
    void require(QLineEdit *box, Words words);
    QString aboveMaximum() const;
    void tell(Words words);

    const Texts &m_texts;
    Messages &m_messages;
    UserRegister &m_users;
    TaskRunner m_runner;
    bool m_hasUnloaded = false;
    Words m_message; ///< what lblMessage says; none = nothing

    QLabel *lblNumTrasm;
    QLineEdit *txtNumTrasm;
    QLabel *lblCodPart;
    QLineEdit *txtCodPart;
    QLabel *lblMessage;
    QProgressBar *Bar;
    QPushButton *cmdOK;
    QPushButton *cmdAnnulla;
};
