#pragma once

#include "archives/ArchiveBytes.h"
#include "archives/ArchiveStore.h"
#include "platform/FileStamp.h"
#include "platform/FreshFile.h"
#include "platform/Task.h"

#include <array>
#include <optional>

/// Brings an archive from anywhere into the program folder, with the journals that stand beside it, in turns.
///
/// Where it lies nothing is written, nor is it opened in a way that could write: it may be on a read-only medium, and a
/// journal is brought over in the copy alone.
class ArchiveFetch : public Task
{
public:
    /// What is larger is not fetched, bytes.
    static constexpr qint64 LargestArchive = 256 << 20;

    /// @param archives  must outlive this object
    /// @param file      absolute path
    /// @param copy      name as in ArchiveName, for whoever reads and removes it; what stands there is lost
    ArchiveFetch(ArchiveStore &archives, const QString &file, QStringView copy);

    /// @return NotFound, NotRegularFile, AccessDenied, TooLarge; Locked while somebody writes to it, or has written
    /// meanwhile; faults of the program folder
    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_position, 0}; }

private:
    /// The archive, then what may stand beside it. The library makes its -shm anew from the others.
    static constexpr std::array parts = {QLatin1String(""), QLatin1String("-journal"), QLatin1String("-wal")};
    using Stamps = std::array<std::optional<FileStamp>, parts.size()>;

    Result<void> begin();
    Result<void> beginPart();
    Result<bool> copyOn(const QDeadlineTimer &until);
    Stamps stamps() const;

    ArchiveStore &m_archives;
    QString m_file; ///< no link
    const QString m_copy;
    bool m_hasBegun = false;
    Stamps m_stamps;
    std::size_t m_part = 0;
    std::optional<ArchiveBytes> m_archive; ///< held until all parts are there
    std::optional<ArchiveBytes> m_journal;
    std::optional<FreshFile> m_target; ///< of the part that is being copied
    qint64 m_position = 0;
};
