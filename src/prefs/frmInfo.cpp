#include "prefs/frmInfo.h"

#include "platform/LibraryVersions.h"
#include "startup/Version.h"
#include "texts/OwnText.h"
#include "texts/Texts.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>

namespace {

constexpr double mostOfScreen = 0.4; ///< of its height, taken by the picture

/// The picture, smaller where it would push the words out of the window.
QPixmap fitted(QPixmap picture)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const double most = mostOfScreen * screen->availableSize().height();
    if (picture.height() <= most)
        return picture;
    const double sharpness = screen->devicePixelRatio();
    picture = picture.scaledToHeight(qRound(most * sharpness), Qt::SmoothTransformation);
    picture.setDevicePixelRatio(sharpness);
    return picture;
}

} // namespace

frmInfo::frmInfo(const Texts &texts, const QPixmap &picture, const QString &folder, QWidget *parent)
    : ChildWindow(QStringLiteral("frmInfo"), parent),
      m_texts(texts),
      imgInfo(new QLabel),
      lblVersione(new QLabel),
      lblLicenza(new QLabel),
      lblTestoLicenza(new QLabel(QStringLiteral("MIT"))),
      lblLibrerie(new QLabel),
      lblTestoLibrerie(new QLabel(
          libraryVersions().replaceInStrings(QStringLiteral(" "), QString(QChar::Nbsp)).join(QStringLiteral(", ")))),
      lblDati(new QLabel),
      txtDati(new QLineEdit(folder)),
      cmdOk(new QPushButton)
{
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOk);
    buttons->addStretch();
    auto *facts = new QGridLayout;
    facts->setColumnStretch(1, 1);
    facts->addWidget(lblLicenza, 0, 0, Qt::AlignTop);
    facts->addWidget(lblTestoLicenza, 0, 1);
    facts->addWidget(lblLibrerie, 1, 0, Qt::AlignTop);
    facts->addWidget(lblTestoLibrerie, 1, 1);
    facts->addWidget(lblDati, 2, 0);
    facts->addWidget(txtDati, 2, 1);
    auto *rows = new QVBoxLayout(this);
    rows->addWidget(imgInfo, 1);
    rows->addWidget(lblVersione);
    rows->addLayout(facts);
    rows->addLayout(buttons);
    imgInfo->setPixmap(fitted(picture));
    imgInfo->setAlignment(Qt::AlignCenter);
    imgInfo->setVisible(!picture.isNull());
    lblVersione->setAlignment(Qt::AlignCenter);
    lblVersione->setMargin(fontMetrics().height() / 2);
    for (QLabel *fact : {lblTestoLicenza, lblTestoLibrerie}) {
        fact->setWordWrap(true);
        fact->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    // A path has no blank at which a label could break it; here its whole length can be walked through and copied.
    txtDati->setReadOnly(true);
    txtDati->setFrame(false);
    // Its text stands below the others': a box keeps two pixels at either side.
    txtDati->setTextMargins(-2, 0, -2, 0);
    txtDati->setCursorPosition(0);
    QPalette plain = txtDati->palette();
    plain.setBrush(QPalette::Base, plain.brush(QPalette::Window));
    txtDati->setPalette(plain);
    lblDati->setBuddy(txtDati);

    imgInfo->setObjectName(QStringLiteral("imgInfo"));
    lblVersione->setObjectName(QStringLiteral("lblVersione"));
    lblTestoLicenza->setObjectName(QStringLiteral("lblTestoLicenza"));
    lblTestoLibrerie->setObjectName(QStringLiteral("lblTestoLibrerie"));
    txtDati->setObjectName(QStringLiteral("txtDati"));
    cmdOk->setObjectName(QStringLiteral("cmdOk"));

    connect(cmdOk, &QPushButton::clicked, this, &frmInfo::unload);
    setKeys(cmdOk, cmdOk);

    frmInfo::setCaptions();
    cmdOk->setFocus();
}

void frmInfo::setCaptions()
{
    setWindowTitle(m_texts[Text::Informazioni]);
    imgInfo->setAccessibleName(m_texts[Text::InterfacciaMultiprotocollo]);
    lblVersione->setText(m_texts[Text::InterfacciaMultiprotocollo] + QLatin1Char(' ') + m_texts[Text::Versione] +
                         programVersion());
    lblLicenza->setText(m_texts[OwnText::AboutLicence]);
    lblLibrerie->setText(m_texts[OwnText::AboutLibraries]);
    lblDati->setText(m_texts[OwnText::AboutData]);
    cmdOk->setText(m_texts[Text::CmdOk]);
}
