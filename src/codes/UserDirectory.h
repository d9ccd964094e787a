#pragma once

#include "archives/ArchiveStore.h"
#include "codes/User.h"
#include "platform/FreedInTurns.h"
#include "texts/NameSort.h"

#include <QHash>

#include <optional>

/// The users of the register, read once into memory, so that a look-up costs the same with one user and with fifty
/// thousand. Notes and truncated codes are not read: nobody looks users up for them.
///
/// What is read is a private copy, which keeps the register free for others. Where there is no room for one, or it
/// cannot be read, that is the register itself.
class UserDirectory : public Task
{
public:
    /// What becomes of the copy when this object goes.
    enum class Copy { Removed, Kept };

    /// @param archives  must outlive this object; @param copy  name of the copy, relative to the program folder
    UserDirectory(ArchiveStore &archives, QStringView copy, Copy atEnd = Copy::Removed);
    /// Reads the register itself, and writes nothing.
    explicit UserDirectory(ArchiveStore &archives) : UserDirectory(archives, {}, Copy::Kept) {}
    ~UserDirectory() override;
    UserDirectory(const UserDirectory &) = delete;
    UserDirectory &operator=(const UserDirectory &) = delete;

    /// Copies the register and reads it to its end. When that fails the users known so far stay, and the fault is the
    /// register's.
    Result<void> open();

    /// The same in turns: copies the register anew, and gets ready to read it.
    Result<void> begin();
    /// Reads on from begin(), at least one user. @return true when the users are known
    Result<bool> step(const QDeadlineTimer &until) override;
    /// Users read so far; how many there are is not known before.
    Progress progress() const override;

    /// What is known is out of date: nobody is decided about until the register has been read again.
    void forget() { m_known = false; }
    /// From begin() to the end of the reading, whatever it is.
    bool isBeingRead() const { return m_reading != nullptr; }
    /// True once the register has been read, until it is forgotten.
    bool isKnown() const { return m_known; }

    /// All users in the order in which they lie in the register. A user's place here is what lists of names hold.
    const QList<User> &users() const { return m_users; }
    /// True when a user has the code, whatever its type.
    bool contains(const QString &code) const { return m_firstOfCode.contains(code); }
    /// The user of exactly this code and type, null when there is none.
    const User *find(const QString &code, std::optional<CodeType> type) const;
    /// The first user with this code, whatever its type, null when there is none.
    const User *findCode(const QString &code) const;
    /// The user with this code and type; else the first with the code alone; nobody's fields without one.
    User nearest(const QString &code, std::optional<CodeType> type) const;

    /// Lists the users who are known by their surnames (or first names); an id is a place in users().
    NameSort names(QString User::*name) const;

private:
    struct Reading;

    Result<void> openArchive(QStringView name, Database::Use use);
    Result<void> readRegister(const Fault &ofCopy);
    Result<void> readOn(const QDeadlineTimer &until);
    bool index(const QDeadlineTimer &until);

    ArchiveStore &m_archives;
    const QString m_copy;
    const Copy m_atEnd;
    std::unique_ptr<Reading> m_reading;
    bool m_known = false;
    FreedInTurns<QList<User>> m_users;
    QHash<QString, int> m_firstOfCode;
    QList<int> m_next; ///< place of the next user with the same code, -1 = none
};
