#pragma once

#include "archives/ArchiveStore.h"
#include "archives/ReadableRows.h"

#include <QDeadlineTimer>

#include <memory>
#include <optional>

/// Makes a new archive of waiting events of what can be read of a damaged one, in turns.
///
/// It stands under a working name until it is whole: whenever the program or its power is cut off, the next start finds
/// either the damaged one or the new one, and no event in both. Events keep their numbers, and so their order.
class SpoolRescue
{
public:
    /// Puts a new one in its place that was cut off just before that.
    static Result<void> complete(ArchiveStore &archives);

    /// @param archives  must outlive this object; the damaged archive must not be open
    static Result<std::unique_ptr<SpoolRescue>> begin(ArchiveStore &archives);
    ~SpoolRescue();
    SpoolRescue(const SpoolRescue &) = delete;
    SpoolRescue &operator=(const SpoolRescue &) = delete;

    /// @return true when all that can be read has been brought over
    Result<bool> step(const QDeadlineTimer &until);
    /// Then: sets the damaged one aside and puts the new one in its place. @return name of the damaged one now
    Result<QString> finish();
    /// Events that were brought over.
    qsizetype count() const { return m_count; }

private:
    explicit SpoolRescue(ArchiveStore &archives) : m_archives(archives) {}
    Result<void> open();
    Result<void> take(const Statement &row);
    void close();

    ArchiveStore &m_archives;
    std::optional<Database> m_damaged;
    std::optional<ReadableRows> m_rows; ///< nothing when none can be read
    std::optional<Database> m_made;
    std::optional<Statement> m_insert;
    qsizetype m_count = 0;
};
