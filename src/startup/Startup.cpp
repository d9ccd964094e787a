#include "startup/Startup.h"

#include "archives/Tables.h"
#include "archives/Templates.h"
#include "texts/OwnText.h"

#include <QDir>

#include <algorithm>
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

bool contains(const ProgramFolder &folder, const char16_t *name)
{
    return folder.exists(text(name)) || !folder.lostTarget(text(name)).isEmpty();
}

/// A file that only a program leaves which has been at work with a register; @p name in small letters. What a first
/// start leaves when it is cut off is none.
bool isTraceOfUse(const QString &name)
{
    static const std::array beginnings = {QStringLiteral("eventi_"),         QStringLiteral("anatmp."),
                                          QStringLiteral("anagrafico.zeb-"), QStringLiteral("fascie.zeb"),
                                          QStringLiteral("ferie.zeb"),       QStringLiteral("attesa.zeb"),
                                          QStringLiteral("giornale_")};
    return !name.endsWith(QStringLiteral(".part")) &&
           (name.endsWith(QStringLiteral(".evn")) ||
            std::any_of(beginnings.begin(), beginnings.end(),
                        [&name](const QString &b) { return name.startsWith(b); }));
}

bool hasBeenUsed(const ProgramFolder &folder)
{
    const auto entries = [&folder](const char16_t *name) {
        return QDir(folder.path(text(name)))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    };
    const QStringList files = entries(ArchiveName::Folder);
    return !entries(ArchiveName::BackupFolder).isEmpty() ||
           std::any_of(files.begin(), files.end(), [](const QString &name) { return isTraceOfUse(name.toLower()); });
}

/// True for a folder that has nothing in it but what may be laid there before the first start.
bool isEmpty(const ProgramFolder &folder)
{
    static const QStringList laidBefore = {QStringLiteral("porte"), QStringLiteral("immagini"),
                                           QStringLiteral("istruzioni"), QStringLiteral("lost+found")};
    const QStringList entries =
        QDir(folder.root()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    return std::all_of(entries.begin(), entries.end(),
                       [](const QString &name) { return laidBefore.contains(name.toLower()); });
}

/// True when `Archivi` and templates that are missing may be made: they come first, settings and archives after them.
bool isNew(const ProgramFolder &folder)
{
    const QString settings = Settings::fileName();
    return !folder.exists(settings) && folder.lostTarget(settings).isEmpty() && !hasBeenUsed(folder) &&
           (folder.isFolder(text(ArchiveName::Folder)) || isEmpty(folder));
}

std::optional<StartFault> checkTemplate(const ProgramFolder &folder, const char16_t *name)
{
    if (folder.exists(text(name)) || (isNew(folder) && !folder.installed(text(name)).isEmpty()))
        return {};
    return fault(OwnText::TemplateMissing, folder.path(text(name)));
}

std::optional<StartFault> checkRegister(const ProgramFolder &folder)
{
    const QString path = folder.path(text(ArchiveName::Users));
    if (const QString target = folder.lostTarget(text(ArchiveName::Users)); !target.isEmpty())
        return StartFault{{OwnText::RegisterLinkLeadsNowhere, {path, target}, {}}};
    if (!folder.exists(text(ArchiveName::Users)) && hasBeenUsed(folder))
        return StartFault{registerMessage(folder, {FaultCode::NotFound, path})};
    return {};
}

StartFault cannotPrepare(const Fault &reason)
{
    return {{OwnText::FolderCannotBePrepared, {reason.subject}, reason}};
}

} // namespace

Message registerMessage(const ProgramFolder &folder, const Fault &reason)
{
    const QString backup = text(ArchiveName::UsersBackup);
    const bool isLost = reason.code == FaultCode::NotFound;
    if ((isLost || reason.code == FaultCode::Damaged) && folder.exists(backup))
        return {isLost ? OwnText::RegisterMissing : OwnText::RegisterDamaged,
                {folder.path(text(ArchiveName::Users)), folder.path(backup)},
                {}};
    return {OwnText::UsersUnreadable, {reason.subject}, reason};
}

std::optional<StartFault> checkProgramFolder(const ProgramFolder &folder)
{
    if (!folder.isFolder({}))
        return fault(OwnText::FolderMissing, folder.root());
    const bool hasArchives = folder.isFolder(text(ArchiveName::Folder));
    const bool areInstalled = !folder.installed(text(ArchiveName::Folder)).isEmpty();
    if (!hasArchives && !(isNew(folder) && areInstalled))
        return fault(OwnText::ArchiviMissing, folder.path(text(ArchiveName::Folder)));
    for (const QString &name : {QString(), text(ArchiveName::Folder)}) {
        if (folder.isFolder(name) && !folder.isWritable(name))
            return fault(OwnText::FolderNotWritable, folder.path(name));
    }
    if (std::optional<StartFault> found = checkRegister(folder))
        return found;
    for (const WorkingArchive &archive : workingArchives) {
        if (contains(folder, archive.name))
            continue;
        if (std::optional<StartFault> missing = checkTemplate(folder, archive.made))
            return missing;
    }
    return checkTemplate(folder, ArchiveName::EventsTemplate);
}

std::optional<StartFault> makeArchiveFolder(ProgramFolder &folder)
{
    if (folder.isFolder(text(ArchiveName::Folder)))
        return {};
    const Result<void> made = folder.disk().makeFolder(folder.path(text(ArchiveName::Folder)));
    return made ? std::nullopt : std::optional(cannotPrepare(made.fault()));
}

std::optional<StartFault> prepareProgramFolder(ArchiveStore &archives, Settings &settings, int systemLanguage,
                                               Notices &notices)
{
    ProgramFolder &folder = archives.folder();
    if (isNew(folder)) {
        if (const Result<void> laid = layTemplates(folder); !laid)
            return cannotPrepare(laid.fault());
    }
    if (!folder.isFolder(text(ArchiveName::BackupFolder)) && contains(folder, ArchiveName::BackupFolder)) {
        // Events can be stored all the same; the register cannot be saved.
        notices.post(Icon::Exclamation,
                     {OwnText::FolderNotWritable, {folder.path(text(ArchiveName::BackupFolder))}, {}});
    } else if (!folder.isFolder(text(ArchiveName::BackupFolder))) {
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
        // A link that leads nowhere is left alone: what stands behind it may come back.
        if (contains(folder, archive.name))
            continue;
        if (const Result<void> copied = archives.copy(archive.made, archive.name); !copied)
            return cannotPrepare(copied.fault());
    }
    return {};
}
