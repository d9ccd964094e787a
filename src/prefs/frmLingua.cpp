#include "prefs/frmLingua.h"

#include "startup/Settings.h"
#include "texts/LanguageName.h"
#include "texts/OwnText.h"
#include "widgets/Forms.h"
#include "widgets/Messages.h"
#include "widgets/Twips.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

frmLingua::frmLingua(Texts &texts, Settings &settings, Messages &messages, QWidget *parent)
    : ChildWindow(QStringLiteral("frmLingua"), parent),
      m_texts(texts),
      m_settings(settings),
      m_messages(messages),
      lblLingua(new QLabel),
      optLingua(new QButtonGroup(this)),
      cmdOk(new QPushButton),
      cmdAnnulla(new QPushButton)
{
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(lblLingua);
    for (int language = Texts::FirstLanguage; language <= Texts::LastLanguage; ++language) {
        auto *option = new QRadioButton(languageName(language));
        option->setObjectName(QStringLiteral("optLingua(%1)").arg(language - Texts::FirstLanguage));
        optLingua->addButton(option, language);
        rows->addWidget(option);
    }
    rows->addSpacing(pixels(120));
    rows->addStretch();
    rows->addLayout(buttonRow({cmdOk, cmdAnnulla}));

    lblLingua->setObjectName(QStringLiteral("lblLingua"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));

    connect(cmdOk, &QPushButton::clicked, this, &frmLingua::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &frmLingua::unload);
    setKeys(cmdOk, cmdAnnulla);

    frmLingua::setCaptions();
    // As the file has it now, which may have been changed by hand.
    QAbstractButton *stored = optLingua->button(settings.LeggiImpostazione(QStringLiteral("LINGUA")).toInt());
    QAbstractButton *present = stored ? stored : optLingua->button(texts.language());
    present->setChecked(true);
    present->setFocus();
}

void frmLingua::setCaptions()
{
    setWindowTitle(m_texts[Text::Lingua]);
    lblLingua->setText(m_texts[Text::ScegliLaLingua]);
    cmdOk->setText(m_texts[Text::CmdOk]);
    cmdAnnulla->setText(m_texts[Text::CmdAnnulla]);
    const QList<QAbstractButton *> options = optLingua->buttons();
    for (QAbstractButton *option : options)
        option->setAccessibleDescription(lblLingua->text());
}

void frmLingua::cmdOk_Click()
{
    const QString key = QStringLiteral("LINGUA");
    m_settings.Lingua = optLingua->checkedId();
    const Result<void> saved = m_settings.save(key, m_settings.Lingua);
    m_texts.fill(m_settings.Lingua);
    Q_EMIT LinguaCambiata();
    if (saved)
        return unload();
    m_messages.show(this, Icon::Exclamation, m_texts.sentence({OwnText::SettingNotSaved, {key}, saved.fault()}),
                    [this] { unload(); });
}
