#include "support/RecordingVfs.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

namespace {

// The library calls plain functions: the recorder of the moment and the layer below are reached through these.
RecordingVfs *recorder = nullptr;
sqlite3_vfs *below = nullptr;

struct File {
    sqlite3_file base;
    QString *path;
    sqlite3_file real; // and what the layer below needs behind it
};

File *ours(sqlite3_file *file)
{
    return reinterpret_cast<File *>(file);
}

const sqlite3_io_methods *methodsBelow(sqlite3_file *file)
{
    return ours(file)->real.pMethods;
}

/// Hands a call on to the layer below.
template<auto Method, class... Arguments>
int handOn(sqlite3_file *file, Arguments... arguments)
{
    return (methodsBelow(file)->*Method)(&ours(file)->real, arguments...);
}

int closeFile(sqlite3_file *file)
{
    const int code = methodsBelow(file)->xClose(&ours(file)->real);
    delete ours(file)->path;
    return code;
}

/// The same as a step that is noted, and may be refused.
template<auto Method, class... Arguments>
int change(sqlite3_file *file, Arguments... arguments)
{
    const int refused = recorder->step("write", *ours(file)->path);
    return refused != 0 ? refused : handOn<Method>(file, arguments...);
}

int syncFile(sqlite3_file *file, int flags)
{
    if (const int refused = recorder->step("flush", *ours(file)->path))
        return refused;
    const int code = methodsBelow(file)->xSync(&ours(file)->real, flags);
    recorder->flushed(*ours(file)->path);
    return code;
}

int mapSharedMemory(sqlite3_file *file, int region, int size, int extend, volatile void **memory)
{
    if (recorder->sharedMemoryError == 0)
        return handOn<&sqlite3_io_methods::xShmMap>(file, region, size, extend, memory);
    errno = recorder->sharedMemoryError;
    return SQLITE_IOERR_SHMSIZE;
}

void barrier(sqlite3_file *file)
{
    methodsBelow(file)->xShmBarrier(&ours(file)->real);
}

using Methods = sqlite3_io_methods;
const Methods methods = {2,
                         closeFile,
                         handOn<&Methods::xRead, void *, int, sqlite3_int64>,
                         change<&Methods::xWrite, const void *, int, sqlite3_int64>,
                         change<&Methods::xTruncate, sqlite3_int64>,
                         syncFile,
                         handOn<&Methods::xFileSize, sqlite3_int64 *>,
                         handOn<&Methods::xLock, int>,
                         handOn<&Methods::xUnlock, int>,
                         handOn<&Methods::xCheckReservedLock, int *>,
                         handOn<&Methods::xFileControl, int, void *>,
                         handOn<&Methods::xSectorSize>,
                         handOn<&Methods::xDeviceCharacteristics>,
                         mapSharedMemory,
                         handOn<&Methods::xShmLock, int, int, int>,
                         barrier,
                         handOn<&Methods::xShmUnmap, int>,
                         nullptr,
                         nullptr};

int openFile(sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *outFlags)
{
    std::memset(ours(file), 0, sizeof(File));
    const int code = below->xOpen(below, name, &ours(file)->real, flags, outFlags);
    if (ours(file)->real.pMethods) {
        ours(file)->path = new QString(QFile::decodeName(name));
        ours(file)->base.pMethods = &methods;
    }
    return code;
}

int deleteFile(sqlite3_vfs *, const char *name, int syncFolder)
{
    if (const int refused = recorder->step("delete", QFile::decodeName(name)))
        return refused;
    return below->xDelete(below, name, syncFolder);
}

sqlite3_vfs layer;

} // namespace

RecordingVfs::RecordingVfs()
{
    recorder = this;
    below = sqlite3_vfs_find(nullptr);
    layer = *below;
    layer.zName = "recording";
    layer.szOsFile = static_cast<int>(sizeof(File)) + below->szOsFile;
    layer.xOpen = openFile;
    layer.xDelete = deleteFile;
    sqlite3_vfs_register(&layer, 1);
}

RecordingVfs::~RecordingVfs()
{
    sqlite3_vfs_unregister(&layer);
    sqlite3_vfs_register(below, 1);
    recorder = nullptr;
}

int RecordingVfs::step(const char *what, const QString &path)
{
    if (stopAt >= 0 && steps.size() >= stopAt)
        return SQLITE_IOERR;
    if (refusal != 0 && qstrcmp(what, "write") == 0)
        return refusal;
    if (!m_onDisk.contains(path)) {
        QFile file(path);
        m_onDisk.insert(path, file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
    }
    steps.append(QLatin1String(what) + QLatin1Char(' ') + QFileInfo(path).fileName());
    return SQLITE_OK;
}

void RecordingVfs::flushed(const QString &path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        m_onDisk.insert(path, file.readAll());
}

void RecordingVfs::loseWhatWasNotFlushed()
{
    for (auto one = m_onDisk.cbegin(); one != m_onDisk.cend(); ++one) {
        QFile file(one.key());
        if (file.exists() && file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            file.write(one.value());
    }
}
