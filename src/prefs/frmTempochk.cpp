#include "prefs/frmTempochk.h"

#include "prefs/CheckInterval.h"
#include "startup/Settings.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"
#include "widgets/Filtering.h"
#include "widgets/Forms.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

frmTempochk::frmTempochk(const Texts &texts, Settings &settings, Messages &messages, QWidget *parent)
    : ChildWindow(QStringLiteral("frmTempochk"), parent),
      m_texts(texts),
      m_settings(settings),
      m_messages(messages),
      chkAutomatico(new QCheckBox),
      lblCheck(new QLabel),
      txtMinuti(new QLineEdit),
      lblMinuti(new QLabel),
      cmdOk(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    auto *minutes = new QHBoxLayout;
    minutes->addWidget(lblCheck);
    minutes->addWidget(txtMinuti);
    minutes->addWidget(lblMinuti);
    minutes->addStretch();
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(chkAutomatico);
    rows->addLayout(minutes);
    rows->addSpacing(pixels(120));
    rows->addStretch();
    rows->addLayout(buttonRow({cmdOk, cmdAnnulla}));
    lblCheck->setBuddy(txtMinuti);
    makeNumberBox(txtMinuti);

    chkAutomatico->setObjectName(QStringLiteral("chkAutomatico"));
    lblCheck->setObjectName(QStringLiteral("lblCheck"));
    txtMinuti->setObjectName(QStringLiteral("txtMinuti"));
    lblMinuti->setObjectName(QStringLiteral("lblMinuti"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));

    connect(chkAutomatico, &QCheckBox::toggled, this, &frmTempochk::chkAutomatico_Click);
    connect(txtMinuti, &QLineEdit::textChanged, this, &frmTempochk::txtMinuti_Change);
    connect(cmdOk, &QPushButton::clicked, this, &frmTempochk::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &frmTempochk::cmdAnnulla_Click);
    setKeys(cmdOk, cmdAnnulla);

    frmTempochk::setCaptions();
    if (settings.MinCheck >= 1) {
        chkAutomatico->setChecked(true);
        txtMinuti->setText(QString::number(settings.MinCheck));
    }
    chkAutomatico_Click();
    chkAutomatico->setFocus();
}

void frmTempochk::setCaptions()
{
    setWindowTitle(m_texts[Text::ImpostazioniDiControlloKor]);
    fitTitle(this);
    chkAutomatico->setText(m_texts[Text::ControlloAutomaticoKor]);
    lblCheck->setText(m_texts[Text::ControlloKorOgni]);
    lblMinuti->setText(m_texts[Text::Minuti]);
    cmdOk->setText(m_texts[Text::CmdOk]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);
}

void frmTempochk::chkAutomatico_Click()
{
    lblCheck->setEnabled(chkAutomatico->isChecked());
    txtMinuti->setEnabled(chkAutomatico->isChecked());
    lblMinuti->setEnabled(chkAutomatico->isChecked());
}

void frmTempochk::txtMinuti_Change()
{
    keepAccepted(txtMinuti, acceptedMinutes);
}

void frmTempochk::cmdOk_Click()
{
    const std::optional<int> minutes = checkInterval(chkAutomatico->isChecked(), txtMinuti->text());
    if (!minutes) {
        selectMinuti();
        return m_messages.show(this, Icon::Information, m_texts[Text::MinutiFuoriLimite], [this] { selectMinuti(); });
    }
    const QString key = QStringLiteral("CHECK");
    const Result<void> saved = m_settings.save(key, *minutes);
    Q_EMIT ModificaMin(minutes);
    if (saved)
        return unload();
    m_messages.show(this, Icon::Exclamation, m_texts.sentence({OwnText::SettingNotSaved, {key}, saved.fault()}),
                    [this] { unload(); });
}

void frmTempochk::cmdAnnulla_Click()
{
    Q_EMIT ModificaMin(std::nullopt);
    unload();
}

void frmTempochk::selectMinuti()
{
    txtMinuti->setFocus();
    txtMinuti->selectAll();
}
