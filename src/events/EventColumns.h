#pragma once

#include "codes/Event.h"
#include "startup/PlainText.h"
#include "texts/DateTimeText.h"

#include <QStringList>

#include <array>
#include <span>

/// An event and what is told beside it.
struct ListedEvent {
    qint64 ProgEv = 0; ///< its number in the archive of the day; 0 where it is not told
    Event event;
    QString Cognome; ///< of the user; "" when nobody is known
    QString Nome;
};

/// A column of the events, wherever they are listed: in grids, on paper and in a sheet.
struct EventColumn {
    enum class Kind {
        Plain,
        Name, ///< shares what a grid is wider
        Mark, ///< an X or nothing
    };

    Text caption;
    QString (*text)(const ListedEvent &);
    int twips;          ///< in a grid: the least width
    const char *widest; ///< in a grid: a text as wide as any; "" where none is wider than that
    Fit fit;            ///< in a grid
    int characters;     ///< in print
    Fit printedFit;
    Kind kind = Kind::Plain;
    const char16_t *printedCaption = u""; ///< where it is another one
};

namespace EventColumns {

using Kind = EventColumn::Kind;

inline constexpr EventColumn ProgEv = {Text::NumeroColonna,
                                       [](const ListedEvent &e) { return QString::number(e.ProgEv); },
                                       700,
                                       "000000",
                                       Fit::Right,
                                       7,
                                       Fit::Right,
                                       Kind::Plain,
                                       u"N\u00B0"};
inline constexpr EventColumn Tipo = {
    Text::Tipo, [](const ListedEvent &e) { return typeText(e.event.Tipo); }, 600, "", Fit::Centred, 5, Fit::Centred};
inline constexpr EventColumn Cognome = {
    Text::CognomeUtente, [](const ListedEvent &e) { return e.Cognome; }, 1700, "", Fit::Left, 16, Fit::Left,
    Kind::Name};
inline constexpr EventColumn Nome = {
    Text::NomeUtente, [](const ListedEvent &e) { return e.Nome; }, 1700, "", Fit::Left, 16, Fit::Left, Kind::Name};
inline constexpr EventColumn Canale = {
    Text::Ch, [](const ListedEvent &e) { return e.event.Canale; }, 400, "", Fit::Centred, 3, Fit::Centred};
inline constexpr EventColumn AbCh = {
    Text::ChDis, [](const ListedEvent &e) { return markText(e.event.AbCh); }, 600, "", Fit::Centred, 5, Fit::Centred,
    Kind::Mark};
inline constexpr EventColumn Data = {
    Text::Data, [](const ListedEvent &e) { return DataFile(e.event.Data); }, 1000, "00-00-0000", Fit::Centred, 10,
    Fit::Left};
inline constexpr EventColumn Ora = {
    Text::Ora, [](const ListedEvent &e) { return OraTesto(e.event.Ora); }, 800, "00:00:00", Fit::Centred, 8, Fit::Left};
inline constexpr EventColumn KorDis = {
    Text::KorDis, [](const ListedEvent &e) { return markText(e.event.KorDis); }, 600, "", Fit::Centred, 5, Fit::Centred,
    Kind::Mark};

/// The columns of the last events, and those of a search, in their order.
inline constexpr std::array last = {ProgEv, Tipo, Cognome, Nome, Canale, AbCh, Data, Ora, KorDis};
inline constexpr std::array found = {Cognome, Nome, Tipo, Canale, AbCh, Data, Ora, KorDis};

} // namespace EventColumns

/// What stands in the columns for an event.
inline QStringList textsOf(std::span<const EventColumn> columns, const ListedEvent &event)
{
    QStringList all;
    for (const EventColumn &column : columns)
        all.append(column.text(event));
    return all;
}
