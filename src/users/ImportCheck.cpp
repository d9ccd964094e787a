#include "users/ImportCheck.h"

#include "users/UserLines.h"
#include "users/UserRegister.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

constexpr qsizetype indexPiece = 256;

/// Code and type as one number.
qint64 keyOf(int code, CodeType type)
{
    return qint64(code) * 2 + (type == CodeType::Keypad ? 1 : 0);
}

bool isDigits(const QString &text)
{
    return std::all_of(text.begin(), text.end(),
                       [](QChar one) { return one >= QLatin1Char('0') && one <= QLatin1Char('9'); });
}

/// Whether a spreadsheet has written a number as "1.23E+08": most digits of it are lost.
bool isRounded(const QString &text)
{
    static const QRegularExpression power(QStringLiteral("^\\d+([.,]\\d*)?E\\+?\\d+\\z"),
                                          QRegularExpression::CaseInsensitiveOption);
    return power.match(text).hasMatch();
}

/// Spreadsheets write the rows below a list that somebody has formatted.
bool isBlank(const CsvReader::Record &record)
{
    return std::all_of(record.fields.begin(), record.fields.end(),
                       [](const QByteArray &field) { return field.trimmed().isEmpty(); });
}

QString nameOf(const QString &surname, const QString &firstName)
{
    if (surname.isEmpty() && firstName.isEmpty())
        return {};
    return (surname + QChar(0) + firstName).toCaseFolded();
}

/// The member of a user that a field of text stands for.
QString User::*textOf(ImportField field)
{
    switch (field) {
    case ImportField::Surname:
        return &User::Cognome;
    case ImportField::FirstName:
        return &User::Nome;
    default:
        return &User::Note;
    }
}

} // namespace

ImportCheck::ImportCheck(const QByteArray &content, const ImportChoices &choices, UserRows users)
    : m_choices(choices), m_users(std::move(users)), m_size(content.size()), m_reader(content, choices.format.separator)
{
    m_rows.reserve(m_users.count());
    m_names.reserve(m_users.count());
}

Result<bool> ImportCheck::step(const QDeadlineTimer &until)
{
    do {
        if (m_indexed < m_users.count()) {
            index(until);
        } else if (const Result<bool> read = readLine(); !read || !read.value()) {
            return read ? Result<bool>(true) : read;
        }
    } while (!until.hasExpired());
    return false;
}

void ImportCheck::index(const QDeadlineTimer &until)
{
    do {
        const qsizetype end = std::min(m_indexed + indexPiece, m_users.count());
        for (; m_indexed < end; ++m_indexed) {
            const User user = m_users[m_indexed];
            // A code that nobody could have typed meets none of the file.
            if (!user.Tipo || checkEntry(user.Codice, *user.Tipo).code != user.Codice)
                continue;
            const int code = user.Codice.toInt();
            m_rows.insert(keyOf(code, *user.Tipo), m_indexed);
            noteName(user.Cognome, user.Nome, code);
        }
    } while (m_indexed < m_users.count() && !until.hasExpired());
}

void ImportCheck::noteName(const QString &surname, const QString &firstName, int code)
{
    const QString name = nameOf(surname, firstName);
    if (name.isEmpty())
        return;
    Holders &holders = m_names[name];
    if (holders.first == 0 || holders.first == code)
        holders.first = code;
    else if (holders.second == 0)
        holders.second = code;
}

/// @return false after the last line
Result<bool> ImportCheck::readLine()
{
    CsvReader::Record record;
    Result<bool> read = m_reader.next(record);
    if (!read || !read.value())
        return read;
    if (record.line == 1 && tellsSeparator(record))
        return true;
    if (!std::exchange(m_isBegun, true) && m_choices.format.hasHeader)
        return true;
    if (isBlank(record))
        return true;
    if (m_lines.size() == MostLines)
        return Fault{FaultCode::TooLarge, QString::number(record.line)};
    const ImportLine line = judge(record);
    ++m_counts.at(static_cast<size_t>(line.outcome));
    if (line.outcome == ImportOutcome::Refused)
        m_refused.append(m_lines.size());
    if (line.isMarked())
        ++m_marked;
    m_lines.append(line);
    return true;
}

ImportLine ImportCheck::judge(const CsvReader::Record &record)
{
    ImportLine line;
    line.number = record.line;
    for (int field = 0; field < ImportFieldCount; ++field) {
        const int place = m_choices.format.columns.at(static_cast<size_t>(field));
        if (place >= 0 && place < record.fields.size())
            line.field(ImportField(field)) = unguarded(decoded(record.fields[place], m_choices.format.encoding));
    }
    ImportLine taken = line;
    if (taken.refusal = refusal(taken); taken.refusal == ImportRefusal::None)
        return taken;
    line.refusal = taken.refusal;
    line.firstLine = taken.firstLine;
    return line;
}

/// Makes of the fields what would stand in the register.
ImportRefusal ImportCheck::refusal(ImportLine &line)
{
    if (const ImportRefusal ofCode = takeCode(line); ofCode != ImportRefusal::None)
        return ofCode;
    const CodeType type = *typeOf(line.field(ImportField::Type));
    const qint64 key = keyOf(line.field(ImportField::Code).toInt(), type);
    if (const qint64 first = m_lineOfUser.value(key); first > 0) {
        line.firstLine = first;
        return ImportRefusal::Double;
    }
    if (const ImportRefusal ofTexts = takeTexts(line); ofTexts != ImportRefusal::None)
        return ofTexts;
    // Only what is taken can be doubled: a line that was refused leaves its code to another one.
    m_lineOfUser.insert(key, line.number);
    line.outcome = ImportOutcome::New;
    if (const auto known = m_rows.constFind(key); known != m_rows.constEnd())
        compare(line, *known);
    if (line.outcome != ImportOutcome::Unchanged) {
        line.sameNameAs = otherHolder(line);
        noteName(line.field(ImportField::Surname), line.field(ImportField::FirstName),
                 line.field(ImportField::Code).toInt());
    }
    return ImportRefusal::None;
}

ImportRefusal ImportCheck::takeCode(ImportLine &line)
{
    const QString typed = line.field(ImportField::Code).trimmed();
    if (typed.isEmpty())
        return ImportRefusal::NoCode;
    if (!isDigits(typed))
        return isRounded(typed) ? ImportRefusal::Rounded : ImportRefusal::NotDigits;
    const QString typeText = line.field(ImportField::Type).trimmed().toUpper();
    const std::optional<CodeType> type = typeText.isEmpty() ? CodeType::Transmitter : typeOf(typeText);
    if (!type)
        return ImportRefusal::TypeUnknown;
    const EntryCheck entry = checkEntry(typed, *type);
    if (entry.fault != EntryFault::None)
        return ImportRefusal::OutOfRange;
    line.field(ImportField::Code) = entry.code;
    line.field(ImportField::Type) = ::typeText(*type);
    return ImportRefusal::None;
}

ImportRefusal ImportCheck::takeTexts(ImportLine &line)
{
    for (const ImportField field : {ImportField::Surname, ImportField::FirstName, ImportField::Notes}) {
        QString &text = line.field(field);
        const QString limited = limitedText(text);
        if (text.normalized(QString::NormalizationForm_C) != limited) {
            if (!m_choices.shortens)
                return ImportRefusal::TooLong;
            line.isShortened = true;
        }
        text = limited;
    }
    return ImportRefusal::None;
}

/// Compares a line with the user of the register that it names. @param place  his
void ImportCheck::compare(ImportLine &line, qsizetype place)
{
    const User user = m_users[place];
    line.row = m_users.id(place);
    line.outcome = ImportOutcome::Unchanged;
    for (const ImportField field : {ImportField::Surname, ImportField::FirstName, ImportField::Notes}) {
        const QString &before = user.*textOf(field);
        if (has(field) && !m_choices.keepsNames && line.field(field) != before)
            line.outcome = ImportOutcome::Changed;
        else
            line.field(field) = before;
    }
    if (line.outcome == ImportOutcome::Unchanged)
        line.isShortened = false;
}

QString ImportCheck::otherHolder(const ImportLine &line) const
{
    const QString name = nameOf(line.field(ImportField::Surname), line.field(ImportField::FirstName));
    const Holders holders = name.isEmpty() ? Holders() : m_names.value(name);
    const int own = line.field(ImportField::Code).toInt();
    const int other = holders.first == own ? holders.second : holders.first;
    return other == 0 ? QString() : QString::number(other);
}
