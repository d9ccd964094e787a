#pragma once

#include "platform/Result.h"

#include <QByteArray>
#include <QList>

#include <memory>

/// Reads the records of separated values, one at a time. Line ends are CR, LF or both; a field in quotes may hold
/// separators, doubled quotes and line ends; blanks around a field without quotes do not count; empty lines are passed
/// over, and the last line needs no end.
class CsvReader
{
public:
    struct Record {
        qint64 line = 0; ///< of the file on which it begins, from 1
        QList<QByteArray> fields;
    };
    /// Longest record in bytes, whatever it holds.
    static constexpr qsizetype LongestRecord = 65'536;

    /// @param content    without a byte order mark
    /// @param separator  between two fields, an ASCII character
    CsvReader(QByteArray content, char separator);
    ~CsvReader();
    CsvReader(const CsvReader &) = delete;
    CsvReader &operator=(const CsvReader &) = delete;

    /// @param record  becomes the next one. @return false, and @p record is not changed, when there is none
    /// Faults end the reading and have the line as their subject: LineTooLong, NoTable for a quote that is never closed
    Result<bool> next(Record &record);
    /// Bytes that have been read.
    qsizetype position() const { return m_position; }

private:
    struct Parser;

    Result<void> feed(qsizetype count);
    Result<void> end();
    qsizetype pieceLength() const;
    Fault fault(FaultCode code) const { return {code, QString::number(m_recordLine)}; }

    const QByteArray m_content;
    qsizetype m_position = 0;
    qint64 m_line = 1;
    qint64 m_recordLine = 1;
    qsizetype m_recordBytes = 0; ///< 0 = none has begun
    bool m_isAfterReturn = false;
    std::unique_ptr<Parser> m_parser;
};
