#include "codes/EventRow.h"

#include "texts/DateTimeText.h"

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
