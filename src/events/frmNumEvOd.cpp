#include "events/frmNumEvOd.h"

#include "events/DailyEventCount.h"
#include "startup/Settings.h"
#include "texts/Texts.h"
#include "widgets/Filtering.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

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
    number->addStretch();
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdAnnulla);
    auto *rows = new QVBoxLayout(this);
    rows->addLayout(number);
    rows->addSpacing(pixels(120));
    rows->addStretch();
    rows->addLayout(buttons);
    lblNumEv->setBuddy(txtNumEv);
    txtNumEv->setAlignment(Qt::AlignRight);
    txtNumEv->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000000")) + pixels(180));

    lblNumEv->setObjectName(QStringLiteral("lblNumEv"));
    txtNumEv->setObjectName(QStringLiteral("txtNumEv"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));

    connect(txtNumEv, &QLineEdit::textChanged, this, &frmNumEvOd::txtNumEv_Change);
    connect(cmdOk, &QPushButton::clicked, this, &frmNumEvOd::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &ChildWindow::unload);
    setKeys(cmdOk, cmdAnnulla);
    captions();
    txtNumEv->setText(QString::number(settings.NumEvOd));
    txtNumEv->setFocus();
}

void frmNumEvOd::captions()
{
    setWindowTitle(m_texts[Text::NumeroEventiOdierni]);
    // The title is longer than any line below it and stands between the buttons of the frame.
    setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) + pixels(2250));
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
