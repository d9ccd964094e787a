#pragma once

#include "platform/Descriptor.h"
#include "platform/Task.h"

#include <QByteArray>
#include <QStringDecoder>

#include <optional>

/// Reads a file of text into memory, in turns.
class TextFile : public Task
{
public:
    /// @param path   absolute
    /// @param limit  largest size in bytes
    TextFile(QString path, qsizetype limit) : m_path(std::move(path)), m_limit(limit) {}

    /// Faults with the path as their subject: those of openToRead(), TooLarge, and NoTable for a byte 0, which no text
    /// has
    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_content.size(), m_size}; }

    /// What was read, without a byte order mark; UTF-16 that has one as UTF-8.
    const QByteArray &content() const { return m_content; }
    /// Whether all of that is UTF-8; plain ASCII is.
    bool isUtf8() const { return m_isUtf8; }

private:
    Result<bool> readPiece();
    bool checkPiece();

    const QString m_path;
    const qsizetype m_limit;
    std::optional<Descriptor> m_file;
    qint64 m_size = 0;
    QByteArray m_content;
    qsizetype m_checked = 0; ///< bytes whose encoding has been looked at
    bool m_isWhole = false;
    bool m_isUtf8 = true;
    std::optional<QStringDecoder> m_utf16; ///< of a file that begins with its mark
    QString m_half;                        ///< of a character of two words
};
