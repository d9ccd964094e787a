#include "platform/FreshFile.h"

#include "platform/RegularFile.h"

#include <QFileInfo>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 Portion = 1 << 20;

} // namespace

FreshFile::FreshFile(Disk &disk, const QString &target)
    : m_disk(disk), m_target(target), m_fault{FaultCode::InputOutput, target}
{
}

FreshFile::~FreshFile()
{
    giveUp()();
}

std::function<void()> FreshFile::giveUp()
{
    return [file = std::exchange(m_file, -1), beside = QFile::encodeName(std::exchange(m_beside, {}))] {
        if (file >= 0)
            ::close(file);
        if (!beside.isEmpty())
            ::unlink(beside.constData());
    };
}

Result<void> FreshFile::create()
{
    struct stat old = {};
    const bool isThere = ::lstat(QFile::encodeName(m_target).constData(), &old) == 0;
    if (isThere) {
        const Result<QString> file = linkFollowed(m_target);
        if (!file)
            return file.fault();
        m_target = file.value();
        if (Result<void> regular = checkRegular(m_target); !regular)
            return regular;
    }
    // The name is short, so that there is room for it wherever the target's own name fits.
    QByteArray name = QFile::encodeName(QFileInfo(m_target).path() + QStringLiteral("/.kor-XXXXXX"));
    m_file = ::mkostemp(name.data(), O_CLOEXEC);
    if (m_file < 0)
        return systemFault(m_target);
    m_beside = QFile::decodeName(name);
    // Whoever could read the file that it replaces can read this one.
    if (isThere && ::stat(QFile::encodeName(m_target).constData(), &old) == 0)
        (void)::fchmod(m_file, old.st_mode & ALLPERMS);
    // Unbuffered: whoever writes small pieces gathers them.
    open(WriteOnly | Unbuffered);
    return {};
}

bool FreshFile::seek(qint64 position)
{
    return ::lseek(m_file, position, SEEK_SET) == position && QIODevice::seek(position);
}

qint64 FreshFile::writeData(const char *bytes, qint64 count)
{
    const Result<void> written = m_disk.write(m_file, m_target, bytes, count);
    if (!written) {
        m_fault = written.fault();
        return -1;
    }
    m_size = qMax(m_size, pos() + count);
    // The device begins at once: a flush of the whole file at its end would take far longer than a turn may.
    if (m_size - m_begun >= Portion) {
        ::sync_file_range(m_file, m_begun, m_size - m_begun, SYNC_FILE_RANGE_WRITE);
        m_begun = m_size;
    }
    return count;
}

bool FreshFile::settle()
{
    if (m_settled >= m_size)
        return true;
    // Nothing but a head start. But a fault of the device is told once: what fails here need not fail in the flush.
    const int settled = ::sync_file_range(
        m_file, m_settled, Portion, SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
    if (settled != 0 && (errno == EIO || errno == ENOSPC || errno == EDQUOT))
        m_unsettled = systemFault(m_target);
    m_settled += Portion;
    return m_settled >= m_size;
}

void FreshFile::beginFlush(const QString &beside)
{
    const Descriptor file(::open(QFile::encodeName(beside).constData(), O_RDONLY | O_CLOEXEC));
    (void)::sync_file_range(file.get(), 0, 0, SYNC_FILE_RANGE_WRITE);
}

Result<void> FreshFile::commit()
{
    if (m_unsettled)
        return *m_unsettled;
    const Result<void> done = m_disk.finish(m_file, m_beside, m_target);
    if (!done)
        return Fault{done.fault().code, m_target};
    m_beside.clear();
    return {};
}

Result<void> FreshFile::put(qint64 modified, mode_t rights)
{
    constexpr qint64 second = 1'000'000'000;
    const std::array<timespec, 2> times = {timespec{0, UTIME_OMIT}, timespec{modified / second, modified % second}};
    if (::futimens(m_file, times.data()) != 0 || ::fchmod(m_file, rights) != 0)
        return systemFault(m_target);
    if (Result<void> renamed = m_disk.renameOnly(m_beside, m_target); !renamed)
        return renamed;
    m_beside.clear();
    return {};
}
