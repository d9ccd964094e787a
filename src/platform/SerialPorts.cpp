#include "platform/SerialPorts.h"

#include "platform/RegularFile.h"

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

/// A fact that the system tells in a file of one line; "" when it does not.
QString fact(const QString &file)
{
    constexpr qsizetype longest = 256;
    const Result<QByteArray> content = readFile(file, longest);
    return content ? QString::fromUtf8(content.value()).simplified() : QString();
}

/// The folder of the USB device that the device of the folder @p device is a part of; "" when it is no part of one.
QString usbDevice(const QString &device)
{
    for (QString folder = QFileInfo(device).canonicalFilePath(); folder.size() > 1; folder = QFileInfo(folder).path()) {
        if (QFileInfo::exists(folder + QStringLiteral("/idVendor")))
            return folder;
    }
    return {};
}

} // namespace

SerialPorts::SerialPorts(ProgramFolder &folder, DeviceFolders system) : m_folder(folder), m_system(std::move(system))
{
}

QString SerialPorts::link(int number) const
{
    return m_folder.path(QStringLiteral("Porte/COM%1").arg(number));
}

QString SerialPorts::device(int number) const
{
    if (number < 1)
        return {};
    const QString linked = link(number);
    if (QFileInfo(linked).isSymLink() || QFileInfo::exists(linked)) {
        const QString canonical = QFileInfo(linked).canonicalFilePath();
        return canonical.isEmpty() ? QFileInfo(linked).symLinkTarget() : canonical;
    }
    QStringList names;
    if (number <= 4)
        names = {QStringLiteral("/ttyS%1").arg(number - 1)};
    else if (number <= 8)
        names = {QStringLiteral("/ttyUSB%1").arg(number - 5), QStringLiteral("/ttyACM%1").arg(number - 5)};
    for (const QString &name : names) {
        QString canonical = QFileInfo(m_system.devices + name).canonicalFilePath();
        if (!canonical.isEmpty())
            return canonical;
    }
    return names.isEmpty() ? QString() : m_system.devices + names.first();
}

SerialDevice SerialPorts::describe(int number) const
{
    SerialDevice found;
    found.path = device(number);
    if (!QFileInfo::exists(found.path))
        return found;
    const QString name = QFileInfo(found.path).fileName();
    const QString usb = usbDevice(m_system.facts + QLatin1Char('/') + name + QStringLiteral("/device"));
    if (!usb.isEmpty()) {
        found.kind = SerialDevice::Kind::UsbAdapter;
        found.maker = fact(usb + QStringLiteral("/manufacturer"));
        found.serialNumber = fact(usb + QStringLiteral("/serial"));
    } else {
        found.kind = name.startsWith(QStringLiteral("ttyS")) ? SerialDevice::Kind::BuiltIn : SerialDevice::Kind::Other;
    }
    return found;
}

/// The first of the names that are made of what a device says of itself; "" without one.
QString SerialPorts::lastingName(const QString &device) const
{
    const QDir names(m_system.devices + QStringLiteral("/serial/by-id"));
    const QStringList all = names.entryList(QDir::System | QDir::Files, QDir::Name);
    for (const QString &name : all) {
        if (QFileInfo(names.filePath(name)).canonicalFilePath() == device)
            return names.filePath(name);
    }
    return {};
}

Result<void> SerialPorts::keepDevice(int number)
{
    const QString path = link(number);
    const QString name = lastingName(device(number));
    if (name.isEmpty() || QFileInfo(path).isSymLink() || QFileInfo::exists(path))
        return {};
    if (Result<void> made = m_folder.disk().makeFolder(QFileInfo(path).path()); !made)
        return made;
    return m_folder.disk().makeLink(path, name);
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
