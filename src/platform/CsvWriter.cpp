#include "platform/CsvWriter.h"

#include <QString>

#include <algorithm>

namespace {

constexpr qsizetype leastRoom = 4096;

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t';
}

} // namespace

void CsvWriter::field(QStringView text)
{
    field(QByteArrayView(text.toUtf8()));
}

void CsvWriter::field(QByteArrayView utf8)
{
    char *const begin = room(2 * utf8.size() + 3);
    char *end = begin;
    if (std::exchange(m_isLineBegun, true))
        *end++ = m_separator;
    char *const bytes = end;
    // Readers may take blanks around a field for none of its own.
    bool isQuoted = !utf8.isEmpty() && (isBlank(utf8.front()) || isBlank(utf8.back()));
    for (const char byte : utf8) {
        isQuoted |= m_isSpecial[static_cast<unsigned char>(byte)];
        *end++ = byte;
    }
    if (isQuoted) {
        end = bytes;
        *end++ = '"';
        for (const char byte : utf8) {
            if (byte == '"')
                *end++ = '"';
            *end++ = byte;
        }
        *end++ = '"';
    }
    m_size += end - begin;
}

void CsvWriter::endLine()
{
    char *const end = room(2);
    end[0] = '\r';
    end[1] = '\n';
    m_size += 2;
    m_isLineBegun = false;
}

/// Behind what has been written, for so many bytes.
char *CsvWriter::room(qsizetype count)
{
    if (m_bytes.size() - m_size < count)
        m_bytes.resize(std::max(2 * m_size, m_size + count + leastRoom));
    return m_bytes.data() + m_size;
}
