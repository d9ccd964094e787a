#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <stop_token>

/// Proves that the pages of an archive file all carry the check sum that they had when they were written under its key,
/// and are as many as its first one says: no bit that counts has changed, and nothing is missing.
///
/// A file is read from its beginning to its end, past the database library: several times as fast as by that. It may
/// not be open there, which would lose its locks.
class PageProof
{
public:
    PageProof();
    ~PageProof();
    PageProof(const PageProof &) = delete;
    PageProof &operator=(const PageProof &) = delete;

    /// @param rawKey  as ArchiveKeys gives it
    /// @return false where the library has to be asked: of a page without a check sum it alone knows whether it is in
    /// use; also when it was to stop
    bool holds(const QString &path, const QByteArray &rawKey, const std::stop_token &stop = {});

private:
    class Sums;

    QByteArray m_rawKey; ///< of the file before, which most files share
    std::unique_ptr<Sums> m_sums;
    QByteArray m_bytes;
};
