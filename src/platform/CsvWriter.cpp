#include "platform/CsvWriter.h"

#include <QString>

#include <algorithm>

namespace {

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
    if (std::exchange(m_isLineBegun, true))
        m_bytes += m_separator;
    const bool hasSpecial = std::any_of(utf8.begin(), utf8.end(),
                                        [this](char byte) { return m_isSpecial[static_cast<unsigned char>(byte)]; });
    // Readers may take blanks around a field for none of its own.
    const bool isQuoted = hasSpecial || (!utf8.isEmpty() && (isBlank(utf8.front()) || isBlank(utf8.back())));
    if (!isQuoted) {
        m_bytes.append(utf8);
        return;
    }
    m_bytes += '"';
    m_bytes += utf8.toByteArray().replace('"', "\"\"");
    m_bytes += '"';
}

void CsvWriter::endLine()
{
    m_bytes += "\r\n";
    m_isLineBegun = false;
}
