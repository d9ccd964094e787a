#pragma once

#include "platform/Errand.h"

#include <QByteArray>
#include <QString>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

/// Reads archives that were copied from their first page to their last, each as soon as it has been written, and
/// flushes all that was written once the last one has: in threads of its own, while the next ones are being copied.
class LotCheck
{
public:
    /// A file that nobody else has open.
    struct Archive {
        QString path;
        QByteArray rawKey;
        bool isSettled = false; ///< surely a copy of one state: its pages need not be looked at together
    };
    /// Why each archive cannot be read, in their order; nothing of those that can.
    using Faults = std::vector<std::optional<FaultCode>>;

    LotCheck() = default;
    /// Has the reading end, and waits a moment for that.
    ~LotCheck();
    LotCheck(const LotCheck &) = delete;
    LotCheck &operator=(const LotCheck &) = delete;

    /// Has one more archive read.
    void add(Archive archive);
    /// No more are added. @param flush  called in a thread, see Disk::flushAll()
    void finish(const std::function<Result<bool>()> &flush);
    /// Only after finish(). @return the answer once it is there, within @p most; its fault is that of the flush
    std::optional<Result<Faults>> wait(std::chrono::milliseconds most);

private:
    struct Queue {
        std::optional<Archive> next();
        void end();

        std::mutex mutex;
        std::condition_variable changed;
        std::deque<Archive> archives;
        bool isEnded = false;
    };
    static Result<Faults> readAll(Queue &queue, const std::stop_token &stop);

    std::stop_source m_stop;
    std::shared_ptr<Queue> m_queue = std::make_shared<Queue>();
    std::optional<Errand<Faults>> m_reading; ///< begins with the first archive
    std::optional<Errand<bool>> m_flush;
};
