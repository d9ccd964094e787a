#include "platform/CsvWriter.h"

#include <QString>

#include <algorithm>
#include <array>

namespace {

bool isBlank(QChar character)
{
    return character == QLatin1Char(' ') || character == QLatin1Char('\t');
}

} // namespace

void CsvWriter::field(QStringView text)
{
    if (std::exchange(m_isLineBegun, true))
        m_bytes += m_separator;
    const std::array special = {u'"', u'\r', u'\n', char16_t(m_separator)};
    const bool hasSpecial = std::any_of(text.begin(), text.end(), [&special](QChar character) {
        return std::find(special.begin(), special.end(), character.unicode()) != special.end();
    });
    // Readers may take blanks around a field for none of its own.
    const bool isQuoted = hasSpecial || (!text.isEmpty() && (isBlank(text.front()) || isBlank(text.back())));
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
