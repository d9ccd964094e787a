#pragma once

#include "platform/Result.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

/// A piece of work in a thread of its own, for calls of the system that may not return for long, and its one answer.
///
/// The thread knows nothing but the work and the place where its answer is laid down. Whoever waits may go at any time:
/// then nobody hears the answer, and the thread ends when its call returns.
template<class T>
class Errand
{
public:
    using Work = std::function<Result<T>()>; ///< called in the thread: holds copies, and refers to nothing of ours
    using Then = std::function<void(const Result<T> &)>;

    /// @param then   called once, by the event loop, unless this object goes before
    /// @param limit  after which the answer is InputOutput, whatever comes later; 0 = it is waited for as long as it
    /// takes
    Errand(Work work, Then then, std::chrono::milliseconds limit = {}) : m_then(std::move(then))
    {
        m_answered->listener = &m_listener;
        m_answered->hear = [this] { answer(); };
        m_limit.setSingleShot(true);
        QObject::connect(&m_limit, &QTimer::timeout, &m_listener, [this] { answer(); });
        if (limit.count() > 0)
            m_limit.start(limit);
        try {
            std::thread([answered = m_answered, work = std::move(work)] { answered->lay(work()); }).detach();
        } catch (const std::system_error &) {
            m_answered->lay(Fault{FaultCode::InputOutput, {}});
        }
    }
    ~Errand()
    {
        const std::lock_guard lock(m_answered->mutex);
        m_answered->listener = nullptr;
    }
    Errand(const Errand &) = delete;
    Errand &operator=(const Errand &) = delete;

    /// Holds the caller up until there is an answer, for @p most at most.
    /// @return the answer when there is one; nothing else hears of it any more
    std::optional<Result<T>> wait(std::chrono::milliseconds most)
    {
        m_limit.stop();
        m_then = {};
        std::unique_lock lock(m_answered->mutex);
        m_answered->come.wait_for(lock, most, [this] { return m_answered->answer.has_value(); });
        return m_answered->answer;
    }

private:
    struct Answered {
        void lay(Result<T> result)
        {
            const std::lock_guard lock(mutex);
            answer = std::move(result);
            come.notify_all();
            if (listener)
                QMetaObject::invokeMethod(listener, hear, Qt::QueuedConnection);
        }

        std::mutex mutex;
        std::condition_variable come;
        std::optional<Result<T>> answer;
        QObject *listener = nullptr; ///< lives as long as this is not null
        std::function<void()> hear;
    };

    void answer()
    {
        // This object may go in the call.
        const Then then = std::exchange(m_then, {});
        const std::optional<Result<T>> come = wait({});
        if (then)
            then(come.value_or(Fault{FaultCode::InputOutput, {}}));
    }

    std::shared_ptr<Answered> m_answered = std::make_shared<Answered>();
    Then m_then;
    QObject m_listener;
    QTimer m_limit;
};
