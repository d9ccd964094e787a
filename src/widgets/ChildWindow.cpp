#include "widgets/ChildWindow.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QPushButton>

namespace {

/// Lets the access key of a button press it at once. The widget library would do so a moment later, when the press
/// before may have disabled the button, and it would act all the same. Nor does it matter that a menu has the same key.
class AtOnce : public QObject
{
public:
    explicit AtOnce(ChildWindow *window) : QObject(window), m_window(window) {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        return event->type() == QEvent::Shortcut &&
               m_window->pressByKey(static_cast<QShortcutEvent *>(event)->key(), qobject_cast<QPushButton *>(watched));
    }

private:
    ChildWindow *m_window;
};

} // namespace

ChildWindow::ChildWindow(const QString &name, QWidget *parent) : QWidget(parent)
{
    setObjectName(name);
    setAttribute(Qt::WA_DeleteOnClose);
}

QPoint ChildWindow::place(QSize area, QSize own) const
{
    if (m_place)
        return m_place(own);
    return {(area.width() - own.width()) / 2, (area.height() - own.height()) / 3};
}

void ChildWindow::unload()
{
    m_unloading = true;
    if (auto *frame = qobject_cast<QMdiSubWindow *>(parentWidget()))
        frame->close();
    else
        close();
}

void ChildWindow::takeKeyboard()
{
    QWidget *chosen = focusWidget();
    if (chosen && chosen != this) {
        chosen->setFocus();
        return;
    }
    for (QWidget *next = nextInFocusChain(); next != this; next = next->nextInFocusChain()) {
        if (isAncestorOf(next) && next->isEnabled() && (next->focusPolicy() & Qt::TabFocus) != 0) {
            next->setFocus();
            return;
        }
    }
}

void ChildWindow::setKeys(QPushButton *accept, QPushButton *cancel)
{
    m_accept = accept;
    m_cancel = cancel;
    auto *atOnce = new AtOnce(this);
    const QList<QPushButton *> buttons = findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        button->installEventFilter(atOnce);
        button->setAutoDefault(true);
        button->setDefault(button == accept);
    }
}

bool ChildWindow::pressByKey(const QKeySequence &key, const QPushButton *meant)
{
    QPushButton *only = nullptr;
    const QList<QPushButton *> buttons = findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->shortcut() != key || !button->isEnabled() || !button->isVisible())
            continue;
        if (only)
            return false;
        only = button;
    }
    if (!only || (meant && meant != only))
        return false;
    only->click();
    return true;
}

void ChildWindow::closeEvent(QCloseEvent *event)
{
    if (!m_unloading && !isEnabled()) {
        event->ignore();
        Q_EMIT closeRefused();
        return;
    }
    if (!m_unloading && !canClose()) {
        event->ignore();
        return;
    }
    event->accept();
    Q_EMIT unloaded();
}

void ChildWindow::keyPressEvent(QKeyEvent *event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter) {
        auto *focused = qobject_cast<QPushButton *>(focusWidget());
        QPushButton *pressed = focused ? focused : m_accept;
        if (pressed && pressed->isEnabled())
            pressed->click();
    } else if (event->key() == Qt::Key_Escape && m_cancel) {
        if (m_cancel->isEnabled())
            m_cancel->click();
    } else {
        QWidget::keyPressEvent(event);
    }
}
