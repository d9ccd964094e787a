#include "codes/EventRow.h"

#include "texts/DateTimeText.h"

namespace {

std::optional<CodeType> typeOf(const QString &text)
{
    for (const CodeType type : {CodeType::Transmitter, CodeType::Keypad}) {
        if (text == typeText(type))
            return type;
    }
    return {};
}

} // namespace

SqlValues EventRow::values(const Event &event)
{
    return {event.Codice, DataFile(event.Data), OraTesto(event.Ora),    typeText(event.Tipo),
            event.Canale, markText(event.AbCh), markText(event.KorDis), DataOrdinabile(event.Data)};
}

Event EventRow::read(const Statement &row, int column)
{
    return {row.text(column),
            dayOfFile(row.text(column + 1)),
            timeOf(row.text(column + 2)),
            typeOf(row.text(column + 3)),
            row.text(column + 4),
            row.text(column + 5) == markText(true),
            row.text(column + 6) == markText(true)};
}
