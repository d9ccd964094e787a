#include "events/EventReport.h"

#include "events/EventColumns.h"
#include "texts/Texts.h"

#include <algorithm>

namespace {

TableReport::Layout makeLayout(EventReport::Table table, const Texts &texts, const QString &note)
{
    const bool isSearch = table == EventReport::Table::Search;
    TableReport::Layout layout{
        {}, texts[isSearch ? Text::RicercaEventi : Text::UltimiEventi], texts[Text::Pagina], note};
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

EventReport::EventReport(Table table, const Texts &texts, Rows rows, const QString &note)
    : RuledReport(makeLayout(table, texts, note), std::move(rows))
{
}
