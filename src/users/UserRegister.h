#pragma once

#include "archives/CopyEditor.h"
#include "codes/CodeRules.h"
#include "startup/Protocol.h"
#include "users/CodeRun.h"
#include "users/NameList.h"
#include "users/TruncatedCodes.h"
#include "users/UserImport.h"

#include <functional>
#include <memory>

/// The register of users while it is edited, in a working copy that a save puts in its place. The register that a save
/// replaces stays as the backup.
///
/// A user is known by his row: the same code can be one user's as a transmitter and another's as a keypad code.
class UserRegister
{
public:
    /// Reads the users and the lists of their names, once the working copy is there.
    class Reading;
    /// Makes a working copy of other users, and reads them.
    class Restoring;
    /// Brings in the users of a list, and reads all anew.
    class Importing;

    /// Most characters of a surname, a first name and the notes.
    static constexpr int LongestText = 15;

    /// @param archives  must outlive this object
    /// @param protocol  tells that of the interface, which may become known while the register is open
    UserRegister(ArchiveStore &archives, std::function<Protocol()> protocol);

    // As of CopyEditor.
    Result<void> begin() { return m_editor.begin(); }
    std::unique_ptr<Task> reading();
    /// In place of begin() and reading(): the users of another register, as a change that is not saved yet; the
    /// passwords stay those in force. On a fault no working copy is left.
    /// @param file  absolute path, only read. Faults as of UsersFetch, or of CopyEditor
    std::unique_ptr<Task> restoring(const QString &file);
    std::unique_ptr<Task> saving();
    void discard();
    bool isChanged() const { return m_editor.isChanged(); }
    void setChanged() { m_editor.setChanged(); }
    const QString &archive() const { return m_editor.archive(); }
    /// Since the working copy was made; past the end of the work as they were then.
    const UserChanges &changes() const { return m_changes; }

    /// The users in the order of their codes; valid after reading(). To be read and moved in.
    RecordSet &users() { return m_editor.set(); }
    /// The same as values.
    QList<User> all();
    User current() { return currentUser(users()); }
    const NameList &surnames() const { return m_surnames; }
    const NameList &firstNames() const { return m_firstNames; }
    bool hasTruncatedCodes() const { return ::hasTruncatedCodes(m_protocol()); }

    /// Makes a user with this code current, whatever its type; the current one stays when it has the code.
    bool find(const QString &code);
    bool contains(const QString &code, CodeType type) const;

    /// Adds a user, who becomes current.
    Result<void> add(const QString &code, CodeType type);
    /// Gives the user of the row @p id another code; he becomes current.
    Result<void> changeCode(qint64 id, const QString &code, CodeType type);
    /// Deletes the current user; his follower becomes current, or the last one.
    Result<void> remove();
    /// Stores Cognome, Nome or Note of a user, cut to LongestText; the current user stays current.
    /// @param row  0 to users().recordCount() - 1
    Result<void> setText(qsizetype row, QString User::*field, const QString &text);

    // Work on all users, in steps. It must be gone before saving() and discard(), and only one may be under way.
    /// Only when there is a working copy at hand, as after reading().
    std::unique_ptr<TruncatedCodes> truncatedCodes();
    /// @return NotOpen when there is no working copy at hand, as after a save that failed and left none
    Result<std::unique_ptr<CodeRun>> codeRun(int first, int count);
    /// The first that was added, if any, becomes current.
    void codeRunEnded(const QList<CodeRun::Added> &added);
    /// Brings in the lines of a dry run over the users as they are now, all or none. Once they stand, a fault in
    /// reading them leaves no working copy.
    /// @return NotOpen as above
    Result<std::unique_ptr<Task>> importing(const FreedInTurns<QList<ImportLine>> &lines);
    /// For files beside the register.
    Disk &disk() const { return m_archives.folder().disk(); }

private:
    Result<Database *> beginAnew();
    Result<void> keepPasswords();

    ArchiveStore &m_archives;
    const std::function<Protocol()> m_protocol;
    CopyEditor m_editor;
    UserChanges m_changes;
    NameList m_surnames{&User::Cognome};
    NameList m_firstNames{&User::Nome};
};

/// What stays of a surname, a first name or notes.
QString limitedText(const QString &text);
