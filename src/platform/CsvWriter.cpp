#include "platform/CsvWriter.h"

#include <algorithm>

void CsvWriter::field(QStringView text)
{
    field(QByteArrayView(text.toUtf8()));
}

void CsvWriter::field(QByteArrayView utf8)
{
    if (std::exchange(m_isLineBegun, true))
        m_bytes += m_separator;
    const bool isQuoted = std::any_of(utf8.begin(), utf8.end(),
                                      [this](char byte) { return m_isSpecial[static_cast<unsigned char>(byte)]; });
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
