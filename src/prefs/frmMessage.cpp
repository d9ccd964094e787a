#include "prefs/frmMessage.h"

#include "texts/OwnText.h"
#include "texts/Texts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>

frmMessage::frmMessage(const Texts &texts, const QPixmap &warning, QWidget *parent)
    : ChildWindow(QStringLiteral("frmMessage"), parent),
      m_texts(texts),
      imgWarning(new QLabel),
      lblMessage(new QLabel),
      cmdOk(new QPushButton)
{
    auto *words = new QHBoxLayout;
    words->addWidget(imgWarning);
    words->addWidget(lblMessage, 1);
    words->setSpacing(fontMetrics().height());
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addStretch();
    auto *rows = new QVBoxLayout(this);
    rows->addLayout(words, 1);
    rows->addLayout(buttons);
    imgWarning->setPixmap(warning);
    imgWarning->setVisible(!warning.isNull());
    lblMessage->setWordWrap(true);
    lblMessage->setMinimumWidth(fontMetrics().averageCharWidth() * 50);

    imgWarning->setObjectName(QStringLiteral("imgWarning"));
    lblMessage->setObjectName(QStringLiteral("lblMessage"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));

    connect(cmdOk, &QPushButton::clicked, this, &frmMessage::unload);
    setKeys(cmdOk, cmdOk);
    // A click closes it without taking the keyboard from where the guard is typing.
    cmdOk->setFocusPolicy(Qt::TabFocus);

    frmMessage::setCaptions();
}

void frmMessage::mousePressEvent(QMouseEvent *)
{
    takeKeyboard();
}

void frmMessage::setCaptions()
{
    setWindowTitle(QStringLiteral("KOR"));
    imgWarning->setAccessibleName(m_texts[OwnText::Notice]);
    lblMessage->setText(m_texts[Text::InterfacciaNonCollegata]);
    cmdOk->setText(m_texts[Text::CmdOk]);
}
