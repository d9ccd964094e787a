#include "users/DuplicateReport.h"

#include "platform/Windows1252.h"

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
    : m_users(std::move(users)), m_folder(folder), m_sort(Before{m_users})
{
    for (qsizetype row = 0; row < m_users.size(); ++row) {
        if (!m_users[row].CodTronc.isEmpty())
            m_sort->add(row);
    }
    writeLine(realCode.toUpper(), truncatedCode.toUpper());
    write(QString(2 * columnWidth + 2, rule));
}

bool DuplicateReport::Before::operator()(qsizetype a, qsizetype b) const
{
    const int order = users[a].CodTronc.compare(users[b].CodTronc);
    return order != 0 ? order < 0 : users[a].Codice < users[b].Codice;
}

Result<bool> DuplicateReport::step(const QDeadlineTimer &until)
{
    if (m_sort) {
        if (!m_sort->step(until))
            return false;
        m_rows = m_sort->take();
        m_sort.reset();
    }
    while (m_next < count()) {
        look(m_users[m_rows[static_cast<std::size_t>(m_next)]]);
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
    write(rightAligned(code) + QStringLiteral(" |") + rightAligned(truncated));
}

void DuplicateReport::write(const QString &line)
{
    const QByteArray bytes = Windows1252::encode(line);
    m_content += bytes + "\r\n";
    m_text += Windows1252::decode(bytes).replace(rule, QLatin1Char('-')) + QLatin1Char('\n');
}

Result<void> DuplicateReport::finish()
{
    if (!m_isFound)
        return m_folder.remove(fileName());
    return m_folder.disk().replaceContent(m_folder.path(fileName()), m_content, QStringLiteral("RepDoppioni.tmp"));
}
