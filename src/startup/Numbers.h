#pragma once

#include <QStringView>

#include <optional>

/// The number that @p text begins with after leading blanks ("12 min" gives 12, "2.5" gives 2.5), 0 when it begins with
/// none. Digits are '0' to '9', the decimal mark is the point.
double leadingNumber(QStringView text);

/// @p number rounded to the nearest whole number (halves to the even one) and limited to -32768 to 32767.
int toSixteenBits(double number);

/// The value of a text that is one whole number with nothing around it but blanks, limited to 16 bits.
std::optional<int> wholeNumber(QStringView text);
