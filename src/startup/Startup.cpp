#include "startup/Startup.h"

#include "archives/Tables.h"

#include <array>

namespace {

struct WorkingArchive {
    const char16_t *name;
    const char16_t *made; ///< template that it is copied from
};

constexpr std::array workingArchives = {
    WorkingArchive{ArchiveName::Users, ArchiveName::UsersTemplate},
    WorkingArchive{ArchiveName::Bands, ArchiveName::BandsTemplate},
    WorkingArchive{ArchiveName::Holidays, ArchiveName::HolidaysTemplate},
};

QString text(const char16_t *name)
{
    return QStringView(name).toString();
}

StartFault fault(OwnText what, const QString &subject)
{
    return {{what, {subject}, {}}};
}

StartFault cannotPrepare(const Fault &reason)
{
    return {{OwnText::FolderCannotBePrepared, {reason.subject}, reason}};
}

} // namespace

std::optional<StartFault> checkProgramFolder(const ProgramFolder &folder)
{
    if (!folder.isFolder({}))
        return fault(OwnText::FolderMissing, folder.root());
    if (!folder.isFolder(text(ArchiveName::Folder)))
        return fault(OwnText::ArchiviMissing, folder.path(text(ArchiveName::Folder)));
    for (const QString &name : {QString(), text(ArchiveName::Folder)}) {
        if (!folder.isWritable(name))
            return fault(OwnText::FolderNotWritable, folder.path(name));
    }
    for (const WorkingArchive &archive : workingArchives) {
        if (!folder.exists(text(archive.name)) && !folder.exists(text(archive.made)))
            return fault(OwnText::TemplateMissing, folder.path(text(archive.made)));
    }
    if (!folder.exists(text(ArchiveName::EventsTemplate)))
        return fault(OwnText::TemplateMissing, folder.path(text(ArchiveName::EventsTemplate)));
    return {};
}

std::optional<StartFault> prepareProgramFolder(ArchiveStore &archives, Settings &settings, int systemLanguage,
                                               Notices &notices)
{
    ProgramFolder &folder = archives.folder();
    if (!folder.isFolder(text(ArchiveName::BackupFolder))) {
        const Result<void> made = folder.disk().makeFolder(folder.path(text(ArchiveName::BackupFolder)));
        if (!made)
            return cannotPrepare(made.fault());
    }
    if (!settings.fileExists()) {
        if (const Result<void> created = settings.CreaImpostazioni(systemLanguage); !created)
            return cannotPrepare(created.fault());
    }
    if (const Result<void> read = settings.read(systemLanguage, notices); !read)
        return cannotPrepare(read.fault());
    for (const WorkingArchive &archive : workingArchives) {
        if (archives.exists(archive.name))
            continue;
        if (const Result<void> copied = archives.copy(archive.made, archive.name); !copied)
            return cannotPrepare(copied.fault());
    }
    return {};
}
