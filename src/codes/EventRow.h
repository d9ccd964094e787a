#pragma once

#include "archives/Database.h"
#include "codes/Event.h"

/// An event as columns of a statement, in the archive of a day and where it waits for that.
namespace EventRow {

/// Names of the columns, with commas between them.
inline constexpr auto Columns = "Codice, Data, Ora, Tipo, Canale, AbCh, KorDis, DataOrd";

/// Their values, in their order.
SqlValues values(const Event &event);
/// @param column  the first one, from 0
Event read(const Statement &row, int column);

} // namespace EventRow
