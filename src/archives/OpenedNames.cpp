#include "archives/OpenedNames.h"

OpenedNames::OpenedNames(const QString &name, const Database &database)
{
    m_names[0].path = name;
    m_names[1].path = database.path() + QStringLiteral("-wal");
    m_names[2].path = database.path() + QStringLiteral("-shm");
    for (Named &named : m_names)
        named.file = identityOf(named.path);
}

bool OpenedNames::Named::isOther() const
{
    if (!file)
        return false;
    const std::optional<FileIdentity> now = identityOf(path);
    return now && now != file;
}

void OpenedNames::giveUp(Database &database, Disk &disk) const
{
    database.keepSideFiles();
    // A journal of this file must not be taken for one of the file that has its name now.
    for (const Named &side : {m_names[1], m_names[2]}) {
        if (side.file && identityOf(side.path) == side.file)
            (void)disk.remove(side.path);
    }
}
