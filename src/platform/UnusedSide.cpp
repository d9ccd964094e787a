#include "platform/UnusedSide.h"

#include "platform/Descriptor.h"

#include <QFile>

#include <fcntl.h>

namespace {

/// Bytes that the database library locks of every archive that it reads or writes.
constexpr off_t firstLocked = 0x40000000;
constexpr off_t lockedBytes = 2 + 510;

} // namespace

void removeUnlessUsed(const QString &archive, const QString &side)
{
    const Descriptor file(::open(QFile::encodeName(archive).constData(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct flock all = {};
    all.l_type = F_WRLCK;
    all.l_whence = SEEK_SET;
    all.l_start = firstLocked;
    all.l_len = lockedBytes;
    if (file.get() >= 0 && ::fcntl(file.get(), F_SETLK, &all) == 0)
        QFile::remove(side);
}
