#pragma once

#include "platform/ProgramFolder.h"

/// The devices behind the port numbers that the operator chooses from.
class SerialPorts
{
public:
    /// @param folder  must outlive this object
    explicit SerialPorts(const ProgramFolder &folder) : m_folder(folder) {}

    /// Device of the port COM@p number: what `Porte/COM<n>` in the program folder leads to when it exists, else
    /// /dev/ttyS0 to 3 for 1 to 4 and /dev/ttyUSB0 to 3 for 5 to 8. Links are followed to the device itself, so that
    /// one device has one name. "" for other numbers; the device need not exist.
    QString device(int number) const;

private:
    const ProgramFolder &m_folder;
};

/// NotFound when there is no such device, AccessDenied when this user may not use it, AlreadyInUse when another program
/// holds it, which is found out for the superuser too, whom the system would let in. No line is raised by asking,
/// unless for the superuser on a port that nobody has locked.
Result<void> checkDeviceIsFree(const QString &device);
