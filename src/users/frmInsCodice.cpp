#include "users/frmInsCodice.h"

#include "startup/PlainText.h"
#include "widgets/Filtering.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

namespace {

constexpr int takeMilliseconds = 100;

} // namespace

frmInsCodice::frmInsCodice(const Texts &texts, Messages &messages, std::optional<QString> CodMod, Exists exists,
                           QWidget *parent)
    : ChildWindow(QStringLiteral("frmInsCodice"), parent),
      m_texts(texts),
      m_messages(messages),
      m_codMod(std::move(CodMod)),
      m_exists(std::move(exists)),
      lblCodice(new QLabel),
      txtCodice(new QLineEdit),
      optTX(new QRadioButton),
      optDKS(new QRadioButton),
      cmdOk(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    auto *types = new QHBoxLayout;
    types->addWidget(optTX);
    types->addWidget(optDKS);
    types->addStretch();
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdAnnulla);
    auto *rows = new QGridLayout(this);
    rows->addWidget(lblCodice, 0, 0);
    rows->addWidget(txtCodice, 0, 1);
    rows->addLayout(types, 1, 1);
    rows->setRowMinimumHeight(2, pixels(120));
    rows->setRowStretch(2, 1);
    rows->addLayout(buttons, 3, 0, 1, 2);

    lblCodice->setObjectName(QStringLiteral("lblCodice"));
    lblCodice->setBuddy(txtCodice);
    txtCodice->setObjectName(QStringLiteral("txtCodice"));
    optTX->setObjectName(QStringLiteral("optTipo(0)"));
    optDKS->setObjectName(QStringLiteral("optTipo(1)"));
    optTX->setChecked(true);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    tmrRicezione.setObjectName(QStringLiteral("tmrRicezione"));

    connect(&tmrRicezione, &QTimer::timeout, this, &frmInsCodice::tmrRicezione_Timer);
    connect(txtCodice, &QLineEdit::textChanged, this, &frmInsCodice::txtCodice_Change);
    connect(cmdOk, &QPushButton::clicked, this, &frmInsCodice::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &frmInsCodice::cmdAnnulla_Click);
    connect(this, &ChildWindow::unloaded, &tmrRicezione, &QTimer::stop);
    setKeys(cmdOk, cmdAnnulla);

    frmInsCodice::setCaptions();
    tmrRicezione.start(takeMilliseconds);
    txtCodice->setFocus();
}

void frmInsCodice::setCaptions()
{
    setWindowTitle(m_texts[m_codMod ? Text::ModificaCodice : Text::InserimentoCodice]);
    setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) + pixels(2250));
    lblCodice->setText(m_texts[Text::Codice]);
    optTX->setText(typeText(CodeType::Transmitter));
    optDKS->setText(typeText(CodeType::Keypad));
    cmdOk->setText(m_texts[Text::CmdOk]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);
}

void frmInsCodice::tmrRicezione_Timer()
{
    if (!m_received)
        return;
    // A second transmitter does not take the place of the first.
    tmrRicezione.stop();
    txtCodice->setText(m_received->code);
    (m_received->type == CodeType::Transmitter ? optTX : optDKS)->setChecked(true);
}

void frmInsCodice::txtCodice_Change()
{
    // The digits first: a code may be pasted with marks between them.
    keepAccepted(txtCodice, [](const QString &typed) { return SoloCifre(typed).left(LongestCode); });
}

void frmInsCodice::cmdOk_Click()
{
    const CodeType type = optTX->isChecked() ? CodeType::Transmitter : CodeType::Keypad;
    const EntryCheck check = checkEntry(txtCodice->text(), type);
    switch (check.fault) {
    case EntryFault::NotAboveZero:
        return refuse(Icon::Exclamation, Text::CodiceNonValido);
    case EntryFault::AboveTransmitterMaximum:
        return refuse(Icon::Information, Text::CodiceTroppoGrande);
    case EntryFault::AboveKeypadMaximum:
        return refuse(Icon::Information, Text::CodiceTastieraTroppoGrande);
    case EntryFault::None:
        break;
    }
    if (m_exists(check.code, type))
        return refuse(Icon::Information, Text::CodiceGiaEsistente);
    Q_EMIT Chiudi(check.code, type, Esito::Confirmed, m_codMod);
    unload();
}

void frmInsCodice::cmdAnnulla_Click()
{
    canClose();
    unload();
}

bool frmInsCodice::canClose()
{
    Q_EMIT Chiudi({}, {}, Esito::Cancelled, m_codMod);
    return true;
}

void frmInsCodice::refuse(Icon icon, Text text)
{
    txtCodice->setFocus();
    txtCodice->selectAll();
    m_messages.show(this, icon, m_texts[text]);
}
