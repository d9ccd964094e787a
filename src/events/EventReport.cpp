#include "events/EventReport.h"

#include "events/EventColumns.h"
#include "texts/Texts.h"

#include <algorithm>

namespace {

constexpr double headingRise = 100;      ///< of the headings above the line that was reached
constexpr double footerRuleMargin = 200; ///< at both ends of the rule above the page number
constexpr int footerPoints = 8;

TableReport::Layout makeLayout(EventReport::Table table, const Texts &texts)
{
    const bool isSearch = table == EventReport::Table::Search;
    TableReport::Layout layout{{}, texts[isSearch ? Text::RicercaEventi : Text::UltimiEventi], texts[Text::Pagina]};
    const auto add = [&layout, &texts](const EventColumn &column) {
        const QString other = QString::fromUtf16(column.printedCaption);
        layout.columns.append({column.characters, column.printedFit, other.isEmpty() ? texts[column.caption] : other});
    };
    if (isSearch)
        std::for_each(EventColumns::found.begin(), EventColumns::found.end(), add);
    else
        std::for_each(EventColumns::last.begin(), EventColumns::last.end(), add);
    return layout;
}

} // namespace

EventReport::EventReport(Table table, const Texts &texts, Rows rows)
    : TableReport(makeLayout(table, texts), std::move(rows))
{
}

void EventReport::printHeadings(Page &page)
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

/// The text stands in the second line of its row, upon the rule.
void EventReport::printRow(Page &page, const QString &text)
{
    page.text(m_left, m_y, text);
    m_rowBottom += 2 * m_line;
    page.rule(m_left, m_rowBottom, right(), m_rowBottom);
    m_y += 2 * m_line;
}

void EventReport::closePage(Page &page)
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
