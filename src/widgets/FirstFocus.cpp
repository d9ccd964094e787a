#include "widgets/FirstFocus.h"

#include <QFocusEvent>
#include <QLineEdit>

FirstFocus::FirstFocus(QWidget *window) : QObject(window)
{
    const QList<QLineEdit *> boxes = window->findChildren<QLineEdit *>();
    for (QLineEdit *box : boxes) {
        if (!box->isReadOnly())
            box->installEventFilter(this);
    }
}

bool FirstFocus::eventFilter(QObject *watched, QEvent *event)
{
    const bool isFocus = event->type() == QEvent::FocusIn;
    // A press sets the caret after it has brought the keyboard: its release comes last.
    const bool isByPress = isFocus && static_cast<QFocusEvent *>(event)->reason() == Qt::MouseFocusReason;
    if ((isFocus && !isByPress) || event->type() == QEvent::MouseButtonRelease) {
        auto *box = static_cast<QLineEdit *>(watched);
        box->removeEventFilter(this);
        // What was drawn over with the mouse is what is wanted.
        if (!box->hasSelectedText())
            box->selectAll();
    }
    return false;
}
