#pragma once

#include "platform/Result.h"

#include <QDeadlineTimer>

/// Long work, done in turns that its owner gives it, so that nothing else has to wait for it.
///
/// It may go at any time: what is all or nothing leaves no trace then, and only what ended with true stays.
class Task
{
public:
    struct Progress {
        qint64 done = 0;
        qint64 count = 0; ///< at least done; 0 = not known
    };

    virtual ~Task() = default;

    /// Works until @p until, and does at least one piece.
    /// @return true when the work is done, false when there is more to do; after a fault it has ended
    virtual Result<bool> step(const QDeadlineTimer &until) = 0;
    virtual Progress progress() const = 0;
    /// Ends the work where it is, as the operator wants it: the next step is the last. Work that is all or nothing does
    /// not stop; it is thrown away.
    virtual void stop() {}
};

/// Does all of a task that nothing waits for.
inline Result<void> finish(Task &task)
{
    Result<bool> isDone = false;
    while (isDone && !isDone.value())
        isDone = task.step(QDeadlineTimer(QDeadlineTimer::Forever));
    return isDone ? Result<void>() : Result<void>(isDone.fault());
}
