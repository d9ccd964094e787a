#pragma once

#include <QByteArray>
#include <QHash>

/// Keys of the archives, derived from the archive password and the salt at the front of each file.
///
/// Deriving takes tens of milliseconds on purpose. Archives that were copied from one template share its salt, so each
/// salt's key is derived once and kept for as long as the program runs.
class ArchiveKeys
{
public:
    static constexpr qsizetype SaltSize = 16;

    /// Key and salt in the raw form that SQLCipher takes without deriving: x'<96 hexadecimal digits>'.
    /// @param salt  SaltSize bytes
    QByteArray rawKey(const QByteArray &salt);

private:
    QHash<QByteArray, QByteArray> m_keys;
};

/// The password that every archive is protected with.
QByteArray archivePassword();
