#pragma once

#include "archives/CopyEditor.h"
#include "timeprog/TimeState.h"

#include <QStringList>

/// Why a time band is not stored.
enum class BandFault {
    None,
    Incomplete, ///< Da or A is empty
    DaFormat,   ///< Da is no "hh:mm"
    AFormat,    ///< A is no "hh:mm"
    Order,      ///< A is earlier than Da; it is A that is to be mended
};

/// What the editor of the time bands works on: the bands in the order of their start.
CopyEditor::Source bandSource();
/// Fields of the day marks, Monday to Sunday, which are the first columns of the table.
const QStringList &dayFields();

/// The first fault of what was typed. A band never crosses midnight; it may last for a single minute.
BandFault checkBand(const QString &Da, const QString &A);
/// A new band counts from Monday to Friday.
RecordSet::Values newBand(const QString &Da, const QString &A);
/// What a band becomes when other times are typed: its marks stay.
RecordSet::Values bandTimes(const QString &Da, const QString &A);

/// The bands of a set that has the columns of bandSource().
QList<Band> bandsOf(const RecordSet &set);

bool isMarked(const QString &mark);
/// @param day   0 = Monday
/// @param mark  of that day up to now
RecordSet::Values toggledDay(int day, const QString &mark);
