#pragma once

#include <QObject>
#include <QPointer>

class ChildWindow;
class ClientArea;
class QMdiSubWindow;
class QWidget;

/// The frame of the alarm's message. It lies before the client area, not in it: there a window gets the keyboard when
/// it opens, and when the one before it closes. The guard types on in his own; what he types must not close the alarm
/// unseen. Ctrl+Tab leads to it and back.
class AlarmFrame : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this object.
    AlarmFrame(QWidget &over, ClientArea &area) : m_over(over), m_area(area) {}
    ~AlarmFrame() override;

    bool isRaised() const;
    /// Shows @p message, which becomes the frame's; only while none is raised.
    void raise(ChildWindow *message);
    void close();
    /// Brings it before all windows, and back into the area when that has become smaller.
    void keepInSight();

Q_SIGNALS:
    /// The message has closed, by whomever.
    void closed();

private:
    void showWithoutKeyboard();
    void messageClosed();
    void turn();
    void returnKeyboard();

    QWidget &m_over;
    ClientArea &m_area;
    QPointer<QMdiSubWindow> m_frame;
};
