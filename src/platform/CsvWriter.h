#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

#include <array>
#include <utility>

/// Lines of separated values after RFC 4180, in UTF-8: a field is quoted where it must be, a line ends with CR LF.
class CsvWriter
{
public:
    static constexpr const char *ByteOrderMark = "\xEF\xBB\xBF"; ///< tells spreadsheets that the file is UTF-8

    /// @param separator  between two fields, an ASCII character
    explicit CsvWriter(char separator) : m_separator(separator)
    {
        for (const char special : {separator, '"', '\r', '\n'})
            m_isSpecial[static_cast<unsigned char>(special)] = true;
    }

    void field(QStringView text);
    /// The same of a text that is UTF-8 already.
    void field(QByteArrayView utf8);
    void endLine();

    /// The bytes since they were last taken, to be written wherever they belong.
    QByteArray take() { return take(m_size); }
    qsizetype size() const { return m_size; } ///< of what can be taken, in bytes
    /// The first @p size of them.
    QByteArray take(qsizetype size)
    {
        const QByteArray rest = m_bytes.sliced(size, m_size - size);
        m_bytes.truncate(size);
        m_size = rest.size();
        return std::exchange(m_bytes, rest);
    }
    /// Forgets the lines behind the first @p size bytes.
    void cut(qsizetype size) { m_size = size; }

private:
    char *room(qsizetype count);

    QByteArray m_bytes;
    qsizetype m_size = 0; ///< of m_bytes, what has been written
    char m_separator;
    std::array<bool, 256> m_isSpecial{}; ///< bytes for which a field is quoted
    bool m_isLineBegun = false;
};
