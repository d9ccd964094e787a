#include "platform/ProgramFolder.h"

#include "platform/RegularFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 nanosecondsPerSecond = 1'000'000'000;
/// Two changes of a folder within one tick of the file system's clock leave the same time on it.
constexpr qint64 clockTick = 50'000'000;

qint64 nanosecondsOf(const timespec &time)
{
    return time.tv_sec * nanosecondsPerSecond + time.tv_nsec;
}

qint64 now()
{
    timespec time{};
    ::clock_gettime(CLOCK_REALTIME, &time);
    return nanosecondsOf(time);
}

} // namespace

ProgramFolder::ProgramFolder(const QString &root, Disk &disk, const QString &installation)
    : m_root(QDir(root).absolutePath()),
      m_installation(installation.isEmpty() ? QString() : QDir(installation).absolutePath()),
      m_disk(disk)
{
}

QString ProgramFolder::inFolder(const QString &folder, const QString &name) const
{
    QString exact = folder + QLatin1Char('/') + name;
    struct stat status = {};
    if (::lstat(QFile::encodeName(exact).constData(), &status) == 0)
        return exact;
    if (::stat(QFile::encodeName(folder).constData(), &status) != 0)
        return exact;

    // A folder of ten years holds thousands of days: its listing is kept until the folder changes.
    Listing &listing = m_listings[folder];
    const qint64 changed = nanosecondsOf(status.st_mtim);
    if (listing.changed != changed || listing.read - changed < clockTick) {
        listing = {changed, now(), {}};
        const QStringList entries =
            QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (const QString &entry : entries)
            listing.names.insert(entry.toCaseFolded(), entry);
    }
    const auto found = listing.names.constFind(name.toCaseFolded());
    return found == listing.names.constEnd() ? exact : folder + QLatin1Char('/') + *found;
}

QString ProgramFolder::below(const QString &folder, const QString &name) const
{
    QString result = folder;
    const QStringList parts = name.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (const QString &part : parts)
        result = inFolder(result, part);
    return result;
}

QString ProgramFolder::path(const QString &name) const
{
    return below(m_root, name);
}

QString ProgramFolder::installed(const QString &name) const
{
    const QString file = m_installation.isEmpty() ? QString() : below(m_installation, name);
    return QFileInfo::exists(file) ? file : QString();
}

bool ProgramFolder::exists(const QString &name) const
{
    return QFileInfo::exists(path(name));
}

bool ProgramFolder::isFolder(const QString &name) const
{
    return QFileInfo(path(name)).isDir();
}

QString ProgramFolder::lostTarget(const QString &name) const
{
    const QFileInfo file(path(name));
    return file.isSymLink() && !file.exists() ? file.symLinkTarget() : QString();
}

QString ProgramFolder::fileToOpen(const QString &name) const
{
    const QString common = exists(name) ? QString() : installed(name);
    QString file = common.isEmpty() ? path(name) : common;
    return checkRegular(file) ? file : QString();
}

bool ProgramFolder::isWritable(const QString &name) const
{
    return ::access(QFile::encodeName(path(name)).constData(), W_OK | X_OK) == 0;
}

Result<void> ProgramFolder::copyInstalled(const QString &name)
{
    return m_disk.copy(installed(name), path(name));
}

Result<void> ProgramFolder::remove(const QString &name)
{
    return m_disk.remove(path(name));
}

Result<void> FolderLock::take(const QString &folder)
{
    // The folder itself is locked, so that no lock file has to be written into it, or is left behind by a crash.
    Descriptor file(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file.get() < 0)
        return Fault{errno == ENOENT || errno == ENOTDIR ? FaultCode::NotFound : FaultCode::AccessDenied, folder};
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0)
        return Fault{errno == EWOULDBLOCK ? FaultCode::AlreadyInUse : FaultCode::InputOutput, folder};
    m_held.push_back(std::move(file));
    return {};
}
