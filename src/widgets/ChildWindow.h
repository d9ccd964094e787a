#pragma once

#include <QPoint>
#include <QPointer>
#include <QSize>
#include <QWidget>

#include <functional>

class QPushButton;
class QScrollArea;

/// A window of one function. The main window puts it into its client area and deletes it when it has closed.
///
/// Enter presses the default button, Esc the cancel button, from wherever the keyboard is. A window that is disabled,
/// or whose canClose() says no, refuses a close by its frame or with the main window; unload() closes it without
/// asking. Where there is less room than its controls need they keep their sizes, and the window scrolls.
class ChildWindow : public QWidget
{
    Q_OBJECT

public:
    /// @param name  of the window's class; becomes its objectName
    explicit ChildWindow(const QString &name, QWidget *parent = nullptr);
    ~ChildWindow() override;

    /// Makes what the window works with; called before it is shown. When that cannot be done the operator is told, and
    /// this window is of no use. What is made in turns goes on when it is shown; where it fails then, it closes itself.
    virtual bool open() { return true; }

    /// Puts the program's own words on the controls, in the language in force: to be called by the constructor, and
    /// while the window is open for another language. What was typed, chosen or found stays.
    virtual void setCaptions() = 0;
    /// Another language is in force: takes its words, those of notices about this window too.
    void translate();

    /// What it tells the operator when it cannot open stands over that window, and stays when this one goes.
    void setUnderneath(QWidget *window) { m_underneath = window; }

    /// Upper left corner in the main window's client area, in pixels.
    /// @param area  size of the client area; @param own  size of this window with its frame
    virtual QPoint place(QSize area, QSize own) const;
    /// Another window's rule for the place of this one, which it opens.
    void placeBy(std::function<QPoint(QSize own)> rule) { m_place = std::move(rule); }

    /// Closes the window by the program's own will.
    void unload();
    /// Whether the window can be maximised, and opens with the size and place that the operator left it with.
    bool keepsPlace() const { return m_keepsPlace; }
    /// Size that is wanted in a client area of that size; less where there is less room.
    virtual QSize wantedSize(QSize area) const;
    QSize sizeHint() const override;
    /// Least size at which nothing in the window is scrolled.
    QSize neededSize() const;
    /// Gives the keyboard to the control that the window has chosen itself, else to its first.
    void takeKeyboard();
    /// Presses the button that has the access key @p key; where several have it, the keyboard goes to the next of them.
    /// @param meant  the only one that may be pressed; null: any
    /// @return false when no button that can be pressed has it
    bool pressByKey(const QKeySequence &key, const QPushButton *meant = nullptr);

    /// Another window that this one, disabled, waits for; it comes to the front in its place.
    void setWaitsFor(ChildWindow *other) { m_waitsFor = other; }
    ChildWindow *waitsFor() const { return isEnabled() ? nullptr : m_waitsFor.data(); }

Q_SIGNALS:
    /// The window has closed, for whatever reason.
    void unloaded();
    /// The window has its words in another language.
    void translated();
    /// A close was asked for and did not take place: the window is disabled, or the operator said no.
    void closeRefused();

protected:
    /// Asked at a close that did not come from unload(). A window that must ask the operator first says no, asks, and
    /// unloads or calls refuseClose() by his answer.
    virtual bool canClose() { return true; }
    QWidget *underneath() const { return m_underneath; }
    void refuseClose() { Q_EMIT closeRefused(); }

    /// Enter presses @p accept wherever no other button has the keyboard, Esc presses @p cancel (null: nothing).
    void setKeys(QPushButton *accept, QPushButton *cancel);

    void setKeepsPlace() { m_keepsPlace = true; }
    /// @param share  of the client area's height that the window takes at least, where there is more than it needs
    void setLeastHeight(double share) { m_leastHeight = share; }

    /// Width in which the window's controls lie without being scrolled, in pixels.
    int roomForContent() const;

    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void makeScrollable();
    void keepInSight(QWidget *control);

    QPointer<QScrollArea> m_scroll;
    QPushButton *m_accept = nullptr;
    QPushButton *m_cancel = nullptr;
    std::function<QPoint(QSize)> m_place;
    QPointer<ChildWindow> m_waitsFor;
    QPointer<QWidget> m_underneath;
    double m_leastHeight = 0;
    bool m_keepsPlace = false;
    bool m_unloading = false;
};
