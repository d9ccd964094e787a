#pragma once

#include "codes/User.h"
#include "platform/CsvWriter.h"

class QLocale;
class Texts;

// The users as lines of separated values, a field of each of userColumns.

/// What stands between two fields for a spreadsheet of that locale: ";" where the comma is the decimal sign, else ",".
char fieldSeparator(const QLocale &locale);

void writeHeader(CsvWriter &lines, const Texts &texts);
void writeUser(CsvWriter &lines, const User &user);

/// A text that no spreadsheet takes for a formula: with an apostrophe before what would begin one.
QString guarded(const QString &text);
/// The text that was guarded; any other text as it is.
QString unguarded(const QString &text);
