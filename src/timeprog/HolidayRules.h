#pragma once

#include "archives/CopyEditor.h"
#include "timeprog/TimeState.h"

/// Why holidays are not stored.
enum class HolidayFault {
    None,
    Incomplete,      ///< DalGiorno is empty
    DalGiornoFormat, ///< DalGiorno is no "dd/mm/yyyy"
    AlGiornoFormat,  ///< AlGiorno is no "dd/mm/yyyy"
    Order,           ///< AlGiorno is earlier than DalGiorno; it is AlGiorno that is to be mended
};

/// What the editor of the holidays works on: the intervals in the order of the text of their first day.
CopyEditor::Source holidaySource();

/// The first fault of what was typed.
/// @param AlGiorno  becomes DalGiorno, a single day, where it is empty and DalGiorno is a date
HolidayFault checkHoliday(const QString &DalGiorno, QString &AlGiorno);
/// The row of an interval: its days as they were typed, and the keys that put them in the order of time.
RecordSet::Values holiday(const QString &DalGiorno, const QString &AlGiorno);
/// The holidays of a set that has the columns of holidaySource().
QList<Holiday> holidaysOf(const RecordSet &set);
