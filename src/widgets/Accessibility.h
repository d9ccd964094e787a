#pragma once

#include <QWidget>

/// Controls that belong together, without a frame around them; its accessible name says in what.
class Grouping : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
};

/// Lets screen readers know the program's windows, groups and painted pictures as what they are. To be called once.
void installAccessibility();
