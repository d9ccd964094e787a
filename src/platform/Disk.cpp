#include "platform/Disk.h"

#include "platform/RegularFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

/// Makes a file anew. What stands under its name, a link or a pipe perhaps, is never written to.
Descriptor create(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    ::unlink(name.constData());
    return Descriptor(::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
}

/// The file that new content for @p target takes the place of. A link stays: what it leads to is replaced, and in its
/// own folder, since a rename does not reach into another file system.
Result<QString> replaced(const QString &target)
{
    Result<QString> file = linkFollowed(target);
    if (file) {
        if (const Result<void> regular = checkRegular(file.value()); !regular)
            return regular.fault();
    }
    return file;
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
    case EEXIST: // of a file that is made anew: only a folder cannot be moved out of its way
    case EISDIR:
        return {FaultCode::NotRegularFile, path};
    default:
        return {FaultCode::InputOutput, path};
    }
}

Result<void> Disk::before(Step, const QString &)
{
    return {};
}

Result<void> Disk::write(int file, const QString &path, const char *bytes, qsizetype count)
{
    if (Result<void> begun = before(Step::Write, path); !begun)
        return begun;
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
    if (Result<void> begun = before(Step::FlushFolder, folder); !begun)
        return begun;
    const Descriptor file(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some network file systems refuse to flush a folder; the rename itself has been done then.
    if (file.get() >= 0 && ::fsync(file.get()) != 0 && errno != EINVAL)
        return systemFault(folder);
    return {};
}

Result<void> Disk::finish(int file, const QString &beside, const QString &target)
{
    if (Result<void> begun = before(Step::Flush, beside); !begun)
        return begun;
    if (::fsync(file) != 0)
        return systemFault(beside);
    return rename(beside, target);
}

Result<void> Disk::copy(const QString &source, const QString &target)
{
    const Result<Descriptor> from = openToRead(source);
    if (!from)
        return from.fault();
    const Result<QString> file = replaced(target);
    if (!file)
        return file.fault();
    const QString beside = file.value() + QStringLiteral(".part");
    const Descriptor to = create(beside);
    if (to.get() < 0)
        return systemFault(beside);

    Result<void> outcome;
    std::array<char, 65536> block{};
    while (outcome) {
        const ssize_t count = ::read(from.value().get(), block.data(), block.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            outcome = systemFault(source);
        if (count <= 0)
            break;
        outcome = write(to.get(), beside, block.data(), count);
    }
    if (outcome)
        outcome = finish(to.get(), beside, file.value());
    if (!outcome)
        ::unlink(QFile::encodeName(beside).constData());
    return outcome;
}

Result<void> Disk::replaceContent(const QString &target, const QByteArray &content, const QString &name)
{
    const Result<QString> file = replaced(target);
    if (!file)
        return file.fault();
    const QString beside = QFileInfo(file.value()).path() + QLatin1Char('/') + name;
    const Descriptor to = create(beside);
    if (to.get() < 0)
        return systemFault(beside);
    Result<void> outcome = write(to.get(), beside, content.constData(), content.size());
    if (outcome)
        outcome = finish(to.get(), beside, file.value());
    if (!outcome)
        ::unlink(QFile::encodeName(beside).constData());
    return outcome;
}

Result<void> Disk::renameOnly(const QString &from, const QString &to)
{
    if (Result<void> begun = before(Step::Rename, to); !begun)
        return begun;
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
        return systemFault(to);
    return {};
}

Result<void> Disk::rename(const QString &from, const QString &to)
{
    const Result<void> renamed = renameOnly(from, to);
    return renamed ? flushFolder(to) : renamed;
}

std::function<Result<bool>()> Disk::flushAll(const QString &folder)
{
    if (const Result<void> begun = before(Step::Flush, folder); !begun)
        return [fault = begun.fault()] { return Result<bool>(fault); };
    return [folder]() -> Result<bool> {
        const Descriptor file(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (file.get() < 0 || ::syncfs(file.get()) != 0)
            return systemFault(folder);
        return true;
    };
}

Result<void> Disk::remove(const QString &path)
{
    if (Result<void> begun = before(Step::Remove, path); !begun)
        return begun;
    if (::unlink(QFile::encodeName(path).constData()) != 0 && errno != ENOENT)
        return systemFault(path);
    return {};
}

Result<void> Disk::makeFolder(const QString &path)
{
    if (Result<void> begun = before(Step::MakeFolder, path); !begun)
        return begun;
    if (::mkdir(QFile::encodeName(path).constData(), 0700) != 0 && errno != EEXIST)
        return systemFault(path);
    // As long as something else has the name no folder can be made.
    if (!QFileInfo(path).isDir())
        return Fault{FaultCode::AccessDenied, path};
    return flushFolder(path);
}

Result<void> Disk::makeLink(const QString &path, const QString &target)
{
    if (Result<void> begun = before(Step::MakeLink, path); !begun)
        return begun;
    if (::symlink(QFile::encodeName(target).constData(), QFile::encodeName(path).constData()) != 0)
        return systemFault(path);
    return flushFolder(path);
}

size_t openFilesLeft()
{
    rlimit limit = {};
    const size_t most = ::getrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : 1024;
    const QDir opened(QStringLiteral("/proc/self/fd"));
    return most - std::min(most, size_t(opened.entryList(QDir::AllEntries | QDir::System).size()));
}

qint64 freeBytes(const QString &folder)
{
    struct statvfs device {
    };
    if (::statvfs(QFile::encodeName(folder).constData(), &device) != 0)
        return std::numeric_limits<qint64>::max();
    return static_cast<qint64>(device.f_bavail * device.f_frsize);
}

void keepFilesPrivate()
{
    ::umask(077);
}
