#pragma once

#include "codes/CodeRules.h"
#include "link/EventRecord.h"
#include "texts/Texts.h"
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

    /// @param texts  like the messages, must outlive this window
    /// @param CodMod  code of the user who gets another one, nothing for a new user
    /// @param exists  whether a user has the code and the type already
    frmInsCodice(const Texts &texts, Messages &messages, std::optional<QString> CodMod, Exists exists,
                 QWidget *parent = nullptr);
    void setCaptions() override;

    /// A record has come from the interface: the latest one is taken at the next tick.
    void recordReceived(const EventRecord &record) { m_received = record; }

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
    const Exists m_exists;
    std::optional<EventRecord> m_received;

    QTimer tmrRicezione;
    QLabel *lblCodice;
    QLineEdit *txtCodice;
    QRadioButton *optTX;
    QRadioButton *optDKS;
    QPushButton *cmdOk;
    QPushButton *cmdAnnulla;
};
