#pragma once

#include "platform/Errand.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// Reads archives that were copied from their first page to their last, and flushes all that was written, in a thread
/// of its own while the next ones are being copied.
class LotCheck
{
public:
    /// A file that nobody else has open.
    struct Archive {
        QString path;
        QByteArray rawKey;
    };
    /// Why each archive cannot be read, in their order; nothing of those that can.
    using Faults = std::vector<std::optional<FaultCode>>;

    /// @param flush  called in the thread, see Disk::flushAll()
    LotCheck(const std::vector<Archive> &archives, const std::function<Result<bool>()> &flush);
    /// Has the thread end with the archive at hand, and waits a moment for that.
    ~LotCheck();

    /// @return the answer once it is there, within @p most; its fault is that of the flush
    std::optional<Result<Faults>> wait(std::chrono::milliseconds most) { return m_errand.wait(most); }

private:
    std::shared_ptr<std::atomic<bool>> m_isGivenUp = std::make_shared<std::atomic<bool>>(false);
    Errand<Faults> m_errand;
};
