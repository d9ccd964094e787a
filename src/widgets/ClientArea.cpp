#include "widgets/ClientArea.h"

#include "startup/Settings.h"
#include "startup/WindowPlace.h"
#include "widgets/ChildWindow.h"

#include <QEvent>
#include <QMdiSubWindow>
#include <QShortcut>

namespace {

/// Gives a frame the place that the settings keep, and stores the one that the operator leaves it in.
class Place : public QObject
{
public:
    Place(QMdiSubWindow *frame, const ChildWindow *window, Settings &settings)
        : QObject(frame), m_frame(frame), m_key(window->objectName().toUpper()), m_settings(settings)
    {
        connect(window, &ChildWindow::unloaded, this, &Place::store);
    }

    void restore(QSize area)
    {
        m_opened.geometry = m_frame->geometry();
        const std::optional<WindowPlace> kept = placeFrom(m_settings.LeggiImpostazione(m_key), area);
        if (kept) {
            m_opened = *kept;
            m_frame->setGeometry(kept->geometry);
        }
        m_normal = m_opened.geometry;
        m_frame->installEventFilter(this);
        if (kept && kept->isMaximised)
            m_frame->showMaximized();
    }

protected:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        const bool isMoved = event->type() == QEvent::Move || event->type() == QEvent::Resize;
        if (isMoved && !m_frame->isMaximized())
            m_normal = m_frame->geometry();
        return false;
    }

private:
    void store()
    {
        const WindowPlace left{m_normal, m_frame->isMaximized()};
        if (left == m_opened)
            return;
        // A place that cannot be stored is worth no message: the window opens where it did before.
        (void)m_settings.ScriviImpostazione(m_key, m_key + QLatin1Char('=') + placeText(left));
    }

    QMdiSubWindow *m_frame;
    const QString m_key;
    Settings &m_settings;
    WindowPlace m_opened;
    QRect m_normal;
};

} // namespace

ClientArea::ClientArea(Settings &settings, QWidget *parent) : QMdiArea(parent), m_settings(settings)
{
    // A small window in front of a maximised one stays small.
    setOption(DontMaximizeSubWindowOnActivation);
    takeColour();
    // Some desktops give that key to each window's own menu; twice given, it would do nothing.
    if (const QKeySequence key(Qt::CTRL | Qt::Key_F4); !QKeySequence::keyBindings(QKeySequence::Close).contains(key))
        new QShortcut(key, this, this, &QMdiArea::closeActiveSubWindow);
}

QMdiSubWindow *ClientArea::open(ChildWindow *window)
{
    Qt::WindowFlags flags = Qt::SubWindow | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
    if (window->keepsPlace())
        flags |= Qt::WindowMaximizeButtonHint;
    QMdiSubWindow *frame = addSubWindow(window, flags);
    frame->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
    frame->adjustSize();
    const QSize area = viewport()->size();
    const QSize border = frame->size() - window->size();
    frame->resize(border + window->wantedSize(area - border));
    const QSize own = frame->size();
    const QPoint wanted = window->place(area, own);
    frame->move(qBound(0, wanted.x(), qMax(0, area.width() - own.width())),
                qBound(0, wanted.y(), qMax(0, area.height() - own.height())));
    if (window->keepsPlace())
        (new Place(frame, window, m_settings))->restore(area);
    return frame;
}

void ClientArea::makeRoom(ChildWindow *window)
{
    auto *frame = qobject_cast<QMdiSubWindow *>(window->parentWidget());
    if (!frame || frame->isMaximized())
        return;
    const QSize border = frame->size() - window->size();
    const QSize area = viewport()->size();
    frame->resize(frame->size().expandedTo((border + window->neededSize()).boundedTo(area)));
    frame->move(qBound(0, frame->x(), qMax(0, area.width() - frame->width())),
                qBound(0, frame->y(), qMax(0, area.height() - frame->height())));
}

void ClientArea::changeEvent(QEvent *event)
{
    QMdiArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        takeColour();
}
