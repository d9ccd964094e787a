#include "archives/ArchiveBytes.h"

#include <QFile>

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
    if (!QFile::exists(path))
        return Fault{FaultCode::NotFound, path};
    sqlite3_vfs *system = sqlite3_vfs_find(nullptr);
    // It wants names with two zeros behind them.
    const QByteArray name = QFile::encodeName(path) + '\0';
    const auto size = static_cast<size_t>(system->szOsFile);
    void *memory = ::operator new(size);
    std::memset(memory, 0, size);
    ArchiveBytes bytes(static_cast<sqlite3_file *>(memory), path);
    constexpr int flags = SQLITE_OPEN_READONLY | SQLITE_OPEN_MAIN_DB;
    if (system->xOpen(system, name.constData(), bytes.m_file.get(), flags, nullptr) != SQLITE_OK)
        return Fault{FaultCode::AccessDenied, path};
    return bytes;
}

Result<QByteArray> ArchiveBytes::read(qint64 position, qsizetype count)
{
    const sqlite3_io_methods *methods = m_file->pMethods;
    sqlite3_int64 size = 0;
    if (methods->xFileSize(m_file.get(), &size) != SQLITE_OK)
        return Fault{FaultCode::InputOutput, m_path};
    QByteArray bytes(std::clamp<qint64>(size - position, 0, count), '\0');
    if (!bytes.isEmpty() &&
        methods->xRead(m_file.get(), bytes.data(), static_cast<int>(bytes.size()), position) != SQLITE_OK)
        return Fault{FaultCode::InputOutput, m_path};
    return bytes;
}
