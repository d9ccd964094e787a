#pragma once

#include "codes/User.h"
#include "platform/CsvReader.h"
#include "platform/Task.h"
#include "users/ImportFormat.h"
#include "users/UserRows.h"

enum class ImportOutcome { New, Changed, Unchanged, Refused };
inline constexpr int ImportOutcomeCount = static_cast<int>(ImportOutcome::Refused) + 1;

/// Why a line is refused.
enum class ImportRefusal { None, NoCode, NotDigits, Rounded, OutOfRange, TypeUnknown, Double, TooLong };

/// What would become of a line of the file.
struct ImportLine {
    qint64 number = 0; ///< in the file, from 1
    ImportOutcome outcome = ImportOutcome::Refused;
    ImportRefusal refusal = ImportRefusal::None;
    /// By ImportField: of a refused line as they stand in the file, else as they would stand in the register.
    std::array<QString, ImportFieldCount> fields;
    qint64 row = 0;       ///< of the user in the register, 0 = a new one
    qint64 firstLine = 0; ///< of a double, the line that has the code
    QString sameNameAs;   ///< code of another user with this name, "" = none
    bool isShortened = false;

    const QString &field(ImportField which) const { return fields.at(static_cast<size_t>(which)); }
    QString &field(ImportField which) { return fields.at(static_cast<size_t>(which)); }
    /// Whether the operator should look at it, though it is not refused.
    bool isMarked() const { return outcome != ImportOutcome::Refused && (isShortened || !sameNameAs.isEmpty()); }
};

struct ImportChoices {
    ImportFormat format;
    bool keepsNames = false; ///< of users who are in the register already
    bool shortens = false;   ///< texts that are longer than the register takes
    bool operator==(const ImportChoices &) const = default;
};

/// The dry run of an import: looks at each line of a file what it would change in the register, in turns. Nothing
/// changes.
///
/// A user is known by code and type. Without a type he is a transmitter; a field that the file has no column for stays
/// as it is in the register.
class ImportCheck : public Task
{
public:
    static constexpr qsizetype LargestFile = 32 * 1024 * 1024; ///< bytes
    static constexpr qsizetype MostLines = 250'000;

    /// @param content  of the file, without a byte order mark; @param users  of the register
    ImportCheck(const QByteArray &content, const ImportChoices &choices, UserRows users);

    /// Faults are those of CsvReader, and TooLarge with too many lines; their subject is the number of the line.
    Result<bool> step(const QDeadlineTimer &until) override;
    Progress progress() const override { return {m_reader.position(), m_size}; }

    /// All but empty ones and the headings; with those that are refused, by their places.
    const FreedInTurns<QList<ImportLine>> &lines() const { return m_lines; }
    const QList<qsizetype> &refused() const { return m_refused; }
    qsizetype count(ImportOutcome outcome) const { return m_counts.at(static_cast<size_t>(outcome)); }
    qsizetype marked() const { return m_marked; }

private:
    /// Two codes tell of any code whether there is another one.
    struct Holders {
        int first = 0;
        int second = 0;
    };

    void index(const QDeadlineTimer &until);
    void noteName(const QString &surname, const QString &firstName, int code);
    Result<bool> readLine();
    ImportLine judge(const CsvReader::Record &record);
    ImportRefusal refusal(ImportLine &line);
    ImportRefusal takeCode(ImportLine &line);
    ImportRefusal takeTexts(ImportLine &line);
    void compare(ImportLine &line, qsizetype place);
    QString otherHolder(const ImportLine &line) const;
    bool has(ImportField field) const { return m_choices.format.place(field) >= 0; }

    const ImportChoices m_choices;
    const UserRows m_users;
    const qsizetype m_size;
    CsvReader m_reader;
    bool m_isBegun = false;
    qsizetype m_indexed = 0;            ///< users that are in the next two
    QHash<qint64, qsizetype> m_rows;    ///< key of a user -> his place
    QHash<QString, Holders> m_names;    ///< of the register and of the lines so far
    QHash<qint64, qint64> m_lineOfUser; ///< key of a user -> the line that has him
    FreedInTurns<QList<ImportLine>> m_lines;
    QList<qsizetype> m_refused;
    std::array<qsizetype, ImportOutcomeCount> m_counts{};
    qsizetype m_marked = 0;
};
