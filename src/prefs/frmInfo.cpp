#include "prefs/frmInfo.h"

#include "startup/Version.h"

#include "texts/Texts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>

frmInfo::frmInfo(const Texts &texts, const QPixmap &picture, QWidget *parent)
    : ChildWindow(QStringLiteral("frmInfo"), parent),
      imgInfo(new QLabel),
      lblVersione(new QLabel),
      cmdOk(new QPushButton)
{
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addStretch();
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(imgInfo, 1);
    rows->addWidget(lblVersione);
    rows->addLayout(buttons);
    imgInfo->setPixmap(picture);
    imgInfo->setAlignment(Qt::AlignCenter);
    imgInfo->setVisible(!picture.isNull());
    lblVersione->setAlignment(Qt::AlignCenter);
    lblVersione->setMargin(fontMetrics().height() / 2);

    imgInfo->setObjectName(QStringLiteral("imgInfo"));
    lblVersione->setObjectName(QStringLiteral("lblVersione"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));

    connect(cmdOk, &QPushButton::clicked, this, &frmInfo::unload);
    setKeys(cmdOk, cmdOk);

    captions(texts);
    cmdOk->setFocus();
}

void frmInfo::captions(const Texts &texts)
{
    setWindowTitle(texts[Text::Informazioni]);
    imgInfo->setAccessibleName(texts[Text::InterfacciaMultiprotocollo]);
    lblVersione->setText(texts[Text::InterfacciaMultiprotocollo] + QLatin1Char(' ') + texts[Text::Versione] +
                         programVersion());
    cmdOk->setText(texts[Text::CmdOk]);
}
