#include "users/ImportFormat.h"

#include "platform/Windows1252.h"
#include "texts/Texts.h"

#include <algorithm>

namespace {

constexpr std::array separators = {';', ',', '\t'};
constexpr int sampledLines = 20;

/// The words that may head a column of a field: those of the grid, and those beside boxes.
struct Heading {
    ImportField field;
    Text text;
};
constexpr std::array knownHeadings = {
    Heading{ImportField::Code, Text::CodiceColonna},           Heading{ImportField::Type, Text::Tipo},
    Heading{ImportField::Surname, Text::CognomeUtente},        Heading{ImportField::Surname, Text::Cognome},
    Heading{ImportField::FirstName, Text::NomeUtente},         Heading{ImportField::FirstName, Text::Nome},
    Heading{ImportField::Notes, Text::InformazioniAggiuntive},
};

QString plainHeading(const QString &text)
{
    QString plain = text.simplified().toCaseFolded();
    while (plain.endsWith(QLatin1Char(':')) || plain.endsWith(QLatin1Char('.')))
        plain.chop(1);
    return plain;
}

std::optional<ImportField> fieldOf(const QString &heading)
{
    const QString wanted = plainHeading(heading);
    Texts texts;
    for (int language = Texts::FirstLanguage; language <= Texts::LastLanguage; ++language) {
        texts.fill(language);
        for (const Heading &known : knownHeadings) {
            if (wanted == plainHeading(texts[known.text]))
                return known.field;
        }
    }
    return {};
}

/// How a separator parts the first lines.
struct Parting {
    qsizetype fields = 0; ///< of most lines
    int quotes = 0;       ///< fields that hold one: many of them were cut in the middle

    bool isBetterThan(const Parting &other) const
    {
        if (fields < 2 || other.fields < 2)
            return fields > other.fields;
        return quotes != other.quotes ? quotes < other.quotes : fields > other.fields;
    }
};

Parting parting(const QByteArray &content, char separator)
{
    CsvReader reader(content, separator);
    CsvReader::Record record;
    Parting found;
    QList<qsizetype> counts;
    while (counts.size() < sampledLines) {
        const Result<bool> read = reader.next(record);
        // What cannot be read is told when the lines are looked at one by one.
        if (!read || !read.value())
            break;
        counts.append(record.fields.size());
        found.quotes += static_cast<int>(std::count_if(record.fields.cbegin(), record.fields.cend(),
                                                       [](const QByteArray &field) { return field.contains('"'); }));
    }
    qsizetype most = 0;
    for (const qsizetype count : std::as_const(counts)) {
        const qsizetype same = counts.count(count);
        if (same > most || (same == most && count > found.fields)) {
            most = same;
            found.fields = count;
        }
    }
    return found;
}

} // namespace

char recognisedSeparator(const QByteArray &content)
{
    const QByteArray start = content.left(CsvReader::LongestRecord);
    for (const char separator : separators) {
        CsvReader reader(start, separator);
        CsvReader::Record record;
        if (const Result<bool> read = reader.next(record); read && tellsSeparator(record))
            return separator;
    }
    char best = separators.front();
    Parting ofBest = {1, 0};
    for (const char separator : separators) {
        const Parting found = parting(start, separator);
        if (found.isBetterThan(ofBest)) {
            ofBest = found;
            best = separator;
        }
    }
    return best;
}

std::optional<ImportColumns> recognisedColumns(const QStringList &found)
{
    ImportColumns columns;
    columns.fill(-1);
    for (qsizetype place = 0; place < found.size(); ++place) {
        const std::optional<ImportField> field = fieldOf(found[place]);
        // The first of two columns with the same heading counts.
        if (field && columns.at(static_cast<size_t>(*field)) < 0)
            columns.at(static_cast<size_t>(*field)) = static_cast<int>(place);
    }
    const bool hasCode = columns.at(static_cast<size_t>(ImportField::Code)) >= 0;
    return hasCode ? std::optional(columns) : std::nullopt;
}

ImportFormat recognisedFormat(const QByteArray &content, bool isUtf8)
{
    const TextEncoding encoding = isUtf8 ? TextEncoding::Utf8 : TextEncoding::Windows1252;
    return recognisedFormat(content, recognisedSeparator(content), encoding);
}

ImportFormat recognisedFormat(const QByteArray &content, char separator, TextEncoding encoding)
{
    ImportFormat format{separator, encoding};
    const QStringList first = firstFields(content, format);
    if (const std::optional<ImportColumns> named = recognisedColumns(first)) {
        format.hasHeader = true;
        format.columns = *named;
        return format;
    }
    for (int &place : format.columns) {
        if (place >= first.size())
            place = -1;
    }
    return format;
}

bool tellsSeparator(const CsvReader::Record &record)
{
    return record.fields.size() == 2 && record.fields[0].toLower() == "sep=" && record.fields[1].isEmpty();
}

QStringList firstFields(const QByteArray &content, const ImportFormat &format)
{
    CsvReader reader(content, format.separator);
    CsvReader::Record record;
    QStringList fields;
    Result<bool> read = reader.next(record);
    if (read && tellsSeparator(record))
        read = reader.next(record);
    if (read && read.value()) {
        for (const QByteArray &field : std::as_const(record.fields))
            fields.append(decoded(field, format.encoding));
    }
    return fields;
}

QString decoded(const QByteArray &bytes, TextEncoding encoding)
{
    return encoding == TextEncoding::Utf8 ? QString::fromUtf8(bytes) : Windows1252::decode(bytes);
}
