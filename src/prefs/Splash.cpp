#include "prefs/Splash.h"

#include <QLabel>
#include <QPixmap>
#include <QScreen>
#include <QVBoxLayout>

Splash::Splash(const QPixmap &picture, QWidget *parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
{
    auto *image = new QLabel;
    image->setPixmap(picture);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(image);

    setObjectName(QStringLiteral("Splash"));
    setWindowTitle(QStringLiteral("KOR"));
    image->setObjectName(QStringLiteral("Image1"));
    image->setAccessibleName(QStringLiteral("KOR"));

    adjustSize();
    const QRect area = screen()->availableGeometry();
    move(area.center() - rect().center());
}
