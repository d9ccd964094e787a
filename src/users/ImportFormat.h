#pragma once

#include "platform/CsvReader.h"

#include <QStringList>

#include <array>
#include <optional>

// How a list of users is to be read, as far as the file itself tells.

enum class TextEncoding { Utf8, Windows1252 };

/// What is taken from a line, in the order that stands for a file without headings.
enum class ImportField { Code, Type, Surname, FirstName, Notes };
inline constexpr int ImportFieldCount = static_cast<int>(ImportField::Notes) + 1;

/// Place of each field in a line, from 0; -1 = the file does not have it.
using ImportColumns = std::array<int, ImportFieldCount>;

struct ImportFormat {
    char separator = ';'; ///< one of ";", "," and tab
    TextEncoding encoding = TextEncoding::Utf8;
    bool hasHeader = false; ///< the first line holds headings
    ImportColumns columns = {0, 1, 2, 3, 4};

    int place(ImportField field) const { return columns.at(static_cast<std::size_t>(field)); }
    bool operator==(const ImportFormat &) const = default;
};

/// The separator that parts the first lines into most fields, and no field in quotes.
/// @param content  without a byte order mark
char recognisedSeparator(const QByteArray &content);

/// The columns that headings name in any language of the program, whatever their case; none where no code is among
/// them, since without it they are no headings.
std::optional<ImportColumns> recognisedColumns(const QStringList &headings);

/// Format of a file, columns by its headings, else by their order.
/// @param isUtf8  as TextFile tells
ImportFormat recognisedFormat(const QByteArray &content, bool isUtf8);
/// The same where the separator or the encoding is known.
ImportFormat recognisedFormat(const QByteArray &content, char separator, TextEncoding encoding);

/// Whether a line is "sep=;", which some spreadsheets want to be told at the beginning of a file.
bool tellsSeparator(const CsvReader::Record &record);

/// Fields of the first line but that one, as a text; none in an empty file.
QStringList firstFields(const QByteArray &content, const ImportFormat &format);

QString decoded(const QByteArray &bytes, TextEncoding encoding);
