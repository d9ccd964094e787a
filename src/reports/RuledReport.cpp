#include "reports/RuledReport.h"

namespace {

constexpr double headingRise = 100;      ///< of the headings above the line that was reached
constexpr double footerRuleMargin = 200; ///< at both ends of the rule above the page number
constexpr int footerPoints = 8;

} // namespace

void RuledReport::printHeadings(Page &page)
{
    setTextFont(page, true);
    m_tableTop = m_y - headingRise;
    m_rowBottom = m_tableTop + 2 * m_line;
    page.band(m_left, m_tableTop, right() - m_left, 2 * m_line);
    page.rule(m_left, m_tableTop, right(), m_tableTop);
    page.text(m_left, m_tableTop, headingLine(0));
    page.text(m_left, m_tableTop + m_line, headingLine(1));
    page.rule(m_left, m_rowBottom, right(), m_rowBottom);
    m_y = m_rowBottom + m_line;
    setTextFont(page);
}

/// The text stands in the second line of its row, upon the rule; one that goes on begins in the first.
void RuledReport::printRow(Page &page, const QString &text)
{
    const qsizetype end = text.indexOf(QChar(QChar::LineFeed));
    if (end >= 0)
        page.text(m_left, m_y - m_line, text.left(end));
    page.text(m_left, m_y, text.mid(end + 1));
    m_rowBottom += 2 * m_line;
    page.rule(m_left, m_rowBottom, right(), m_rowBottom);
    m_y += 2 * m_line;
}

void RuledReport::closePage(Page &page)
{
    page.rule(m_left, m_tableTop, m_left, m_rowBottom);
    int end = 0;
    for (const Column &column : layout().columns) {
        end += column.gap + column.width;
        const double x = m_left + span(end) + EdgeOverhang;
        page.rule(x, m_tableTop, x, m_rowBottom);
    }
    const QString number = pageNumber();
    const double y = page.height() - m_line;
    const double x = page.width() - page.textWidth(number);
    page.setFont(footerPoints, false);
    page.text(x, y, number);
    page.rule(footerRuleMargin, y - FooterSpace, page.width() - footerRuleMargin, y - FooterSpace);
    setTextFont(page);
}
