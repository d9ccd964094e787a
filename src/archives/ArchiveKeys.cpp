#include "archives/ArchiveKeys.h"

#include <openssl/evp.h>

namespace {

constexpr int iterations = 64000;
constexpr qsizetype keySize = 32;

} // namespace

QByteArray archivePassword()
{
    return QByteArrayLiteral("KQTREV47MZWS");
}

QByteArray ArchiveKeys::rawKey(const QByteArray &salt)
{
    auto known = m_keys.constFind(salt);
    if (known == m_keys.constEnd()) {
        const QByteArray password = archivePassword();
        QByteArray key(keySize, '\0');
        PKCS5_PBKDF2_HMAC_SHA1(password.constData(), static_cast<int>(password.size()),
                               reinterpret_cast<const unsigned char *>(salt.constData()), static_cast<int>(salt.size()),
                               iterations, static_cast<int>(keySize), reinterpret_cast<unsigned char *>(key.data()));
        known = m_keys.insert(salt, "x'" + key.toHex() + salt.toHex() + "'");
    }
    return *known;
}
