#include "users/DuplicateReport.h"

#include "platform/Windows1252.h"

#include <algorithm>

namespace {

constexpr int columnWidth = 20;
constexpr QChar rule(0xAD); ///< the code page's hyphen that is only seen at the end of a line

QString rightAligned(const QString &text)
{
    return text.rightJustified(columnWidth).right(columnWidth);
}

} // namespace

DuplicateReport::DuplicateReport(QList<User> users, ProgramFolder &folder, const QString &realCode,
                                 const QString &truncatedCode)
    : m_users(std::move(users)), m_folder(folder)
{
    for (qsizetype row = 0; row < m_users.size(); ++row) {
        if (!m_users[row].CodTronc.isEmpty())
            m_rows.append(row);
    }
    std::sort(m_rows.begin(), m_rows.end(), [this](qsizetype a, qsizetype b) {
        const int order = m_users[a].CodTronc.compare(m_users[b].CodTronc);
        return order != 0 ? order < 0 : m_users[a].Codice < m_users[b].Codice;
    });
    writeLine(realCode.toUpper(), truncatedCode.toUpper());
    m_content += Windows1252::encode(QString(2 * columnWidth + 2, rule)) + "\r\n";
}

Result<bool> DuplicateReport::step(const QDeadlineTimer &until)
{
    while (m_next < count()) {
        look(m_users[m_rows[m_next]]);
        if (++m_next < count() && until.hasExpired())
            return false;
    }
    if (const Result<void> finished = finish(); !finished)
        return finished.fault();
    return true;
}

void DuplicateReport::look(const User &user)
{
    if (user.CodTronc == m_truncatedBefore) {
        m_isFound = true;
        if (m_before != m_written)
            writeLine(m_before, m_truncatedBefore);
        writeLine(user.Codice, user.CodTronc);
        m_written = user.Codice;
    }
    m_truncatedBefore = user.CodTronc;
    m_before = user.Codice;
}

void DuplicateReport::writeLine(const QString &code, const QString &truncated)
{
    m_content += Windows1252::encode(rightAligned(code) + QStringLiteral(" |") + rightAligned(truncated)) + "\r\n";
}

Result<void> DuplicateReport::finish()
{
    if (!m_isFound)
        return m_folder.remove(fileName());
    return m_folder.disk().replaceContent(m_folder.path(fileName()), m_content, QStringLiteral("RepDoppioni.tmp"));
}

QString DuplicateReport::text() const
{
    return Windows1252::decode(m_content)
        .replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
        .replace(rule, QLatin1Char('-'));
}
