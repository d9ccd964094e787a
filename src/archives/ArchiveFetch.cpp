#include "archives/ArchiveFetch.h"

#include "platform/RegularFile.h"

#include <sys/stat.h>

namespace {

constexpr qsizetype bytesAtOnce = 256 << 10;

} // namespace

ArchiveFetch::ArchiveFetch(ArchiveStore &archives, const QString &file, QStringView copy)
    : m_archives(archives), m_file(file), m_copy(copy.toString())
{
}

ArchiveFetch::Stamps ArchiveFetch::stamps() const
{
    Stamps all;
    for (std::size_t part = 0; part < parts.size(); ++part)
        all.at(part) = stampOf(m_file + parts.at(part));
    return all;
}

Result<bool> ArchiveFetch::step(const QDeadlineTimer &until)
{
    if (!std::exchange(m_hasBegun, true)) {
        if (const Result<void> begun = begin(); !begun)
            return begun.fault();
    }
    for (; m_part < parts.size(); ++m_part) {
        if (!m_stamps.at(m_part))
            continue;
        if (!m_target) {
            if (const Result<void> begun = beginPart(); !begun)
                return begun.fault();
        }
        Result<bool> copied = copyOn(until);
        if (!copied || !copied.value())
            return copied;
    }
    // Where no locks are kept, or by way of a write-ahead journal, it can have changed all the same.
    if (stamps() != m_stamps)
        return Fault{FaultCode::Locked, m_file};
    m_archive.reset();
    return true;
}

Result<void> ArchiveFetch::begin()
{
    const Result<QString> followed = linkFollowed(m_file);
    if (!followed)
        return followed.fault();
    // The journals stand beside the file itself.
    m_file = followed.value();
    if (Result<void> regular = checkRegular(m_file); !regular)
        return regular;
    m_stamps = stamps();
    if (!m_stamps[0])
        return Fault{FaultCode::NotFound, m_file};
    for (const std::optional<FileStamp> &stamp : m_stamps) {
        if (stamp && stamp->size > LargestArchive)
            return Fault{FaultCode::TooLarge, m_file};
    }
    return m_archives.remove(m_copy);
}

Result<void> ArchiveFetch::beginPart()
{
    Result<ArchiveBytes> opened = ArchiveBytes::open(m_file + parts.at(m_part));
    if (!opened)
        return opened.fault();
    std::optional<ArchiveBytes> &source = m_part == 0 ? m_archive : m_journal;
    source.emplace(std::move(opened.value()));
    if (m_part == 0) {
        if (Result<void> held = source->hold(); !held)
            return held;
    }
    m_position = 0;
    m_target.emplace(m_archives.folder().disk(), m_archives.folder().path(m_copy) + parts.at(m_part));
    return m_target->create();
}

Result<bool> ArchiveFetch::copyOn(const QDeadlineTimer &until)
{
    ArchiveBytes &source = m_part == 0 ? *m_archive : *m_journal;
    do {
        const Result<QByteArray> bytes = source.read(m_position, bytesAtOnce);
        if (!bytes)
            return bytes.fault();
        if (bytes.value().isEmpty()) {
            if (const Result<void> put = m_target->put(m_stamps.at(m_part)->modified, S_IRUSR | S_IWUSR); !put)
                return put.fault();
            m_target.reset();
            return true;
        }
        if (m_target->write(bytes.value()) < 0)
            return m_target->fault();
        m_position += bytes.value().size();
    } while (!until.hasExpired());
    return false;
}
