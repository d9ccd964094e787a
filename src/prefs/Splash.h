#pragma once

#include <QWidget>

/// The picture of the product while the program loads, in the middle of the screen.
class Splash : public QWidget
{
    Q_OBJECT

public:
    explicit Splash(const QPixmap &picture, QWidget *parent = nullptr);
};
