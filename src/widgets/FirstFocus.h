#pragma once

#include <QObject>

class QWidget;

/// Selects all text of a box when it gets the keyboard for the first time, so that what is typed then takes its place.
class FirstFocus : public QObject
{
    Q_OBJECT

public:
    /// Watches over the boxes that @p window has by now.
    explicit FirstFocus(QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
