#pragma once

#include "archives/ArchiveKeys.h"
#include "archives/Database.h"
#include "platform/ProgramFolder.h"

#include <QStringView>

#include <array>
#include <functional>
#include <utility>

/// What the names of an archive's journals end with, behind its own.
inline constexpr std::array JournalEndings = {QLatin1String("-wal"), QLatin1String("-shm"), QLatin1String("-journal")};

/// Whether journals stand beside an archive: somebody has it open, or was cut off.
/// @param path  of the file itself, no link to it
bool hasJournals(const QString &path);

/// The archive files of the program folder: opened with their key, and handled as whole files.
///
/// Names are relative to the program folder, see ArchiveName. An archive is two things at times: its file, and a
/// journal beside it that the last program left when it was cut off. Every whole-file operation first brings the two
/// together and makes sure that no journal stays beside new content, which it would silently turn back into the old.
///
/// An archive may be a link; the file that it leads to is the one that is opened and replaced, and its journals stand
/// beside that. What is no regular file is never opened: NotRegularFile.
class ArchiveStore
{
public:
    /// @param folder  must outlive this object
    explicit ArchiveStore(ProgramFolder &folder) : m_folder(folder) {}
    /// The same with the keys that @p other has derived so far, for a folder that was copied from its.
    ArchiveStore(ProgramFolder &folder, const ArchiveStore &other) : m_folder(folder), m_keys(other.m_keys) {}

    ProgramFolder &folder() const { return m_folder; }
    /// For Database::open(), of an archive that begins with that salt.
    QByteArray rawKey(const QByteArray &salt) { return m_keys.rawKey(salt); }

    /// @return NotFound; Damaged for an empty or foreign file, or one with another password; else as Database
    Result<Database> open(QStringView name, Database::Use use);
    /// Brings an archive together with its journals and reads all of it, see Database::readThrough().
    Result<void> readThrough(QStringView name);
    /// Makes a new archive, for whoever fills it by himself; there is no file to speak of before that.
    /// @param salt  ArchiveKeys::SaltSize bytes
    Result<Database> make(QStringView name, Database::Use use, const QByteArray &salt);
    /// Makes a new archive with the tables of @p layout. @param salt ArchiveKeys::SaltSize bytes
    Result<void> create(QStringView name, const char *layout, const QByteArray &salt,
                        Database::Use use = Database::Use::Safe);

    /// The same with the salt of the archive @p like, whose key is known then, or one of its own without it.
    Result<void> create(QStringView name, const char *layout, QStringView like,
                        Database::Use use = Database::Use::Safe);

    /// The same unless there is one; an empty file is none: a power cut in the middle of its making leaves that.
    Result<void> createUnlessThere(QStringView name, const char *layout, QStringView like);

    /// An archive with the tables of @p layout that has no name: nobody else sees it, and nothing of it is left.
    Result<Database> createNameless(const char *layout);

    /// Says that an archive is open all the time. When another file stands under its name, opening that would mix the
    /// journals of both: it is refused as Locked.
    /// @param isReplaced  asked before each opening
    void hold(QStringView name, std::function<bool()> isReplaced) { m_held = {name.toString(), std::move(isReplaced)}; }
    void release() { m_held = {}; }

    /// Copies @p source over @p target; no connection may be open on either.
    Result<void> copy(QStringView source, QStringView target);
    /// Brings an archive together and removes its journals, before another file takes its place.
    /// @param path  of the file itself, which need not exist
    Result<void> makeRoomAt(const QString &path);
    /// Deletes an archive, or a link to one, with all that stands beside it; no fault when there is none.
    Result<void> remove(QStringView name);
    /// Renames an unreadable archive, with its journals, to a name that no day and no copy has.
    /// @return the new name, relative like @p name
    Result<QString> setAside(QStringView name);
    bool exists(QStringView name) const { return m_folder.exists(name.toString()); }

private:
    QString file(QStringView name) const;
    Result<void> recover(const QString &path);
    Result<void> removeSideFiles(const QString &path);

    ProgramFolder &m_folder;
    ArchiveKeys m_keys;
    std::pair<QString, std::function<bool()>> m_held;
};
