#include "archives/PageProof.h"

#include "archives/ArchiveKeys.h"

#include <QFile>
#include <QtEndian>

#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/params.h>

#include <array>
#include <memory>

namespace {

constexpr qint64 pageSize = 4096;
constexpr qint64 provenAtOnce = 64;
constexpr qsizetype pageKeySize = 32;
// At the end of a page stand the vector that it was encrypted with, its check sum, and bytes that mean nothing.
constexpr qint64 vectorAt = pageSize - 48;
constexpr qint64 sumAt = vectorAt + 16;
constexpr size_t sumSize = 20;

struct Freer {
    void operator()(EVP_MAC *mac) const { EVP_MAC_free(mac); }
    void operator()(EVP_MAC_CTX *context) const { EVP_MAC_CTX_free(context); }
    void operator()(EVP_CIPHER_CTX *context) const { EVP_CIPHER_CTX_free(context); }
};

/// Key and salt of an archive in bytes.
struct Secret {
    explicit Secret(const QByteArray &rawKey)
    {
        const QByteArray bytes = QByteArray::fromHex(rawKey.mid(2, 2 * (pageKeySize + ArchiveKeys::SaltSize)));
        key = bytes.first(pageKeySize);
        salt = bytes.sliced(pageKeySize);
    }

    /// What check sums are made with.
    QByteArray sumKey() const
    {
        QByteArray sumSalt = salt;
        for (char &byte : sumSalt)
            byte = static_cast<char>(byte ^ 0x3a);
        QByteArray derived(pageKeySize, '\0');
        PKCS5_PBKDF2_HMAC_SHA1(
            key.constData(), pageKeySize, reinterpret_cast<const unsigned char *>(sumSalt.constData()),
            static_cast<int>(sumSalt.size()), 2, pageKeySize, reinterpret_cast<unsigned char *>(derived.data()));
        return derived;
    }

    QByteArray key;
    QByteArray salt;
};

/// The number of pages that stands in the first one; 0 when none that can be relied on does.
quint32 pagesOf(const unsigned char *first, const QByteArray &key)
{
    // The header of the database but for its first bytes, in whose place the salt stands.
    constexpr int size = 96 - ArchiveKeys::SaltSize;
    std::array<unsigned char, size> header{};
    const std::unique_ptr<EVP_CIPHER_CTX, Freer> context(EVP_CIPHER_CTX_new());
    EVP_DecryptInit_ex(context.get(), EVP_aes_256_cbc(), nullptr,
                       reinterpret_cast<const unsigned char *>(key.constData()), first + vectorAt);
    EVP_CIPHER_CTX_set_padding(context.get(), 0);
    int decrypted = 0;
    EVP_DecryptUpdate(context.get(), header.data(), &decrypted, first + ArchiveKeys::SaltSize, size);
    const auto number = [&header](qsizetype place) {
        return qFromBigEndian<quint32>(header.data() + place - ArchiveKeys::SaltSize);
    };
    // It counts where it was written with the last change.
    constexpr qsizetype changes = 24, pages = 28, changesThen = 92;
    return decrypted == size && number(changes) == number(changesThen) ? number(pages) : 0;
}

} // namespace

class PageProof::Sums
{
public:
    explicit Sums(const QByteArray &rawKey) : secret(rawKey)
    {
        const QByteArray key = secret.sumKey();
        const std::unique_ptr<EVP_MAC, Freer> mac(EVP_MAC_fetch(nullptr, "HMAC", nullptr));
        m_context.reset(EVP_MAC_CTX_new(mac.get()));
        std::string digest = "SHA1";
        const std::array parameters = {
            OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, digest.data(), digest.size()),
            OSSL_PARAM_construct_end()};
        EVP_MAC_init(m_context.get(), reinterpret_cast<const unsigned char *>(key.constData()), pageKeySize,
                     parameters.data());
    }

    /// @param number  of the page, from 1
    bool isRight(const unsigned char *page, quint32 number)
    {
        // The first page begins with the salt, which is not encrypted.
        const qint64 from = number == 1 ? ArchiveKeys::SaltSize : 0;
        const quint32 numberAsStored = qToLittleEndian(number);
        std::array<unsigned char, sumSize> sum{};
        size_t size = 0;
        EVP_MAC_init(m_context.get(), nullptr, 0, nullptr);
        EVP_MAC_update(m_context.get(), page + from, static_cast<size_t>(sumAt - from));
        EVP_MAC_update(m_context.get(), reinterpret_cast<const unsigned char *>(&numberAsStored), sizeof(quint32));
        return EVP_MAC_final(m_context.get(), sum.data(), &size, sum.size()) == 1 &&
               CRYPTO_memcmp(sum.data(), page + sumAt, sum.size()) == 0;
    }

    const Secret secret;

private:
    std::unique_ptr<EVP_MAC_CTX, Freer> m_context;
};

PageProof::PageProof() : m_bytes(provenAtOnce * pageSize, Qt::Uninitialized)
{
}

PageProof::~PageProof() = default;

bool PageProof::holds(const QString &path, const QByteArray &rawKey, const std::stop_token &stop)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    if (!m_sums || m_rawKey != rawKey) {
        m_sums = std::make_unique<Sums>(rawKey);
        m_rawKey = rawKey;
    }
    quint32 number = 0;
    quint32 count = 0;
    qint64 size = 0;
    while ((size = file.read(m_bytes.data(), m_bytes.size())) > 0) {
        if (size % pageSize != 0 || stop.stop_requested())
            return false;
        const auto *page = reinterpret_cast<const unsigned char *>(m_bytes.constData());
        for (const auto *end = page + size; page != end; page += pageSize) {
            if (!m_sums->isRight(page, ++number))
                return false;
            if (number > 1)
                continue;
            // By the salt, which no check sum covers, the next reader finds the key.
            if (!m_bytes.startsWith(m_sums->secret.salt))
                return false;
            count = pagesOf(page, m_sums->secret.key);
        }
    }
    return size == 0 && number > 0 && number == count;
}
