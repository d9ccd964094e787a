#include "link/frmConfInt.h"

#include "link/ConfigFields.h"
#include "texts/OwnText.h"
#include "widgets/ReadOnlyBox.h"
#include "widgets/Twips.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

struct Field {
    const char *label;
    const char *box;
    QString ConfigFields::*content;
};

constexpr std::array fields = {
    Field{"lblProtCom", "txtProtCom", &ConfigFields::ProtCom},
    Field{"lblInterfaccia", "txtEnable", &ConfigFields::Enable},
    Field{"lblCanaliAb", "txtCanaliAb", &ConfigFields::CanaliAb},
    Field{"lblInfCh", "txtInfCan", &ConfigFields::InfCan},
    Field{"lblPonte", "txtPonte", &ConfigFields::Ponte},
    Field{"lblPc", "txtPc", &ConfigFields::Pc},
    Field{"lblJ1", "txtJ1", &ConfigFields::J1},
    Field{"lblCodSito", "txtCodSito", &ConfigFields::CodSito},
    Field{"lblVer", "txtVer", &ConfigFields::Ver},
};

} // namespace

frmConfInt::frmConfInt(const Texts &texts, Messages &messages, QWidget *parent)
    : ChildWindow(QStringLiteral("frmConfInt"), parent),
      m_texts(texts),
      m_messages(messages),
      lblLettura(new QLabel),
      cmdLeggi(new QPushButton),
      cmdOk(new QPushButton)
{
    auto *form = new QFormLayout;
    for (size_t i = 0; i < FieldCount; ++i) {
        m_labels[i] = new QLabel;
        m_labels[i]->setObjectName(QLatin1String(fields[i].label));
        m_boxes[i] = new ReadOnlyBox;
        m_boxes[i]->setObjectName(QLatin1String(fields[i].box));
        m_labels[i]->setBuddy(m_boxes[i]);
        form->addRow(m_labels[i], m_boxes[i]);
    }
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(lblLettura, 1);
    buttons->addWidget(cmdLeggi);
    buttons->addWidget(cmdOk);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addStretch();
    layout->addLayout(buttons);

    lblLettura->setObjectName(QStringLiteral("lblLettura"));
    cmdLeggi->setObjectName(QStringLiteral("cmdLeggi"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    tmrLoad.setObjectName(QStringLiteral("tmrLoad"));
    setKeys(cmdOk, cmdOk);
    frmConfInt::setCaptions();
    cmdOk->setFocus();

    connect(cmdLeggi, &QPushButton::clicked, this, &frmConfInt::cmdLeggi_Click);
    connect(cmdOk, &QPushButton::clicked, this, &frmConfInt::unload);
    connect(&tmrLoad, &QTimer::timeout, this, &frmConfInt::cmdLeggi_Click);
    tmrLoad.setSingleShot(true);
    tmrLoad.start(200);
}

void frmConfInt::configurationRead(const InterfaceConfig &config)
{
    showReading(false);
    if (!config.answered()) {
        m_messages.show(this, Icon::Critical, m_texts[Text::ConnessioneImpossibile]);
        return;
    }
    m_read = config;
    showRead();
}

void frmConfInt::showRead()
{
    const ConfigFields words = configFields(*m_read, m_texts);
    for (size_t i = 0; i < FieldCount; ++i) {
        m_boxes[i]->setText(words.*fields[i].content);
        m_boxes[i]->setCursorPosition(0);
    }
}

void frmConfInt::notOnLine()
{
    showReading(false);
    const QString text =
        m_texts[Text::InterfacciaNonInLinea] + QStringLiteral("\r\n") + m_texts[Text::ConnessioneImpossibile];
    m_messages.show(this, Icon::Critical, text, [this] { unload(); });
}

QPoint frmConfInt::place(QSize, QSize) const
{
    return {pixels(400), pixels(1000)};
}

void frmConfInt::setCaptions()
{
    setWindowTitle(m_texts[Text::ConfigurazioneInterfaccia]);
    const std::array<QString, FieldCount> labels = {
        m_texts[Text::ProtocolloDiComunicazione],
        m_texts[Text::Interfaccia],
        m_texts[Text::CanaliAbilitati],
        m_texts[Text::InformazioneDiCanale],
        m_texts[Text::Ponte],
        m_texts[Text::Pc],
        QStringLiteral("J1:"),
        m_texts[Text::CodiceDiSito],
        m_texts[Text::Versione].trimmed() + QLatin1Char(':'),
    };
    for (size_t i = 0; i < FieldCount; ++i)
        m_labels[i]->setText(labels[i]);
    cmdLeggi->setText(m_texts[Text::CmdRileggi]);
    cmdOk->setText(m_texts[Text::CmdOk]);
    // Room for the longest name of a protocol, and for the words that come and go.
    m_boxes.front()->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("WIEGAND 37 BIT HID D10302 BCD")) +
                                     3 * fontMetrics().averageCharWidth());
    lblLettura->setMinimumWidth(fontMetrics().horizontalAdvance(m_texts[OwnText::ReadingRuns]));
    if (!cmdLeggi->isEnabled())
        lblLettura->setText(m_texts[OwnText::ReadingRuns]);
    if (m_read)
        showRead();
}

void frmConfInt::cmdLeggi_Click()
{
    // The operator need not wait for the timer.
    tmrLoad.stop();
    showReading(true);
    Q_EMIT Leggi();
}

void frmConfInt::showReading(bool reading)
{
    if (reading)
        m_leggiHadFocus = focusWidget() == cmdLeggi;
    cmdLeggi->setEnabled(!reading);
    lblLettura->setText(reading ? m_texts[OwnText::ReadingRuns] : QString());
    // A disabled button loses the keyboard.
    if (!reading && std::exchange(m_leggiHadFocus, false))
        cmdLeggi->setFocus();
}
