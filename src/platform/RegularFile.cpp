#include "platform/RegularFile.h"

#include "platform/Disk.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

Result<void> checkRegular(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) == 0 && !S_ISREG(status.st_mode))
        return Fault{FaultCode::NotRegularFile, path};
    return {};
}

bool isOwnersOnly(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

Result<QString> linkFollowed(const QString &path)
{
    const QFileInfo file(path);
    if (!file.isSymLink())
        return path;
    // One that leads in a circle, or to where there are no rights, has itself as its canonical path.
    const QString real = file.canonicalFilePath();
    if (real.isEmpty() || !file.exists())
        return Fault{FaultCode::NotFound, path};
    return real;
}

Result<Descriptor> openToRead(const QString &path)
{
    if (const Result<void> regular = checkRegular(path); !regular)
        return regular.fault();
    Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status = {};
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0)
        return systemFault(path);
    if (!S_ISREG(status.st_mode))
        return Fault{FaultCode::NotRegularFile, path};
    return file;
}

Result<QByteArray> readFile(const QString &path, qsizetype limit)
{
    const Result<Descriptor> file = openToRead(path);
    if (!file)
        return file.fault();
    QByteArray content(limit + 1, '\0');
    qsizetype size = 0;
    while (size <= limit) {
        const ssize_t count =
            ::read(file.value().get(), content.data() + size, static_cast<size_t>(content.size() - size));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return systemFault(path);
        if (count == 0)
            break;
        size += count;
    }
    if (size > limit)
        return Fault{FaultCode::TooLarge, path};
    content.truncate(size);
    return content;
}
