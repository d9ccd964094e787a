#include "mainwindow/AlarmFrame.h"

#include "widgets/ChildWindow.h"
#include "widgets/ClientArea.h"

#include <QAccessible>
#include <QApplication>
#include <QMdiSubWindow>
#include <QShortcut>

AlarmFrame::~AlarmFrame()
{
    delete m_frame;
}

bool AlarmFrame::isRaised() const
{
    return m_frame;
}

void AlarmFrame::raise(ChildWindow *message)
{
    connect(message, &ChildWindow::unloaded, this, &AlarmFrame::messageClosed);
    m_frame = new QMdiSubWindow(&m_over, Qt::SubWindow | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                                             Qt::WindowCloseButtonHint);
    m_frame->setWidget(message);
    m_frame->setAttribute(Qt::WA_DeleteOnClose);
    auto *turnKey = new QShortcut(Qt::CTRL | Qt::Key_Tab, &m_over);
    connect(turnKey, &QShortcut::activated, this, &AlarmFrame::turn);
    connect(m_frame, &QObject::destroyed, turnKey, &QObject::deleteLater);
    showWithoutKeyboard();
    m_frame->adjustSize();
    m_frame->move((m_over.width() - m_frame->width()) / 2, (m_over.height() - m_frame->height()) / 3);
    keepInSight();
    QAccessibleEvent alert(message, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void AlarmFrame::showWithoutKeyboard()
{
    m_frame->setFocusPolicy(Qt::NoFocus);
    // Nothing but a client area tells a frame that the keyboard has left it.
    connect(qApp, &QApplication::focusChanged, m_frame, [frame = m_frame.data()](QWidget *, const QWidget *now) {
        QEvent left(QEvent::WindowDeactivate);
        if (now && !frame->isAncestorOf(now))
            QCoreApplication::sendEvent(frame, &left);
    });
    // A frame that is shown makes itself active, unless it is disabled.
    m_frame->setEnabled(false);
    m_frame->show();
    m_frame->setEnabled(true);
}

void AlarmFrame::close()
{
    if (m_frame)
        m_frame->close();
}

void AlarmFrame::keepInSight()
{
    if (!m_frame)
        return;
    const QRect area(m_area.mapTo(&m_over, QPoint()), m_area.size());
    m_frame->move(qMax(area.left(), qMin(m_frame->x(), area.right() + 1 - m_frame->width())),
                  qMax(area.top(), qMin(m_frame->y(), area.bottom() + 1 - m_frame->height())));
    m_frame->raise();
}

void AlarmFrame::messageClosed()
{
    if (m_frame && m_frame->isAncestorOf(m_over.focusWidget()))
        returnKeyboard();
    m_frame = nullptr;
    Q_EMIT closed();
}

/// The keyboard goes to the alarm, and from there to the next window.
void AlarmFrame::turn()
{
    if (!m_frame)
        return;
    if (m_frame->isAncestorOf(m_over.focusWidget())) {
        m_area.activateNextSubWindow();
        returnKeyboard();
    } else {
        qobject_cast<ChildWindow *>(m_frame->widget())->takeKeyboard();
    }
}

/// Gives the keyboard to the window that is in front.
void AlarmFrame::returnKeyboard()
{
    const QMdiSubWindow *frame = m_area.currentSubWindow();
    auto *window = frame ? qobject_cast<ChildWindow *>(frame->widget()) : nullptr;
    if (window)
        window->takeKeyboard();
    else
        m_area.setFocus();
}
