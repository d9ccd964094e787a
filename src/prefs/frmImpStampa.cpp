#include "prefs/frmImpStampa.h"

#include "texts/OwnText.h"
#include "texts/Texts.h"
#include "widgets/Forms.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace {

constexpr int visibleCharacters = 28; ///< of a printer's name

} // namespace

frmImpStampa::frmImpStampa(const Texts &texts, CurrentPrinter &printer, Messages &messages, QWidget *parent)
    : ChildWindow(QStringLiteral("frmImpStampa"), parent),
      m_texts(texts),
      m_printer(printer),
      m_messages(messages),
      lblSelStampa(new QLabel),
      cmbStampanti(new QComboBox),
      cmdOk(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    auto *choice = new QHBoxLayout;
    choice->addWidget(lblSelStampa);
    choice->addWidget(cmbStampanti, 1);
    auto *rows = new QVBoxLayout(this);
    rows->addLayout(choice);
    rows->addSpacing(pixels(120));
    rows->addStretch();
    rows->addLayout(buttonRow({cmdOk, cmdAnnulla}));
    lblSelStampa->setBuddy(cmbStampanti);
    // The width is the window's own: names of printers may be long ones.
    cmbStampanti->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cmbStampanti->setMinimumContentsLength(visibleCharacters);

    lblSelStampa->setObjectName(QStringLiteral("lblSelStampa"));
    cmbStampanti->setObjectName(QStringLiteral("cmbStampanti"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));

    connect(cmdOk, &QPushButton::clicked, this, &frmImpStampa::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &frmImpStampa::unload);
    setKeys(cmdOk, cmdAnnulla);

    frmImpStampa::setCaptions();
    cmdOk->setEnabled(false);
    m_list = printer.printers().list([this](const Result<PrinterList> &list) { fill(list); });
}

void frmImpStampa::setCaptions()
{
    setWindowTitle(m_texts[Text::ImpostazioneStampante]);
    lblSelStampa->setText(m_texts[Text::Stampante] + QLatin1Char(':'));
    cmdOk->setText(m_texts[Text::CmdOk]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);
}

void frmImpStampa::fill(const Result<PrinterList> &list)
{
    if (!list)
        return m_messages.show(this, Icon::Exclamation, m_texts[OwnText::PrintSystemSilent]);
    const PrinterList &installed = list.value();
    if (installed.names.isEmpty())
        return m_messages.show(this, Icon::None, m_texts[Text::NessunaStampanteInstallata]);
    cmbStampanti->addItems(installed.names);
    cmbStampanti->setCurrentIndex(m_printer.shownIndex(installed));
    cmdOk->setEnabled(true);
}

void frmImpStampa::cmdOk_Click()
{
    const Result<void> saved = m_printer.choose(cmbStampanti->currentIndex());
    if (saved)
        return unload();
    m_messages.show(this, Icon::Exclamation,
                    m_texts.sentence({OwnText::SettingNotSaved, {QStringLiteral("PRN")}, saved.fault()}),
                    [this] { unload(); });
}
