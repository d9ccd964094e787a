#pragma once

#include "platform/Task.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

class ChildWindow;
class frmRicercapr;

/// Runs a task of a window, in short turns of the event loop, and shows how far it has come. When the window closes the
/// task is dropped, and nobody hears of it any more.
class TaskRunner : public QObject
{
    Q_OBJECT

public:
    /// The progress window.
    struct Notice {
        using Words = std::function<QString()>; ///< asked for again when another language is chosen
        Words caption;
        Words cancel = {}; ///< of the button that stops the task; none = it cannot be stopped
        Words label = {};  ///< what stands over the bar, asked for after each turn; none = nothing
    };
    using Ended = std::function<void(const Result<void> &)>;

    /// @param window  whose tasks these are; this object becomes its child
    explicit TaskRunner(ChildWindow *window);
    /// For tasks of no window, of which nothing is shown.
    explicit TaskRunner(QObject *owner) : QObject(owner) { connectTurn(); }
    ~TaskRunner() override;

    /// Begins with the next turn of the event loop. One task runs at a time.
    /// @param task    must live until it has ended or was dropped
    /// @param notice  none: nothing is shown
    /// @param ended   called once, when the progress window has gone
    void run(Task &task, const std::optional<Notice> &notice, Ended ended);
    /// The same with a task of this object, which lives until @p ended returns.
    void run(std::unique_ptr<Task> task, const std::optional<Notice> &notice, Ended ended);
    /// Takes the first turn at once, and goes on like run() where that is not enough. Nothing is shown.
    /// @return how the task has ended, when it has; then @p ended is not called
    std::optional<Result<void>> runAtOnce(Task &task, Ended ended);

    bool isRunning() const { return m_task != nullptr; }
    /// Drops the task in the middle.
    void stop();

Q_SIGNALS:
    /// After each turn but the last one.
    void progressed(const Task::Progress &progress);
    /// The window has closed in the middle of a task.
    void dropped();

private:
    void connectTurn();
    void windowGoes();
    void begin(Task &task, Ended ended);
    void turn();
    void show(const Task::Progress &progress);
    void setCaptions();

    ChildWindow *m_window = nullptr;
    QTimer m_turn;
    Task *m_task = nullptr;
    std::unique_ptr<Task> m_owned;
    Ended m_ended;
    Notice m_notice;
    QPointer<frmRicercapr> m_progress;
};
