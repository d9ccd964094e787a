#include "backup/Backup.h"

#include "archives/Tables.h"
#include "texts/OwnText.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <chrono>

namespace {

/// A lot is flushed at once: a flush for each file would take far longer than the copying. Each file of two lots is
/// open, and the program opens others meanwhile.
size_t lotFiles()
{
    constexpr size_t few = 2;
    constexpr size_t most = 256;
    return std::clamp(openFilesLeft() / 4, few, most);
}

constexpr qint64 lotBytes = 64 << 20;

/// Longest that the end is held up by a slow device.
constexpr std::chrono::milliseconds removalPatience(15);

/// What the program and the database library leave behind, and nobody needs.
bool isPassing(const QString &name)
{
    static const std::array endings = {QStringLiteral("-wal"),  QStringLiteral("-shm"), QStringLiteral("-journal"),
                                       QStringLiteral(".part"), QStringLiteral(".$$$"), QStringLiteral(".evn")};
    return FreshFile::isBeside(name) || std::any_of(endings.begin(), endings.end(), [&name](const QString &ending) {
               return name.endsWith(ending, Qt::CaseInsensitive);
           });
}

/// A day or a year of the journal: without a register such a folder does not start.
bool isTraceOfUse(const QString &name)
{
    return name.startsWith(QStringLiteral("Archivi/Eventi_"), Qt::CaseInsensitive) ||
           name.startsWith(QStringLiteral("Archivi/Giornale_"), Qt::CaseInsensitive);
}

QString below(const QString &folder, const QString &name)
{
    return folder.isEmpty() || name.isEmpty() ? folder + name : folder + QLatin1Char('/') + name;
}

Result<bool> going(const Result<void> &done)
{
    return done ? Result<bool>(true) : Result<bool>(done.fault());
}

bool liesIn(const QString &folder, const QString &path)
{
    return path == folder || path.startsWith(folder + QLatin1Char('/'));
}

} // namespace

Backup::Backup(ArchiveStore &archives, const QString &target)
    : m_archives(archives),
      m_folder(target, archives.folder().disk()),
      m_target(m_folder, archives),
      m_lotFiles(lotFiles())
{
}

Backup::~Backup()
{
    Backup::stop();
}

Result<void> Backup::begin()
{
    const QString target = m_folder.root();
    m_real = QFileInfo(target).canonicalFilePath();
    if (m_real.isEmpty() || !QFileInfo(m_real).isDir())
        return Fault{FaultCode::NotFound, target};
    if (liesIn(QFileInfo(m_archives.folder().root()).canonicalFilePath(), m_real))
        return Fault{FaultCode::OwnFolder, target};
    if (!m_folder.isWritable({}))
        return Fault{FaultCode::AccessDenied, target};
    if (Result<void> taken = m_lock.take(target); !taken)
        return taken;
    const QString archives = QStringView(ArchiveName::Folder).toString();
    return m_folder.isFolder(archives) ? m_lock.take(m_folder.path(archives)) : Result<void>();
}

void Backup::stop()
{
    m_isStopped = true;
    m_check.reset();
    m_lotCheck.reset();
    if (m_copy)
        m_lot.push_back(std::move(m_copy));
    std::move(m_checked.begin(), m_checked.end(), std::back_inserter(m_lot));
    m_checked.clear();
    std::vector<std::function<void()>> removals;
    for (const std::unique_ptr<FileCopy> &copy : m_lot) {
        if (copy)
            removals.push_back(copy->giveUp());
    }
    m_lot.clear();
    if (removals.empty())
        return;
    Errand<bool> removing(
        [removals] {
            for (const std::function<void()> &remove : removals)
                remove();
            return true;
        },
        {});
    // What is left when the program ends now goes with the next backup.
    (void)removing.wait(removalPatience);
}

std::optional<Message> Backup::incomplete(const Fault &fault) const
{
    if (!m_missed || fault.subject != m_missed->subject)
        return {};
    if (m_missedFiles == 1)
        return Message{OwnText::BackupIncomplete, {fault.subject}, fault};
    return Message{OwnText::BackupLacksFiles, {QString::number(m_missedFiles), fault.subject}, fault};
}

Result<bool> Backup::step(const QDeadlineTimer &until)
{
    do {
        if (m_isStopped)
            return true;
        Result<bool> worked = false;
        if (!m_isListed)
            worked = list();
        else if (!m_check && !m_checked.empty())
            worked = going(putFile());
        else if (m_copy)
            worked = copyOn(until);
        else if (!m_sources.empty() && !isLotFull())
            beginFile();
        else if (m_check)
            worked = awaitCheck(until);
        else if (!m_lot.empty())
            finishLot();
        else if (!m_changedFolders.isEmpty())
            worked = going(flushNames());
        else
            return m_missed ? Result<bool>(*m_missed) : Result<bool>(true);
        if (!worked)
            return worked;
    } while (!until.hasExpired());
    return false;
}

// What is to be copied -----------------------------------------------------------------------------------------------

/// Looks at one entry of a folder, or begins the next folder.
Result<bool> Backup::list()
{
    if (m_listing && m_listing->hasNext()) {
        m_listing->next();
        return listEntry(m_listing->fileInfo());
    }
    m_listing.reset();
    if (m_folders.isEmpty()) {
        m_isListed = true;
        // They are taken from the back: the register comes before them.
        std::stable_partition(m_sources.begin(), m_sources.end(),
                              [](const Source &source) { return isTraceOfUse(source.name); });
        return true;
    }
    m_listed = m_folders.takeFirst();
    const QString path = m_archives.folder().path(m_listed);
    const QString real = QFileInfo(path).canonicalFilePath();
    // Links may lead in a circle, or to the copy.
    if (m_seen.contains(real) || liesIn(m_real, real))
        return true;
    m_seen.insert(real);
    if (Result<void> made = makeFolder(m_listed); !made)
        return made.fault();
    m_listing =
        std::make_unique<QDirIterator>(path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    return true;
}

Result<bool> Backup::listEntry(const QFileInfo &entry)
{
    const QString name = below(m_listed, entry.fileName());
    if (entry.isDir()) {
        m_folders.append(name);
    } else if (entry.isSymLink() && !entry.isFile()) {
        // To a device, above all, or to a share that is not there now.
        if (const Result<void> copied = copyLink(entry.symLinkTarget(), pathOfCopy(name)); !copied)
            return copied.fault();
    } else if (entry.isFile() && !isPassing(entry.fileName())) {
        const std::optional<FileStamp> stamp = stampOf(entry.filePath());
        const auto isOpen = [&entry] {
            return hasJournals(entry.isSymLink() ? entry.canonicalFilePath() : entry.filePath());
        };
        if (stamp && (stamp != stampOf(pathOfCopy(name)) || isOpen())) {
            m_sources.push_back({name, stamp->size});
            m_bytes += stamp->size;
        }
    }
    return true;
}

/// Names of the copy are those of the program folder to the letter. To look for other spellings would take a listing of
/// the folder for each file, since each file changes it.
QString Backup::pathOfCopy(const QString &name) const
{
    return below(m_folder.root(), name);
}

/// A folder of the copy, without what was left in it by a backup that was cut off.
Result<void> Backup::makeFolder(const QString &name)
{
    const QString path = pathOfCopy(name);
    if (!QFileInfo(path).isDir()) {
        // A medium that was pulled is not to be mistaken for an empty folder on the disk below it.
        if (name.isEmpty())
            return Fault{FaultCode::NotFound, path};
        if (Result<void> made = m_folder.disk().makeFolder(path); !made)
            return made;
    }
    for (const QString &left : QDir(path).entryList(QDir::Files | QDir::Hidden)) {
        if (!FreshFile::isBeside(left))
            continue;
        if (Result<void> removed = m_folder.disk().remove(path + QLatin1Char('/') + left); !removed)
            return removed;
    }
    return {};
}

Result<void> Backup::copyLink(const QString &leadsTo, const QString &link)
{
    if (QFileInfo(link).isSymLink() || QFileInfo::exists(link))
        return {};
    return QFile::link(leadsTo, link) ? Result<void>() : Result<void>(Fault{FaultCode::AccessDenied, link});
}

bool Backup::isLotFull() const
{
    return m_lot.size() >= m_lotFiles || m_lotBytes >= lotBytes;
}

// How it is copied ---------------------------------------------------------------------------------------------------

void Backup::beginFile()
{
    m_copy = std::make_unique<FileCopy>(m_archives, m_target, m_sources.back().name);
    m_bytesOfFile = m_sources.back().size;
    m_sources.pop_back();
}

Result<bool> Backup::copyOn(const QDeadlineTimer &until)
{
    Result<bool> copied = m_copy->step(until);
    if (!copied && m_copy->side() == FileCopy::Side::Target)
        return copied;
    if (copied && !copied.value())
        return true;
    if (copied)
        addToLot();
    else
        miss(copied.fault());
    m_copy.reset();
    m_lotBytes += m_bytesOfFile;
    m_bytesDone += m_bytesOfFile;
    return true;
}

void Backup::addToLot()
{
    if (!m_lotCheck)
        m_lotCheck = std::make_unique<LotCheck>();
    if (std::optional<LotCheck::Archive> archive = m_copy->toBeChecked())
        m_lotCheck->add(std::move(*archive));
    m_lot.push_back(std::move(m_copy));
}

void Backup::finishLot()
{
    std::move(m_lot.begin(), m_lot.end(), std::back_inserter(m_checked));
    m_lot.clear();
    m_lotBytes = 0;
    m_check = std::move(m_lotCheck);
    m_check->finish(m_folder.disk().flushAll(m_folder.root()));
}

Result<bool> Backup::awaitCheck(const QDeadlineTimer &until)
{
    const std::chrono::milliseconds left(std::clamp<qint64>(until.remainingTime(), 0, 20));
    const std::optional<Result<LotCheck::Faults>> answer = m_check->wait(left);
    if (!answer)
        return true;
    m_check.reset();
    if (!*answer)
        return answer->fault();
    auto fault = answer->value().begin();
    for (std::unique_ptr<FileCopy> &copy : m_checked) {
        if (!copy->toBeChecked())
            continue;
        if (const std::optional<FaultCode> code = *fault++) {
            // What was read is not what should have been; any other fault is the target's own.
            if (*code != FaultCode::Damaged)
                return Fault{*code, pathOfCopy(copy->name())};
            miss({*code, copy->path()});
            copy.reset();
        }
    }
    return true;
}

/// Puts one file of the lot that was checked in place.
Result<void> Backup::putFile()
{
    const std::unique_ptr<FileCopy> copy = std::move(m_checked.front());
    m_checked.pop_front();
    if (!copy)
        return {};
    if (Result<void> put = copy->put(); !put)
        return put;
    m_changedFolders.insert(QFileInfo(pathOfCopy(copy->name())).path());
    ++m_copied;
    return {};
}

/// Makes the names last, those of the last lot above all: the flush of each lot has those of the lot before it.
Result<void> Backup::flushNames()
{
    const auto folder = m_changedFolders.begin();
    Result<void> lasts = m_folder.disk().flushNames(*folder);
    m_changedFolders.erase(folder);
    return lasts;
}

void Backup::miss(const Fault &fault)
{
    ++m_missedFiles;
    if (!m_missed)
        m_missed = fault;
}
