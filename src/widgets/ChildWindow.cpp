#include "widgets/ChildWindow.h"

#include "widgets/FirstFocus.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

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

ChildWindow::~ChildWindow()
{
    // The keyboard goes on while the controls go, when this is no such window any more.
    disconnect(qApp, nullptr, this, nullptr);
}

void ChildWindow::translate()
{
    setCaptions();
    Q_EMIT translated();
}

QPoint ChildWindow::place(QSize area, QSize own) const
{
    if (m_place)
        return m_place(own);
    return {(area.width() - own.width()) / 2, (area.height() - own.height()) / 3};
}

QSize ChildWindow::wantedSize(QSize area) const
{
    const QSize hint = sizeHint();
    QSize wanted(hint.width(), qMax(hint.height(), qRound(area.height() * m_leastHeight)));
    // The bar that scrolls what does not fit in height takes no room from what fits in width.
    if (m_scroll && m_scroll->widget()->minimumSizeHint().height() > area.height())
        wanted.rwidth() += m_scroll->verticalScrollBar()->sizeHint().width();
    return wanted.boundedTo(area);
}

QSize ChildWindow::sizeHint() const
{
    return m_scroll ? m_scroll->widget()->sizeHint().expandedTo(minimumSize()) : QWidget::sizeHint();
}

QSize ChildWindow::neededSize() const
{
    const QWidget *content = m_scroll ? m_scroll->widget() : this;
    // Layouts within a layout still know the sizes from before a control has got other words.
    content->layout()->activate();
    return content->minimumSizeHint().expandedTo(minimumSize());
}

int ChildWindow::roomForContent() const
{
    const QLayout *content = m_scroll ? m_scroll->widget()->layout() : layout();
    const QMargins margins = content->contentsMargins();
    // Whether the bar is there or not: what it makes room for must not depend on it.
    const int bar = m_scroll ? m_scroll->verticalScrollBar()->sizeHint().width() : 0;
    return width() - margins.left() - margins.right() - bar;
}

/// Puts all that lies in the window's layout into an area that scrolls.
void ChildWindow::makeScrollable()
{
    QWidget *chosen = focusWidget();
    auto *content = new QWidget;
    content->setObjectName(QStringLiteral("Content"));
    m_scroll = new QScrollArea(this);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidgetResizable(true);
    m_scroll->setWidget(content);
    content->setLayout(layout());
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(m_scroll);
    // A control that moves into another widget lets go of the keyboard.
    if (chosen && chosen != this)
        chosen->setFocus();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) { keepInSight(now); });
}

void ChildWindow::keepInSight(QWidget *control)
{
    if (control && m_scroll->widget()->isAncestorOf(control))
        m_scroll->ensureWidgetVisible(control);
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
    QList<QPushButton *> with = findChildren<QPushButton *>();
    with.removeIf([&key](const QPushButton *button) {
        return button->shortcut() != key || !button->isEnabled() || !button->isVisible();
    });
    if (with.isEmpty() || (with.size() == 1 && meant && meant != with.first()))
        return false;
    if (with.size() == 1)
        with.first()->click();
    else
        with[(with.indexOf(focusWidget()) + 1) % with.size()]->setFocus(Qt::ShortcutFocusReason);
    return true;
}

bool ChildWindow::event(QEvent *event)
{
    // All controls are there, and the window has not been shown yet.
    if (event->type() == QEvent::Polish && layout() && !m_scroll) {
        makeScrollable();
        new FirstFocus(this);
    }
    return QWidget::event(event);
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
