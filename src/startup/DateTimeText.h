#pragma once

#include "texts/Texts.h"

#include <QDate>
#include <QString>

// Dates and times are text throughout. Routines that convert trust their input; what an operator types is checked first
// by DataValida, OraValida and OraBreveValida.

/// "mm-dd-yyyy" (the clock's date) to "dd-mm-yyyy" (archives).
QString DataFile(const QString &date);
/// "mm-dd-yyyy" to "dd/mm/yyyy" (what the operator sees).
QString DataBarre(const QString &date);
/// "dd/mm/yyyy" to "dd-mm-yyyy".
QString DataTrattini(const QString &date);
/// "dd?mm?yyyy" with any separator to the sortable "yyyymmdd".
QString DataOrdinabile(const QString &date);
/// Text of four or more characters that begins "mm" and ends "dd" to "dd/mm".
QString GiornoMese(const QString &text);

/// True for "dd/mm/yyyy" in digits, day 1 to 31, month 1 to 12, year from 1; the length of the month is not checked.
bool DataValida(const QString &date);
/// True for "hh:mm:ss", 00:00:00 to 23:59:59.
bool OraValida(const QString &time);
/// True for "hh:mm", 00:00 to 23:59.
bool OraBreveValida(const QString &time);

/// Minutes since midnight of "hh:mm", 0 to 1439.
int Minuti(const QString &time);
/// True when the "hh:mm" time @p a is not later than @p b.
bool OraNonDopo(const QString &a, const QString &b);

/// The day after the "dd/mm/yyyy" day @p date, in the same form.
QString GiornoSeguente(const QString &date);
bool AnnoBisestile(int year);

/// "weekday, dd month yyyy" in the program's language.
QString DataEstesa(const QDate &today, const Texts &texts);
