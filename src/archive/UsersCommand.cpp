#include "archive/UsersCommand.h"

#include "archives/Tables.h"
#include "codes/CodeRules.h"
#include "codes/UserColumns.h"
#include "users/UserLines.h"

namespace tool {

namespace {

constexpr std::array userNames = {"code", "type", "surname", "name", "notes", "truncated_code"};
constexpr std::array userWidths = {9, 4, 15, 15, 15, 9};
static_assert(userNames.size() == userColumns.size() && userWidths.size() == userColumns.size());

/// As the window exports them.
QByteArray csvLines(const QList<User> &users, char separator, const Texts &texts)
{
    CsvWriter csv(separator);
    writeHeader(csv, texts);
    for (const User &user : users)
        writeUser(csv, user);
    return CsvWriter::ByteOrderMark + csv.take();
}

QByteArray jsonLines(const QList<User> &users)
{
    QByteArray lines;
    for (const User &user : users) {
        char before = '{';
        for (size_t i = 0; i < userNames.size(); ++i) {
            lines += before + jsonText(userNames.at(i)) + ':' + jsonText(userColumns.at(i).value.text(user).toUtf8());
            before = ',';
        }
        lines += "}\n";
    }
    return lines;
}

QByteArray tableLines(const QList<User> &users, int width, const Texts &texts)
{
    QStringList captions;
    for (const UserColumn &column : userColumns)
        captions.append(texts[column.caption]);
    QByteArray lines = tableLine(captions, userWidths, width);
    for (const User &user : users) {
        QStringList cells;
        for (const UserColumn &column : userColumns)
            cells.append(column.value.text(user));
        lines += tableLine(cells, userWidths, width);
    }
    return lines;
}

} // namespace

QByteArray userLines(const QList<User> &users, const LineForm &form, const Texts &texts)
{
    switch (form.format) {
    case Format::Csv:
        return csvLines(users, form.separator, texts);
    case Format::Json:
        return jsonLines(users);
    default:
        return tableLines(users, form.width, texts);
    }
}

Result<QList<User>> UsersCommand::read()
{
    Result<Database> opened = m_site.archives.open(ArchiveName::Users, Database::Use::Untouched);
    if (!opened)
        return opened.fault();
    QStringList fields;
    for (const UserColumn &column : userColumns)
        fields.append(QLatin1String(column.field));
    QList<User> users;
    const Result<void> read = opened.value().each(
        QStringLiteral("SELECT %1 FROM Utenti ORDER BY Codice, rowid").arg(fields.join(QLatin1Char(','))), {},
        [this, &users](const Statement &row) {
            User user;
            for (size_t i = 0; i < userColumns.size(); ++i)
                userColumns.at(i).value.set(user, row.text(static_cast<int>(i)));
            user.CodTronc = truncatedCode(user.Codice, m_protocol);
            users.append(std::move(user));
        });
    return read ? Result<QList<User>>(std::move(users)) : read.fault();
}

Result<bool> UsersCommand::step(const QDeadlineTimer &until)
{
    if (!std::exchange(m_isRead, true)) {
        const Result<QList<User>> users = read();
        if (!users)
            return users.fault();
        m_pending.add(userLines(users.value(), m_form, m_site.texts));
    }
    const Result<bool> written = m_pending.write(until);
    return written && written.value() ? m_pending.end() : written;
}

} // namespace tool
