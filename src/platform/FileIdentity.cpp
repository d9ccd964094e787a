#include "platform/FileIdentity.h"

#include <QFile>

#include <cerrno>
#include <sys/stat.h>

std::optional<FileIdentity> identityOf(const QString &path)
{
    struct stat status {
    };
    if (::stat(QFile::encodeName(path).constData(), &status) == 0)
        return FileIdentity{status.st_dev, status.st_ino};
    if (errno == ENOENT || errno == ENOTDIR)
        return FileIdentity{};
    return std::nullopt;
}
