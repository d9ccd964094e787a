#include "platform/FileStamp.h"

#include <QFile>

#include <sys/stat.h>

std::optional<FileStamp> stampOf(const QString &path)
{
    constexpr qint64 second = 1'000'000'000;
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return FileStamp{status.st_size, status.st_mtim.tv_sec * second + status.st_mtim.tv_nsec, status.st_mode & S_IRWXU};
}
