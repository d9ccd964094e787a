#pragma once

#include "platform/ProgramFolder.h"

/// Where the system shows its devices; a test lays folders of its own.
struct DeviceFolders {
    QString devices = QStringLiteral("/dev");
    QString facts = QStringLiteral("/sys/class/tty"); ///< what is known of each, in a folder of its name
};

/// What the system knows of the device behind a port.
struct SerialDevice {
    enum class Kind { Missing, BuiltIn, UsbAdapter, Other };

    Kind kind = Kind::Missing;
    QString path;         ///< see SerialPorts::device()
    QString maker;        ///< of an adapter; like the next, "" when it does not tell
    QString serialNumber; ///< of an adapter
};

/// The devices behind the port numbers that the operator chooses from.
class SerialPorts
{
public:
    /// @param folder  must outlive this object
    explicit SerialPorts(ProgramFolder &folder, DeviceFolders system = {});

    /// Device of the port COM@p number: what `Porte/COM<n>` in the program folder leads to when it exists, else
    /// /dev/ttyS0 to 3 for 1 to 4 and /dev/ttyUSB0 to 3 for 5 to 8, or /dev/ttyACM0 to 3 where that one is alone. Links
    /// are followed to the device itself, so that one device has one name. "" for other numbers; the device need not
    /// exist.
    QString device(int number) const;
    SerialDevice describe(int number) const;

    /// Makes `Porte/COM<n>` lead to the device by the name that it keeps under whatever number it comes back. Nothing
    /// is done for a device that has no such name, nor where something stands under that of the link.
    Result<void> keepDevice(int number);

private:
    QString link(int number) const;
    QString lastingName(const QString &device) const;

    ProgramFolder &m_folder;
    const DeviceFolders m_system;
};

/// NotFound when there is no such device, AccessDenied when this user may not use it, AlreadyInUse when another program
/// holds it, which is found out for the superuser too, whom the system would let in. No line is raised by asking,
/// unless for the superuser on a port that nobody has locked.
Result<void> checkDeviceIsFree(const QString &device);
