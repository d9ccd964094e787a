#include "mainwindow/WindowSet.h"

#include "widgets/ClientArea.h"

#include <QMdiSubWindow>

WindowSet::WindowSet(ClientArea &area) : m_area(area)
{
    connect(&area, &QMdiArea::subWindowActivated, this, &WindowSet::subWindowActivated);
}

bool WindowSet::openBeside(ChildWindow *window)
{
    // Not its parent as yet: moved on from there into its frame it would not get the keyboard back.
    window->setUnderneath(m_area.window());
    watch(window);
    if (!window->open()) {
        window->unload();
        return false;
    }
    // One that is disabled until it has loaded takes the keyboard before: else it would not come back to it.
    const bool isLoading = !window->isEnabled();
    window->setEnabled(true);
    m_area.setActiveSubWindow(m_area.open(window));
    window->takeKeyboard();
    window->setEnabled(!isLoading);
    return true;
}

void WindowSet::openDialog(ChildWindow *window)
{
    watch(window);
    const QWidget *over = window->parentWidget();
    window->adjustSize();
    window->move(over->pos() + QPoint((over->width() - window->width()) / 2, (over->height() - window->height()) / 3));
    window->show();
    window->activateWindow();
}

void WindowSet::watch(ChildWindow *window)
{
    m_open.append(window);
    connect(window, &ChildWindow::closeRefused, this, &WindowSet::closeRefused);
    connect(window, &QObject::destroyed, this, [this, window] {
        m_open.removeOne(window);
        Q_EMIT changed();
        Q_EMIT gone();
    });
    Q_EMIT changed();
}

void WindowSet::bringForward(ChildWindow *window)
{
    if (auto *frame = qobject_cast<QMdiSubWindow *>(window->parentWidget()))
        m_area.setActiveSubWindow(frame);
    else
        window->activateWindow();
}

ChildWindow *WindowSet::inFront() const
{
    const QMdiSubWindow *frame = m_area.activeSubWindow();
    return frame ? qobject_cast<ChildWindow *>(frame->widget()) : nullptr;
}

bool WindowSet::close(ChildWindow *window)
{
    QWidget *frame = qobject_cast<QMdiSubWindow *>(window->parentWidget());
    return (frame ? frame : window)->close();
}

void WindowSet::subWindowActivated(QMdiSubWindow *frame)
{
    const auto *window = frame ? qobject_cast<ChildWindow *>(frame->widget()) : nullptr;
    ChildWindow *waitedFor = window ? window->waitsFor() : nullptr;
    if (!waitedFor)
        return;
    // A disabled window in front, with the one that it waits for behind it, would look like a program that hangs.
    QMetaObject::invokeMethod(
        waitedFor, [this, waitedFor] { bringForward(waitedFor); }, Qt::QueuedConnection);
}
