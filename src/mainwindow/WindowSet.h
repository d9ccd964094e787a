#pragma once

#include "widgets/ChildWindow.h"

#include <QList>

class ClientArea;
class QMdiSubWindow;

/// The windows that are open, in the order in which they were opened. One counts as open until it is gone with all that
/// it holds, its working copy too.
class WindowSet : public QObject
{
    Q_OBJECT

public:
    /// @param area  where they lie; must outlive this object
    explicit WindowSet(ClientArea &area);
    ~WindowSet() override { clear(); }

    /// The window of that class, null while none is open.
    template<class Window>
    Window *find() const
    {
        for (ChildWindow *window : m_open) {
            if (auto *found = qobject_cast<Window *>(window))
                return found;
        }
        return nullptr;
    }
    /// Brings the window of that class forward, or opens the one that @p make returns.
    /// @return the new one; null when there was one, or when it could not be opened
    template<class Window, class Make>
    Window *open(Make make)
    {
        if (Window *isOpen = find<Window>()) {
            bringForward(isOpen);
            return nullptr;
        }
        Window *made = make();
        return openBeside(made) ? made : nullptr;
    }
    /// Opens a window, whatever else is open. It is shown once ChildWindow::open() has succeeded, else it goes unseen.
    bool openBeside(ChildWindow *window);
    /// Opens a window of its own, over the main window.
    void openDialog(ChildWindow *window);

    void bringForward(ChildWindow *window);
    /// The window in the area that the operator works in, null when there is none.
    ChildWindow *inFront() const;
    /// All of them. The last one comes first: it may have been opened by another, which waits for it.
    QList<ChildWindow *> lastFirst() const { return {m_open.crbegin(), m_open.crend()}; }

    /// Closes a window as its frame would. @return false when it stays open, perhaps because it asks the operator first
    static bool close(ChildWindow *window);
    /// Takes all windows away. What they tell when they go is still heard.
    void clear() { qDeleteAll(lastFirst()); }

Q_SIGNALS:
    /// A window was opened or is gone.
    void changed();
    void gone();
    /// A window was to close, and stays open.
    void closeRefused();

private:
    void watch(ChildWindow *window);
    void subWindowActivated(QMdiSubWindow *frame);

    ClientArea &m_area;
    QList<ChildWindow *> m_open;
};
