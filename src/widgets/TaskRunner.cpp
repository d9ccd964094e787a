#include "widgets/TaskRunner.h"

#include "widgets/ChildWindow.h"
#include "widgets/frmRicercapr.h"

namespace {

constexpr int turnMilliseconds = 15;

} // namespace

TaskRunner::TaskRunner(ChildWindow *window) : QObject(window), m_window(window)
{
    connectTurn();
    connect(window, &ChildWindow::unloaded, this, &TaskRunner::windowGoes);
    connect(window, &ChildWindow::translated, this, &TaskRunner::setCaptions);
}

void TaskRunner::connectTurn()
{
    connect(&m_turn, &QTimer::timeout, this, &TaskRunner::turn);
}

TaskRunner::~TaskRunner()
{
    stop();
}

void TaskRunner::windowGoes()
{
    const bool isLost = isRunning();
    stop();
    if (isLost)
        Q_EMIT dropped();
}

void TaskRunner::begin(Task &task, Ended ended)
{
    stop();
    m_task = &task;
    m_ended = std::move(ended);
}

void TaskRunner::run(Task &task, const std::optional<Notice> &notice, Ended ended)
{
    begin(task, std::move(ended));
    if (notice) {
        frmRicercapr::Parts parts = frmRicercapr::Bar;
        parts.setFlag(frmRicercapr::Button, bool(notice->cancel));
        parts.setFlag(frmRicercapr::Label, bool(notice->label));
        m_notice = *notice;
        m_progress =
            new frmRicercapr(notice->caption(), notice->cancel ? notice->cancel() : QString(), parts, m_window);
        connect(m_progress, &frmRicercapr::Annulla, this, [this] {
            if (m_task)
                m_task->stop();
        });
        if (m_notice.label)
            m_progress->setLabel(m_notice.label());
    }
    m_turn.start(0);
}

void TaskRunner::run(std::unique_ptr<Task> task, const std::optional<Notice> &notice, Ended ended)
{
    Task &work = *task;
    run(work, notice, std::move(ended));
    m_owned = std::move(task);
}

std::optional<Result<void>> TaskRunner::runAtOnce(Task &task, Ended ended)
{
    const Result<bool> stepped = task.step(QDeadlineTimer(turnMilliseconds));
    if (!stepped)
        return Result<void>(stepped.fault());
    if (stepped.value())
        return Result<void>();
    begin(task, std::move(ended));
    m_turn.start(0);
    return {};
}

void TaskRunner::turn()
{
    const Result<bool> stepped = m_task->step(QDeadlineTimer(turnMilliseconds));
    if (stepped && !stepped.value())
        return show(m_task->progress());
    // Whoever hears of the end may begin the next task, or close the window.
    const std::unique_ptr<Task> done = std::move(m_owned);
    const Ended ended = std::move(m_ended);
    stop();
    if (ended)
        ended(stepped ? Result<void>() : Result<void>(stepped.fault()));
}

void TaskRunner::show(const Task::Progress &progress)
{
    if (m_progress) {
        if (m_notice.label)
            m_progress->setLabel(m_notice.label());
        m_progress->setProgress(static_cast<int>(progress.done), static_cast<int>(qMax<qint64>(1, progress.count)));
    }
    Q_EMIT progressed(progress);
}

void TaskRunner::setCaptions()
{
    if (m_progress)
        m_progress->setCaptions(m_notice.caption(), m_notice.cancel ? m_notice.cancel() : QString());
}

void TaskRunner::stop()
{
    m_turn.stop();
    m_task = nullptr;
    m_owned.reset();
    m_ended = {};
    m_notice = {};
    if (m_progress)
        m_progress->close();
    m_progress.clear();
}
