#include "prefs/frmInsPass.h"

#include "prefs/PasswordFault.h"
#include "texts/Texts.h"
#include "widgets/Forms.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

frmInsPass::frmInsPass(const Texts &texts, Messages &messages, Passwords &passwords, QWidget *parent)
    : ChildWindow(QStringLiteral("frmInsPass"), parent),
      m_texts(texts),
      m_messages(messages),
      m_passwords(passwords),
      lblSpiegIns(new QLabel),
      lblPass(new QLabel),
      txtPass(new QLineEdit),
      lblConfPass(new QLabel),
      txtConfPass(new QLineEdit),
      cmdOk(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    auto *boxes = new QGridLayout;
    boxes->addWidget(lblPass, 0, 0);
    boxes->addWidget(txtPass, 0, 1);
    boxes->addWidget(lblConfPass, 1, 0);
    boxes->addWidget(txtConfPass, 1, 1);
    boxes->setColumnStretch(1, 1);
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(lblSpiegIns);
    rows->addLayout(boxes);
    rows->addSpacing(pixels(120));
    rows->addStretch();
    rows->addLayout(buttonRow({cmdOk, cmdAnnulla}));
    lblPass->setBuddy(txtPass);
    lblConfPass->setBuddy(txtConfPass);
    txtPass->setEchoMode(QLineEdit::Password);
    txtConfPass->setEchoMode(QLineEdit::Password);

    lblSpiegIns->setObjectName(QStringLiteral("lblSpiegIns"));
    lblPass->setObjectName(QStringLiteral("lblPass"));
    txtPass->setObjectName(QStringLiteral("txtPass"));
    lblConfPass->setObjectName(QStringLiteral("lblConfPass"));
    txtConfPass->setObjectName(QStringLiteral("txtConfPass"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));

    connect(txtPass, &QLineEdit::textChanged, this, &frmInsPass::txtPass_Change);
    connect(txtConfPass, &QLineEdit::textChanged, this, &frmInsPass::txtConfPass_Change);
    connect(cmdOk, &QPushButton::clicked, this, &frmInsPass::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &frmInsPass::unload);
    setKeys(cmdOk, cmdAnnulla);

    frmInsPass::setCaptions();
    txtPass->setFocus();
}

void frmInsPass::setTipoPass(Passwords::Type type)
{
    m_type = type;
    frmInsPass::setCaptions();
}

void frmInsPass::setCaptions()
{
    const bool isMain = m_type == Passwords::Type::Main;
    const Text others =
        m_type == Passwords::Type::Users ? Text::InserimentoPasswordUtenti : Text::InserimentoPasswordDiagnostica;
    setWindowTitle(m_texts[isMain ? Text::InserimentoPasswordPrincipale : others]);
    lblSpiegIns->setText(m_texts[Text::ScrivereEConfermarePassword]);
    lblPass->setText(m_texts[Text::PasswordInserimento]);
    lblConfPass->setText(m_texts[Text::ConfermaPassword]);
    cmdOk->setText(m_texts[Text::CmdOk]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);
}

void frmInsPass::txtPass_Change()
{
    if (const QString accepted = Passwords::accepted(txtPass->text()); accepted != txtPass->text())
        txtPass->setText(accepted);
}

void frmInsPass::txtConfPass_Change()
{
    if (const QString accepted = Passwords::accepted(txtConfPass->text()); accepted != txtConfPass->text())
        txtConfPass->setText(accepted);
}

void frmInsPass::cmdOk_Click()
{
    if (txtPass->text() != txtConfPass->text()) {
        selectPass();
        return m_messages.show(this, Icon::Exclamation, m_texts[Text::ErroreDigitazionePassword],
                               [this] { selectPass(); });
    }
    const Passwords::Fault fault = m_passwords.set(m_type, txtPass->text());
    if (fault != Passwords::Fault::None) {
        const Message message = passwordMessage(fault, m_passwords.reason());
        return m_messages.show(this, Icon::Critical, m_texts.sentence(message));
    }
    Q_EMIT PasswordImpostata(m_type);
    unload();
}

void frmInsPass::selectPass()
{
    txtPass->setFocus();
    txtPass->selectAll();
}
