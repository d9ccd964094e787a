#pragma once

#include "platform/Task.h"

#include <algorithm>
#include <vector>

/// Tasks that follow each other, as one. The first fault ends them all.
class TaskSequence : public Task
{
public:
    /// @param tasks  must outlive this object
    explicit TaskSequence(std::vector<Task *> tasks) : m_tasks(std::move(tasks)) {}

    Result<bool> step(const QDeadlineTimer &until) override
    {
        for (; m_current < m_tasks.size(); ++m_current) {
            Result<bool> stepped = m_tasks[m_current]->step(until);
            if (!stepped || !stepped.value())
                return stepped;
        }
        return true;
    }
    /// Of all together, as far as they know.
    Progress progress() const override
    {
        Progress all;
        for (const Task *task : m_tasks) {
            const Progress one = task->progress();
            all = {all.done + one.done, all.count + std::max(one.done, one.count)};
        }
        return all;
    }

private:
    const std::vector<Task *> m_tasks;
    std::size_t m_current = 0;
};
