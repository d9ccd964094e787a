#include "platform/CsvWriter.h"

#include <algorithm>
#include <array>

void CsvWriter::field(QStringView text)
{
    if (std::exchange(m_isLineBegun, true))
        m_bytes += m_separator;
    const std::array special = {u'"', u'\r', u'\n', char16_t(m_separator)};
    const bool isQuoted = std::any_of(text.begin(), text.end(), [&special](QChar character) {
        return std::find(special.begin(), special.end(), character.unicode()) != special.end();
    });
    if (!isQuoted) {
        m_bytes += text.toUtf8();
        return;
    }
    m_bytes += '"';
    m_bytes += text.toString().replace(QLatin1Char('"'), QLatin1String("\"\"")).toUtf8();
    m_bytes += '"';
}

void CsvWriter::endLine()
{
    m_bytes += "\r\n";
    m_isLineBegun = false;
}
