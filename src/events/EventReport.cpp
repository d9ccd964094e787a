#include "events/EventReport.h"

#include "texts/Texts.h"

namespace {

constexpr double headingRise = 100;      ///< of the headings above the line that was reached
constexpr double footerRuleMargin = 200; ///< at both ends of the rule above the page number
constexpr int footerPoints = 8;

TableReport::Layout makeLayout(EventReport::Table table, const Texts &texts)
{
    using Fit = TableReport::Fit;
    const TableReport::Column type = {5, Fit::Centred, texts[Text::Tipo]};
    const QList<TableReport::Column> name = {{16, Fit::Left, texts[Text::CognomeUtente]},
                                             {16, Fit::Left, texts[Text::NomeUtente]}};
    const QList<TableReport::Column> rest = {{3, Fit::Centred, texts[Text::Ch]},
                                             {5, Fit::Centred, texts[Text::ChDis]},
                                             {10, Fit::Left, texts[Text::Data]},
                                             {8, Fit::Left, texts[Text::Ora]},
                                             {5, Fit::Centred, texts[Text::KorDis]}};
    if (table == EventReport::Table::Search)
        return {name + QList{type} + rest, texts[Text::RicercaEventi], texts[Text::Pagina]};
    const TableReport::Column number = {7, Fit::Right, QStringLiteral("N\u00B0")};
    return {QList{number, type} + name + rest, texts[Text::UltimiEventi], texts[Text::Pagina]};
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
