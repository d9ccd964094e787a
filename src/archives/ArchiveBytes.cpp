#include "archives/ArchiveBytes.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <algorithm>
#include <cstring>

void ArchiveBytes::Closer::operator()(sqlite3_file *file) const
{
    if (file->pMethods)
        file->pMethods->xClose(file);
    ::operator delete(file);
}

Result<ArchiveBytes> ArchiveBytes::open(const QString &path)
{
    sqlite3_vfs *system = sqlite3_vfs_find(nullptr);
    // It wants names with two zeros behind them.
    const QByteArray name = QFile::encodeName(path) + '\0';
    const auto size = static_cast<size_t>(system->szOsFile);
    void *memory = ::operator new(size);
    std::memset(memory, 0, size);
    ArchiveBytes bytes(static_cast<sqlite3_file *>(memory), path);
    constexpr int flags = SQLITE_OPEN_READONLY | SQLITE_OPEN_MAIN_DB;
    if (system->xOpen(system, name.constData(), bytes.m_file.get(), flags, nullptr) != SQLITE_OK)
        return Fault{QFile::exists(path) ? FaultCode::AccessDenied : FaultCode::NotFound, path};
    return bytes;
}

Result<void> ArchiveBytes::hold()
{
    const int locked = m_file->pMethods->xLock(m_file.get(), SQLITE_LOCK_SHARED);
    return locked == SQLITE_BUSY ? Fault{FaultCode::Locked, m_path} : Result<void>();
}

Result<qint64> ArchiveBytes::size() const
{
    sqlite3_int64 size = 0;
    if (m_file->pMethods->xFileSize(m_file.get(), &size) != SQLITE_OK)
        return Fault{FaultCode::InputOutput, m_path};
    // It takes a file of one byte for an empty one.
    return size == 0 ? QFileInfo(m_path).size() : size;
}

Result<QByteArray> ArchiveBytes::read(qint64 position, qsizetype count)
{
    const Result<qint64> size = this->size();
    if (!size)
        return size.fault();
    QByteArray bytes(std::clamp<qint64>(size.value() - position, 0, count), Qt::Uninitialized);
    if (!bytes.isEmpty() &&
        m_file->pMethods->xRead(m_file.get(), bytes.data(), static_cast<int>(bytes.size()), position) != SQLITE_OK)
        return Fault{FaultCode::InputOutput, m_path};
    return bytes;
}
