#include "archives/ArchiveStore.h"

#include "archives/ArchiveBytes.h"
#include "platform/RegularFile.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <algorithm>

namespace {

/// That nothing is opened which is no file, for a pipe would hang the program; and that no link stands where only a
/// file of the library's own can.
Result<void> checkFiles(const QString &path)
{
    for (const QLatin1String side : JournalEndings) {
        if (QFileInfo(path + side).isSymLink())
            return Fault{FaultCode::NotRegularFile, path + side};
        if (Result<void> regular = checkRegular(path + side); !regular)
            return regular;
    }
    return checkRegular(path);
}

/// The salt at the front of an archive; shorter when the file is.
Result<QByteArray> saltOf(const QString &path)
{
    if (const Result<void> regular = checkFiles(path); !regular)
        return regular.fault();
    Result<ArchiveBytes> bytes = ArchiveBytes::open(path);
    return bytes ? bytes.value().read(0, ArchiveKeys::SaltSize) : Result<QByteArray>(bytes.fault());
}

} // namespace

bool hasJournals(const QString &path)
{
    return std::any_of(JournalEndings.begin(), JournalEndings.end(),
                       [&path](QLatin1String side) { return QFile::exists(path + side); });
}

/// Where the archive really stands.
QString ArchiveStore::file(QStringView name) const
{
    const QString path = m_folder.path(name.toString());
    const Result<QString> followed = linkFollowed(path);
    return followed ? followed.value() : path;
}

Result<Database> ArchiveStore::open(QStringView name, Database::Use use)
{
    const QString path = file(name);
    if (m_held.second && m_held.first == name && m_held.second())
        return Fault{FaultCode::Locked, path};
    const Result<QByteArray> salt = saltOf(path);
    if (!salt)
        return salt.fault();
    // The library would take an empty file for a new archive.
    if (salt.value().size() < ArchiveKeys::SaltSize)
        return Fault{FaultCode::Damaged, path};
    return Database::open(path, m_keys.rawKey(salt.value()), use);
}

Result<void> ArchiveStore::readThrough(QStringView name)
{
    Result<Database> database = open(name, Database::Use::Safe);
    return database ? database.value().readThrough() : Result<void>(database.fault());
}

Result<Database> ArchiveStore::make(QStringView name, Database::Use use, const QByteArray &salt)
{
    const QString path = file(name);
    if (const Result<void> regular = checkFiles(path); !regular)
        return regular.fault();
    Result<Database> database = Database::open(path, m_keys.rawKey(salt), use, true);
    // The library tries to read what it may not make, and finds nothing.
    if (!database && database.fault().code == FaultCode::NotFound && QFileInfo(QFileInfo(path).path()).isDir())
        return Fault{FaultCode::AccessDenied, path};
    return database;
}

Result<void> ArchiveStore::create(QStringView name, const char *layout, const QByteArray &salt, Database::Use use)
{
    Result<Database> database = make(name, use, salt);
    return database ? database.value().execute(layout) : Result<void>(database.fault());
}

Result<void> ArchiveStore::create(QStringView name, const char *layout, QStringView like, Database::Use use)
{
    const Result<QByteArray> known = saltOf(m_folder.path(like.toString()));
    if (known && known.value().size() == ArchiveKeys::SaltSize)
        return create(name, layout, known.value(), use);
    QByteArray salt(ArchiveKeys::SaltSize, '\0');
    QRandomGenerator::system()->generate(salt.begin(), salt.end());
    return create(name, layout, salt, use);
}

Result<void> ArchiveStore::createUnlessThere(QStringView name, const char *layout, QStringView like)
{
    const QFileInfo file(m_folder.path(name.toString()));
    if (file.exists() && (!file.isFile() || file.size() > 0))
        return {};
    Result<void> made = remove(name);
    if (made)
        made = create(name, layout, like);
    if (!made)
        (void)remove(name);
    return made;
}

Result<Database> ArchiveStore::createNameless(const char *layout)
{
    QByteArray salt(ArchiveKeys::SaltSize, '\0');
    QRandomGenerator::system()->generate(salt.begin(), salt.end());
    Result<Database> database = Database::open({}, m_keys.rawKey(salt), Database::Use::ThrowAway, true);
    if (!database)
        return database;
    const Result<void> laidOut = database.value().execute(layout);
    return laidOut ? std::move(database) : Result<Database>(laidOut.fault());
}

Result<void> ArchiveStore::recover(const QString &path)
{
    if (!hasJournals(path) || !QFile::exists(path))
        return {};
    const Result<QByteArray> salt = saltOf(path);
    if (!salt)
        return salt.fault();
    Result<Database> database = Database::open(path, m_keys.rawKey(salt.value()), Database::Use::Safe);
    if (!database)
        return database.fault();
    return database.value().leaveLogMode();
}

Result<void> ArchiveStore::removeSideFiles(const QString &path)
{
    for (const QLatin1String side : JournalEndings) {
        if (!QFile::exists(path + side) && !QFileInfo(path + side).isSymLink())
            continue;
        if (Result<void> removed = m_folder.disk().remove(path + side); !removed)
            return removed;
    }
    return {};
}

Result<void> ArchiveStore::copy(QStringView source, QStringView target)
{
    const QString from = file(source);
    const QString to = file(target);
    if (Result<void> recovered = recover(from); !recovered)
        return recovered;
    if (Result<void> made = makeRoomAt(to); !made)
        return made;
    return m_folder.disk().copy(from, to);
}

Result<void> ArchiveStore::makeRoomAt(const QString &path)
{
    // What stands there is lost on purpose, but only once its successor is there: until the rename it must stay whole.
    // What cannot be brought together any more is not worth keeping back.
    if (Result<void> recovered = recover(path); !recovered && recovered.fault().code != FaultCode::Damaged)
        return recovered;
    return removeSideFiles(path);
}

Result<void> ArchiveStore::remove(QStringView name)
{
    const QString path = m_folder.path(name.toString());
    if (Result<void> removed = removeSideFiles(path); !removed)
        return removed;
    return m_folder.disk().remove(path);
}

Result<QString> ArchiveStore::setAside(QStringView name)
{
    const QString path = m_folder.path(name.toString());
    QString ending = QStringLiteral(".guasto");
    for (int count = 2; QFile::exists(path + ending) || hasJournals(path + ending); ++count)
        ending = QStringLiteral(".guasto%1").arg(count);
    // The journals go first and keep their place beside it, where a later repair looks for them.
    for (const QLatin1String side : JournalEndings) {
        const QString old = path + side;
        if (!QFile::exists(old))
            continue;
        if (Result<void> moved = m_folder.disk().rename(old, path + ending + side); !moved)
            return moved.fault();
    }
    if (Result<void> moved = m_folder.disk().rename(path, path + ending); !moved)
        return moved.fault();
    return name.toString() + ending;
}
