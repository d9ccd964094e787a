#pragma once

#include <QMdiArea>

class ChildWindow;
class Settings;

/// The client area of the main window: gives windows their frame, their size and their place. Those that keep their
/// place find it in the settings, under their name in capitals.
class ClientArea : public QMdiArea
{
    Q_OBJECT

public:
    /// @param settings  must outlive this object
    explicit ClientArea(Settings &settings, QWidget *parent = nullptr);

    /// Shows @p window in a frame; who calls decides whether it becomes the active one.
    QMdiSubWindow *open(ChildWindow *window);
    /// The words on @p window have changed: makes it larger where they need more room than they have.
    void makeRoom(ChildWindow *window);

protected:
    void changeEvent(QEvent *event) override;

private:
    void takeColour() { setBackground(palette().brush(QPalette::Dark)); }

    Settings &m_settings;
};
