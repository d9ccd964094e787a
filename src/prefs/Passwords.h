#pragma once

#include "archives/ArchiveStore.h"

#include <QString>

#include <array>

/// The three passwords: what they are, whether one is set, and how they are checked and stored.
class Passwords
{
public:
    enum class Type { Main = 1, Users = 2, Diagnostics = 3 };

    enum class Fault {
        None,
        RegisterUnusable, ///< the users register is not there, or it is damaged, or no file at all
        Corrupt,          ///< no row of passwords, or a field that is no scrambled password
        Unreadable,       ///< the register is there but cannot be read or written now; see reason()
    };

    /// @param archives  must outlive this object; @param reading  how load() opens the register
    explicit Passwords(ArchiveStore &archives, Database::Use reading = Database::Use::Safe)
        : m_archives(archives), m_reading(reading)
    {
    }

    /// Reads the three passwords from the register, and the whole register through when that has not been done yet.
    [[nodiscard]] Fault load();
    /// Why the register could not be read or written; meaningful after RegisterUnusable and Unreadable.
    const ::Fault &reason() const { return m_reason; }

    bool isSet(Type type) const { return !clear(type).isEmpty(); }
    /// @param typed  blanks at its ends do not count
    bool matches(Type type, const QString &typed) const;

    /// Stores a password and makes it the one to be asked for; "" means none.
    /// @param password  Windows-1252 characters; blanks at its ends are lost and so is what is past ten characters
    [[nodiscard]] Fault set(Type type, const QString &password);

    /// What a password box accepts of @p typed: the characters that can be stored.
    static QString accepted(const QString &typed);

private:
    const QString &clear(Type type) const { return m_clear[static_cast<size_t>(type) - 1]; }
    Fault unreadable(const ::Fault &reason);

    ArchiveStore &m_archives;
    const Database::Use m_reading;
    std::array<QString, 3> m_clear;
    ::Fault m_reason;
    bool m_isReadThrough = false;
};
