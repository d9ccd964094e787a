#include "users/UserListReport.h"

#include "codes/UserColumns.h"
#include "texts/Texts.h"

namespace {

/// The columns of code and type lie on grey in every row.
constexpr int codeCharacters = 17;
constexpr int ruledCharacters[] = {11, 17, 33, 49, 65};

TableReport::Layout makeLayout(const Texts &texts)
{
    QList<TableReport::Column> columns;
    for (const UserColumn &column : userColumns)
        columns.append({column.characters, column.fit, texts[column.caption], column.gap});
    return {columns, texts[Text::ListaUtenti], texts[Text::Pagina]};
}

QStringList fields(const User &user)
{
    QStringList texts;
    for (const UserColumn &column : userColumns)
        texts.append(column.value.text(user));
    return texts;
}

} // namespace

UserListReport::UserListReport(const Texts &texts, const QList<User> &users)
    : TableReport(makeLayout(texts), {users.size(), [users](qsizetype row) { return fields(users[row]); }})
{
}

void UserListReport::printHeadings(Page &page)
{
    setTextFont(page, true);
    m_rowBottom = m_y + 2 * m_line;
    codeBand(page, m_y);
    page.text(m_left, m_y, headingLine(0));
    page.text(m_left, m_y + m_line, headingLine(1));
    frame(page, m_y);
    setTextFont(page);
    m_tableTop = m_rowBottom;
    m_y = m_rowBottom;
}

/// The text stands in the first line of its row.
void UserListReport::printRow(Page &page, const QString &text)
{
    m_rowBottom = m_y + 2 * m_line;
    codeBand(page, m_y);
    page.text(m_left, m_y, text);
    frame(page, m_y);
    m_y = m_rowBottom;
}

void UserListReport::closePage(Page &page)
{
    for (const int count : ruledCharacters)
        page.rule(m_left + span(count), m_tableTop, m_left + span(count), m_rowBottom);
    frame(page, m_tableTop);
    const QString number = pageNumber();
    page.text(page.width() - page.textWidth(number), page.height() - m_line, number);
}

void UserListReport::codeBand(Page &page, double top) const
{
    page.band(m_left, top, span(codeCharacters) + EdgeOverhang, m_rowBottom - top);
}

void UserListReport::frame(Page &page, double top) const
{
    const double right = m_left + span(characters());
    page.rule(m_left, top, right, top);
    page.rule(m_left, m_rowBottom, right, m_rowBottom);
    page.rule(m_left, top, m_left, m_rowBottom);
    page.rule(right, top, right, m_rowBottom);
}
