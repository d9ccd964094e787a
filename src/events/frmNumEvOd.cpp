#include "events/frmNumEvOd.h"

#include "events/DailyEventCount.h"
#include "startup/Settings.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"
#include "widgets/Filtering.h"
#include "widgets/Forms.h"
#include "widgets/Messages.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

frmNumEvOd::frmNumEvOd(const Texts &texts, Settings &settings, Messages &messages, QWidget *parent)
    : ChildWindow(QStringLiteral("frmNumEvOd"), parent),
      m_texts(texts),
      m_settings(settings),
      m_messages(messages),
      lblNumEv(new QLabel),
      txtNumEv(new QLineEdit),
      cmdOk(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    auto *number = new QHBoxLayout;
    number->addWidget(lblNumEv);
    number->addWidget(txtNumEv);
    arrange(this, number, {cmdOk, cmdAnnulla});
    lblNumEv->setBuddy(txtNumEv);
    makeNumberBox(txtNumEv);

    lblNumEv->setObjectName(QStringLiteral("lblNumEv"));
    txtNumEv->setObjectName(QStringLiteral("txtNumEv"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));

    connect(txtNumEv, &QLineEdit::textChanged, this, &frmNumEvOd::txtNumEv_Change);
    connect(cmdOk, &QPushButton::clicked, this, &frmNumEvOd::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &ChildWindow::unload);
    setKeys(cmdOk, cmdAnnulla);
    frmNumEvOd::setCaptions();
    txtNumEv->setText(QString::number(settings.NumEvOd));
    txtNumEv->setFocus();
}

void frmNumEvOd::setCaptions()
{
    setWindowTitle(m_texts[Text::NumeroEventiOdierni]);
    fitTitle(this);
    lblNumEv->setText(m_texts[Text::NumeroEventi]);
    cmdOk->setText(m_texts[Text::CmdOk]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);
}

void frmNumEvOd::txtNumEv_Change()
{
    keepAccepted(txtNumEv, acceptedEventCount);
}

void frmNumEvOd::cmdOk_Click()
{
    const std::optional<int> number = dailyEventCount(txtNumEv->text());
    if (!number) {
        selectNumEv();
        return m_messages.show(this, Icon::Exclamation, m_texts[Text::NumeroEventiFuoriLimite],
                               [this] { selectNumEv(); });
    }
    const QString key = QStringLiteral("NUMEVOD");
    const Result<void> saved = m_settings.save(key, *number);
    m_settings.NumEvOd = *number;
    Q_EMIT NumeroCambiato();
    if (saved)
        return unload();
    m_messages.show(this, Icon::Exclamation, m_texts.sentence({OwnText::SettingNotSaved, {key}, saved.fault()}),
                    [this] { unload(); });
}

void frmNumEvOd::selectNumEv()
{
    txtNumEv->setFocus();
    txtNumEv->selectAll();
}
