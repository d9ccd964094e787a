#include "link/frmUtility.h"

#include "link/RecordFields.h"
#include "widgets/Forms.h"
#include "widgets/ReadOnlyBox.h"
#include "widgets/Twips.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

void addField(QFormLayout *form, QLabel *label, QLineEdit *box, const QString &name)
{
    label->setObjectName(QStringLiteral("lbl") + name);
    label->setBuddy(box);
    box->setObjectName(QStringLiteral("txt") + name);
    form->addRow(label, box);
}

} // namespace

frmUtility::frmUtility(const Texts &texts, QWidget *parent)
    : ChildWindow(QStringLiteral("frmUtility"), parent),
      m_texts(texts),
      lblCodice(new QLabel),
      lblCanale(new QLabel),
      lblTipo(new QLabel),
      txtCodice(new ReadOnlyBox),
      txtCanale(new ReadOnlyBox),
      txtTipo(new ReadOnlyBox),
      cmdOk(new QPushButton)
{
    auto *form = new QFormLayout;
    addField(form, lblCodice, txtCodice, QStringLiteral("Codice"));
    addField(form, lblCanale, txtCanale, QStringLiteral("Canale"));
    addField(form, lblTipo, txtTipo, QStringLiteral("Tipo"));
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addStretch();
    layout->addLayout(buttonRow({cmdOk}));

    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    setKeys(cmdOk, cmdOk);
    frmUtility::setCaptions();
    cmdOk->setFocus();

    connect(cmdOk, &QPushButton::clicked, this, &frmUtility::unload);
}

void frmUtility::showRecord(const EventRecord &record)
{
    m_record = record;
    const RecordFields fields = recordFields(record, m_texts);
    txtCodice->setText(fields.Codice);
    txtCanale->setText(fields.Canale);
    txtTipo->setText(fields.Tipo);
}

QPoint frmUtility::place(QSize, QSize) const
{
    return {pixels(400), pixels(1000)};
}

void frmUtility::setCaptions()
{
    setWindowTitle(m_texts[Text::Diagnostica]);
    lblCodice->setText(m_texts[Text::Codice] + QLatin1Char(':'));
    lblCanale->setText(m_texts[Text::Canale]);
    lblTipo->setText(m_texts[Text::Tipo] + QLatin1Char(':'));
    cmdOk->setText(m_texts[Text::CmdOk]);
    // Room for the longest content, and for the title above it.
    txtCanale->setMinimumWidth(28 * fontMetrics().averageCharWidth());
    if (m_record)
        showRecord(EventRecord(*m_record));
}
