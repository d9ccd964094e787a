#include "platform/CsvReader.h"

#include <csv.h>

#include <algorithm>

/// The library's parser, and what it has handed over.
struct CsvReader::Parser {
    explicit Parser(char separator)
    {
        csv_init(&parser, 0);
        csv_set_delim(&parser, static_cast<unsigned char>(separator));
    }
    ~Parser() { csv_free(&parser); }
    Parser(const Parser &) = delete;
    Parser &operator=(const Parser &) = delete;

    static void takeField(void *bytes, size_t count, void *self)
    {
        static_cast<Parser *>(self)->fields.append(
            QByteArray(static_cast<const char *>(bytes), static_cast<qsizetype>(count)));
    }
    static void endRecord(int /*terminator*/, void *self) { static_cast<Parser *>(self)->isWhole = true; }

    csv_parser parser = {};
    QList<QByteArray> fields;
    bool isWhole = false;
};

namespace {

bool endsLine(char character)
{
    return character == '\n' || character == '\r';
}

} // namespace

CsvReader::CsvReader(QByteArray content, char separator)
    : m_content(std::move(content)), m_parser(std::make_unique<Parser>(separator))
{
}

CsvReader::~CsvReader() = default;

Result<bool> CsvReader::next(Record &record)
{
    while (!m_parser->isWhole) {
        const bool isAtEnd = m_position == m_content.size();
        const Result<void> done = isAtEnd ? end() : feed(pieceLength());
        if (!done)
            return done.fault();
        if (isAtEnd && !m_parser->isWhole)
            return false;
    }
    record = {m_recordLine, std::exchange(m_parser->fields, {})};
    m_parser->isWhole = false;
    m_recordBytes = 0;
    return true;
}

/// Up to the end of the line, so that the parser is never past the end of a record.
qsizetype CsvReader::pieceLength() const
{
    const auto begin = m_content.cbegin() + m_position;
    const auto limit = begin + std::min<qsizetype>(m_content.cend() - begin, LongestRecord + 1);
    const auto end = std::find_if(begin, limit, endsLine);
    return (end == limit ? end : end + 1) - begin;
}

Result<void> CsvReader::feed(qsizetype count)
{
    const char *piece = m_content.constData() + m_position;
    const char last = piece[count - 1];
    const bool isBlank = m_recordBytes == 0 && count == 1 && endsLine(last);
    if (m_recordBytes == 0)
        m_recordLine = m_line;
    if (!isBlank && (m_recordBytes += count) > LongestRecord)
        return fault(FaultCode::LineTooLong);
    const auto length = static_cast<size_t>(count);
    if (csv_parse(&m_parser->parser, piece, length, &Parser::takeField, &Parser::endRecord, m_parser.get()) != length)
        return fault(FaultCode::LineTooLong);
    m_position += count;
    const bool isSecondOfPair = last == '\n' && count == 1 && m_isAfterReturn;
    if (endsLine(last) && !isSecondOfPair)
        ++m_line;
    m_isAfterReturn = last == '\r';
    return {};
}

Result<void> CsvReader::end()
{
    // Only at the end does the library tell a quote that nobody closed from one within a text.
    csv_set_opts(&m_parser->parser, CSV_STRICT | CSV_STRICT_FINI);
    if (csv_fini(&m_parser->parser, &Parser::takeField, &Parser::endRecord, m_parser.get()) != 0)
        return fault(FaultCode::NoTable);
    return {};
}
