#pragma once

#include "texts/Texts.h"

#include <QDate>
#include <QString>

// Text forms of days and times of the day. They are made and read where the program ends - archives, windows, paper -
// and are values inside. A value that is not valid has the text "", and so the other way round.

/// "dd-mm-yyyy", as archives and their names have it.
QString DataFile(QDate day);
/// "dd/mm/yyyy", as the operator sees it.
QString DataBarre(QDate day);
/// "yyyymmdd", which sorts.
QString DataOrdinabile(QDate day);
/// The same of a text "dd?mm?yyyy" with any separator, be there such a day or not.
QString DataOrdinabile(const QString &date);
/// "hh:mm:ss".
QString OraTesto(QTime time);
/// "dd/mm/yyyy hh:mm:ss", as the operator sees it.
QString dayAndTime(const QDateTime &moment);

/// The day of a DataFile(), in digits only; not valid for any other text.
QDate dayOfFile(QStringView text);
/// The time of an OraTesto(), in digits only; not valid for any other text.
QTime timeOf(QStringView text);

/// True for "dd/mm/yyyy" in digits, day 1 to 31, month 1 to 12, year from 1; the length of the month is not checked.
bool DataValida(const QString &date);
/// True for "hh:mm:ss", 00:00:00 to 23:59:59.
bool OraValida(const QString &time);
/// True for "hh:mm", 00:00 to 23:59.
bool OraBreveValida(const QString &time);

enum class End { First, Last };
/// The day that a range of days begins or ends with; not valid for a text that is not. Of a day that its month has not,
/// such as 31/02, that is the first one behind it, or the last one before it.
/// @param date  a DataValida() text
QDate rangeDay(const QString &date, End end);
/// The same of a "yyyymmdd" text.
QDate rangeDayOfKey(const QString &key, End end);

/// The "hh:mm" time @p text; hours and minutes may lack digits.
QTime shortTimeOf(const QString &text);

/// "weekday, dd month yyyy" in the program's language.
QString DataEstesa(const QDate &today, const Texts &texts);
