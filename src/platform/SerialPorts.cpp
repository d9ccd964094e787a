#include "platform/SerialPorts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

/// The lock that the serial library, and other programs by old custom, keep for a device in use.
QString lockFile(const QString &device)
{
    static constexpr std::array folders = {"/var/lock", "/etc/locks", "/var/spool/locks",  "/var/spool/uucp",
                                           "/tmp",      "/var/tmp",   "/var/lock/lockdev", "/run/lock"};
    QString name = device;
    if (name.startsWith(QStringLiteral("/dev/")))
        name.remove(0, 5);
    name.replace(QLatin1Char('/'), QLatin1Char('_'));
    for (const char *folder : folders) {
        const QFileInfo information(QString::fromLatin1(folder));
        if (information.isDir() && information.isWritable())
            return information.filePath() + QStringLiteral("/LCK..") + name;
    }
    return {};
}

FaultCode openFault(int error)
{
    switch (error) {
    case EBUSY:
        return FaultCode::AlreadyInUse;
    case EACCES:
    case EPERM:
        return FaultCode::AccessDenied;
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return FaultCode::NotFound;
    default:
        return FaultCode::InputOutput;
    }
}

} // namespace

QString SerialPorts::device(int number) const
{
    if (number < 1)
        return {};
    const QString linked = m_folder.path(QStringLiteral("Porte/COM%1").arg(number));
    if (QFileInfo(linked).isSymLink() || QFileInfo::exists(linked)) {
        const QString canonical = QFileInfo(linked).canonicalFilePath();
        return canonical.isEmpty() ? QFileInfo(linked).symLinkTarget() : canonical;
    }
    QString name;
    if (number <= 4)
        name = QStringLiteral("/dev/ttyS%1").arg(number - 1);
    else if (number <= 8)
        name = QStringLiteral("/dev/ttyUSB%1").arg(number - 5);
    const QString canonical = name.isEmpty() ? QString() : QFileInfo(name).canonicalFilePath();
    return canonical.isEmpty() ? name : canonical;
}

Result<void> checkDeviceIsFree(const QString &device)
{
    const QByteArray name = QFile::encodeName(device);
    if (device.isEmpty() || ::access(name.constData(), F_OK) != 0)
        return Fault{FaultCode::NotFound, device};
    if (::access(name.constData(), R_OK | W_OK) != 0)
        return Fault{FaultCode::AccessDenied, device};

    const QString lockName = lockFile(device);
    QLockFile lock(lockName);
    lock.setStaleLockTime(0);
    if (!lockName.isEmpty() && !lock.tryLock(0) && lock.error() == QLockFile::LockFailedError)
        return Fault{FaultCode::AlreadyInUse, device};

    if (::geteuid() == 0) {
        const int file = ::open(name.constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        if (file < 0)
            return Fault{openFault(errno), device};
        int exclusive = 0;
        const bool known = ::ioctl(file, TIOCGEXCL, &exclusive) == 0;
        ::close(file);
        if (known && exclusive != 0)
            return Fault{FaultCode::AlreadyInUse, device};
    }
    return {};
}
