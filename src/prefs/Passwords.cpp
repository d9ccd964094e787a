#include "prefs/Passwords.h"

#include "archives/PasswordField.h"
#include "archives/RecordSet.h"
#include "archives/Tables.h"
#include "platform/Windows1252.h"

#include <algorithm>

namespace {

const std::array<QString, 3> &fields()
{
    static const std::array<QString, 3> names = {QStringLiteral("PassProg"), QStringLiteral("PassUte"),
                                                 QStringLiteral("PassUtility")};
    return names;
}

QString statement()
{
    return QStringLiteral("SELECT * FROM Password");
}

} // namespace

Passwords::Fault Passwords::unreadable(const ::Fault &reason)
{
    m_reason = reason;
    const bool isUnusable = reason.code == FaultCode::NotFound || reason.code == FaultCode::Damaged ||
                            reason.code == FaultCode::NotRegularFile;
    return isUnusable ? Fault::RegisterUnusable : Fault::Unreadable;
}

Passwords::Fault Passwords::load()
{
    Result<Database> database = m_archives.open(ArchiveName::Users, m_reading);
    if (!database)
        return unreadable(database.fault());
    // Whoever has passed the gate relies on the register: what is damaged behind these few rows shows here, or in the
    // middle of the work.
    if (!m_isReadThrough) {
        if (const Result<void> whole = database.value().readThrough(); !whole)
            return unreadable(whole.fault());
        m_isReadThrough = true;
    }
    const Result<RecordSet> set = RecordSet::open(database.value(), statement(), RecordSet::Kind::Snapshot);
    if (!set)
        return unreadable(set.fault());
    if (set.value().isEmpty())
        return Fault::Corrupt;
    std::array<QString, 3> read;
    for (size_t i = 0; i < read.size(); ++i) {
        const std::optional<QString> text = unscramble(set.value().value(fields().at(i)));
        if (!text)
            return Fault::Corrupt;
        read.at(i) = trimBlanks(*text);
    }
    m_clear = read;
    return Fault::None;
}

bool Passwords::matches(Type type, const QString &typed) const
{
    return trimBlanks(typed) == clear(type);
}

Passwords::Fault Passwords::set(Type type, const QString &password)
{
    Result<Database> database = m_archives.open(ArchiveName::Users, Database::Use::Safe);
    if (!database)
        return unreadable(database.fault());
    Result<RecordSet> opened = RecordSet::open(database.value(), statement(), RecordSet::Kind::Dynaset);
    if (!opened)
        return unreadable(opened.fault());
    if (opened.value().isEmpty())
        return Fault::Corrupt;
    const size_t index = static_cast<size_t>(type) - 1;
    const QString field = scramble(password, *QRandomGenerator::global());
    if (const Result<void> stored = opened.value().edit({{fields().at(index), field}}); !stored)
        return unreadable(stored.fault());
    m_clear.at(index) = trimBlanks(password.left(PasswordLength));
    return Fault::None;
}

QString Passwords::accepted(const QString &typed)
{
    QString text;
    // An accent that was pasted apart from its letter belongs to it.
    const QString composed = typed.normalized(QString::NormalizationForm_C);
    std::copy_if(composed.cbegin(), composed.cend(), std::back_inserter(text),
                 [](QChar character) { return Windows1252::holds(QString(character)); });
    return text;
}
