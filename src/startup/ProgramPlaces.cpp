#include "startup/ProgramPlaces.h"

#include "archives/Tables.h"
#include "platform/ProgramFolder.h"

#include <QDir>
#include <QFileInfo>

ProgramPlaces programPlaces(const QString &asked, const QString &programs, const QString &userData)
{
    Disk disk;
    const bool isReady = ProgramFolder(programs, disk).isFolder(QStringView(ArchiveName::Folder).toString());
    const QString installation =
        isReady ? programs : QDir::cleanPath(programs + QStringLiteral("/../share/kor-supervisor"));
    if (!asked.isEmpty())
        return {asked, installation};
    if (isReady)
        return {programs, installation};
    return {userData + QStringLiteral("/kor-supervisor"), installation, true};
}

Result<void> makeUsersFolder(const QString &folder, Disk &disk)
{
    if (QFileInfo(folder).isDir())
        return {};
    const QString above = QFileInfo(folder).path();
    if (above != folder) {
        if (Result<void> made = makeUsersFolder(above, disk); !made)
            return made;
    }
    return disk.makeFolder(folder);
}
