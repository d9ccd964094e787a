#pragma once

#include "platform/Errand.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// Reads archives that were copied from their first page to their last, and flushes all that was written, each in a
/// thread of its own while the next ones are being copied.
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

    /// @param flush  called in a thread, see Disk::flushAll()
    LotCheck(const std::vector<Archive> &archives, const std::function<Result<bool>()> &flush);
    /// Has the reading end with the archive at hand, and waits a moment for that.
    ~LotCheck();

    /// @return the answer once it is there, within @p most; its fault is that of the flush
    std::optional<Result<Faults>> wait(std::chrono::milliseconds most);

private:
    std::shared_ptr<std::atomic<bool>> m_isGivenUp = std::make_shared<std::atomic<bool>>(false);
    Errand<Faults> m_reading;
    Errand<bool> m_flush;
};
