#include "platform/ArchiveUse.h"

#include "platform/Descriptor.h"

#include <QFile>

#include <fcntl.h>

namespace {

/// Bytes that the database library locks of every archive that it reads or writes.
constexpr off_t firstLocked = 0x40000000;
constexpr off_t lockedBytes = 2 + 510;

struct flock allLocked()
{
    struct flock all = {};
    all.l_type = F_WRLCK;
    all.l_whence = SEEK_SET;
    all.l_start = firstLocked;
    all.l_len = lockedBytes;
    return all;
}

} // namespace

bool isInUse(const QString &archive)
{
    const Descriptor file(::open(QFile::encodeName(archive).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct flock all = allLocked();
    return file.get() >= 0 && ::fcntl(file.get(), F_GETLK, &all) == 0 && all.l_type != F_UNLCK;
}

void removeUnlessUsed(const QString &archive, const QString &side)
{
    const Descriptor file(::open(QFile::encodeName(archive).constData(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct flock all = allLocked();
    if (file.get() >= 0 && ::fcntl(file.get(), F_SETLK, &all) == 0)
        QFile::remove(side);
}
