#include "platform/Disk.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Owns a file descriptor.
class Descriptor
{
public:
    explicit Descriptor(int file) : m_file(file) {}
    ~Descriptor()
    {
        if (m_file >= 0)
            ::close(m_file);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int get() const { return m_file; }

private:
    int m_file;
};

Descriptor create(const QString &path)
{
    return Descriptor(::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
}

} // namespace

Fault systemFault(const QString &path)
{
    switch (errno) {
    case ENOENT:
    case ENOTDIR:
        return {FaultCode::NotFound, path};
    case EACCES:
    case EPERM:
    case EROFS:
        return {FaultCode::AccessDenied, path};
    case ENOSPC:
    case EDQUOT:
        return {FaultCode::DiskFull, path};
    default:
        return {FaultCode::InputOutput, path};
    }
}

bool Disk::before(Step, const QString &)
{
    return true;
}

Result<void> Disk::write(int file, const QString &path, const char *bytes, qsizetype count)
{
    if (!before(Step::Write, path))
        return Fault{FaultCode::InputOutput, path};
    while (count > 0) {
        const ssize_t written = ::write(file, bytes, static_cast<size_t>(count));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return systemFault(path);
        bytes += written;
        count -= written;
    }
    return {};
}

Result<void> Disk::flushFolder(const QString &path)
{
    const QString folder = QFileInfo(path).path();
    if (!before(Step::FlushFolder, folder))
        return Fault{FaultCode::InputOutput, folder};
    const Descriptor file(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some network file systems refuse to flush a folder; the rename itself has been done then.
    if (file.get() >= 0 && ::fsync(file.get()) != 0 && errno != EINVAL)
        return systemFault(folder);
    return {};
}

Result<void> Disk::finish(int file, const QString &beside, const QString &target)
{
    if (!before(Step::Flush, beside))
        return Fault{FaultCode::InputOutput, beside};
    if (::fsync(file) != 0)
        return systemFault(beside);
    return rename(beside, target);
}

Result<void> Disk::copy(const QString &source, const QString &target)
{
    const Descriptor from(::open(QFile::encodeName(source).constData(), O_RDONLY | O_CLOEXEC));
    if (from.get() < 0)
        return systemFault(source);
    const QString beside = target + QStringLiteral(".part");
    const Descriptor to = create(beside);
    if (to.get() < 0)
        return systemFault(beside);

    Result<void> outcome;
    std::array<char, 65536> block{};
    while (outcome) {
        const ssize_t count = ::read(from.get(), block.data(), block.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            outcome = systemFault(source);
        if (count <= 0)
            break;
        outcome = write(to.get(), beside, block.data(), count);
    }
    if (outcome)
        outcome = finish(to.get(), beside, target);
    if (!outcome)
        ::unlink(QFile::encodeName(beside).constData());
    return outcome;
}

Result<void> Disk::replaceContent(const QString &target, const QByteArray &content, const QString &beside)
{
    const Descriptor to = create(beside);
    if (to.get() < 0)
        return systemFault(beside);
    Result<void> outcome = write(to.get(), beside, content.constData(), content.size());
    if (outcome)
        outcome = finish(to.get(), beside, target);
    if (!outcome)
        ::unlink(QFile::encodeName(beside).constData());
    return outcome;
}

Result<void> Disk::rename(const QString &from, const QString &to)
{
    if (!before(Step::Rename, to))
        return Fault{FaultCode::InputOutput, to};
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        return systemFault(to);
    return flushFolder(to);
}

Result<void> Disk::remove(const QString &path)
{
    if (!before(Step::Remove, path))
        return Fault{FaultCode::InputOutput, path};
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT)
        return systemFault(path);
    return {};
}

Result<void> Disk::makeFolder(const QString &path)
{
    if (!before(Step::MakeFolder, path))
        return Fault{FaultCode::InputOutput, path};
    if (::mkdir(QFile::encodeName(path).constData(), 0700) != 0 && errno != EEXIST)
        return systemFault(path);
    return flushFolder(path);
}

void keepFilesPrivate()
{
    ::umask(077);
}
