#pragma once

#include "codes/CodeRules.h"
#include "link/EventRoad.h"
#include "widgets/ChildWindow.h"

#include <QTimer>

#include <optional>

class Messages;
class QLabel;
class QLineEdit;
class QRadioButton;

/// Entry of one code: typed, or taken from the transmitter or keypad that reports first.
class frmInsCodice : public ChildWindow
{
    Q_OBJECT

public:
    enum class Esito { Confirmed, Cancelled };
    using Exists = std::function<bool(const QString &code, CodeType type)>;

    /// @param CodMod  code of the user who gets another one, nothing for a new user
    /// @param received  last code of the line; like the texts and the messages, must outlive this window
    /// @param exists  whether a user has the code and the type already
    frmInsCodice(const Texts &texts, Messages &messages, std::optional<QString> CodMod,
                 EventRoad::ReceivedCode &received, Exists exists, QWidget *parent = nullptr);
    void setCaptions() override;

Q_SIGNALS:
    /// Not told when the program itself closes the window.
    /// @param Codice  empty when cancelled, and @p Tipo means nothing then; @param CodMod  as it was given
    void Chiudi(const QString &Codice, CodeType Tipo, frmInsCodice::Esito esito, const std::optional<QString> &CodMod);

protected:
    bool canClose() override;

private:
    void tmrRicezione_Timer();
    void txtCodice_Change();
    void cmdOk_Click();
    void cmdAnnulla_Click();
    void refuse(Icon icon, Text text);

    const Texts &m_texts;
    Messages &m_messages;
    const std::optional<QString> m_codMod;
    EventRoad::ReceivedCode &m_received;
    const Exists m_exists;

    QTimer tmrRicezione;
    QLabel *lblCodice;
    QLineEdit *txtCodice;
    QRadioButton *optTX;
    QRadioButton *optDKS;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
};
