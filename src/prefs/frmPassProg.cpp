#include "prefs/frmPassProg.h"

#include "texts/Texts.h"
#include "widgets/Forms.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

frmPassProg::frmPassProg(const Texts &texts, Messages &messages, const Passwords &passwords, QWidget *parent)
    : ChildWindow(QStringLiteral("frmPassProg"), parent),
      m_texts(texts),
      m_messages(messages),
      m_passwords(passwords),
      lblPass(new QLabel),
      txtPass(new QLineEdit),
      cmdOk(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    setWindowFlags(Qt::Dialog);
    auto *line = new QHBoxLayout;
    line->addWidget(lblPass);
    line->addWidget(txtPass, 1);
    auto *rows = new QVBoxLayout(this);
    rows->addLayout(line);
    rows->addSpacing(pixels(120));
    rows->addStretch();
    rows->addLayout(buttonRow({cmdOk, cmdAnnulla}));
    lblPass->setBuddy(txtPass);
    txtPass->setEchoMode(QLineEdit::Password);
    txtPass->setMinimumWidth(fontMetrics().averageCharWidth() * 25);

    lblPass->setObjectName(QStringLiteral("lblPass"));
    txtPass->setObjectName(QStringLiteral("txtPass"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));

    connect(txtPass, &QLineEdit::textChanged, this, &frmPassProg::txtPass_Change);
    connect(cmdOk, &QPushButton::clicked, this, &frmPassProg::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &frmPassProg::cmdAnnulla_Click);
    setKeys(cmdOk, cmdAnnulla);

    frmPassProg::setCaptions();
    txtPass->setFocus();
}

void frmPassProg::setTipoPass(Passwords::Type type)
{
    m_type = type;
    frmPassProg::setCaptions();
}

bool frmPassProg::canClose()
{
    refuseClose();
    return false;
}

void frmPassProg::setCaptions()
{
    const bool isMain = m_type == Passwords::Type::Main;
    const Text others = m_type == Passwords::Type::Users ? Text::PasswordUtenti : Text::PasswordDiagnostica;
    setWindowTitle(m_texts[isMain ? Text::PasswordPrincipale : others]);
    fitTitle(this);
    lblPass->setText(m_texts[Text::PasswordRichiesta]);
    cmdOk->setText(m_texts[Text::CmdOk]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);
}

void frmPassProg::txtPass_Change()
{
    if (const QString accepted = Passwords::accepted(txtPass->text()); accepted != txtPass->text())
        txtPass->setText(accepted);
}

void frmPassProg::cmdOk_Click()
{
    if (!m_passwords.matches(m_type, txtPass->text())) {
        selectPass();
        Q_EMIT Errata(m_type);
        return m_messages.show(this, Icon::Critical, m_texts[Text::PasswordErrata], [this] { selectPass(); });
    }
    Q_EMIT Chiudi(m_type, DisattivaPW ? Codice::RightToDeactivate : Codice::Right);
    unload();
}

void frmPassProg::cmdAnnulla_Click()
{
    Q_EMIT Chiudi(m_type, DisattivaPW ? Codice::CancelledToDeactivate : Codice::Cancelled);
    unload();
}

void frmPassProg::selectPass()
{
    txtPass->setFocus();
    txtPass->selectAll();
}
