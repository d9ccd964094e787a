#pragma once

#include <QByteArray>
#include <QString>

/// Text in the single-byte code page of the settings file and of the reports.
namespace Windows1252 {

/// Every byte has a character; the five that the code page leaves free become the control character of that code.
QString decode(const QByteArray &bytes);
/// Characters outside the code page become "?".
QByteArray encode(const QString &text);
/// True when every character of @p text has a byte.
bool holds(const QString &text);

} // namespace Windows1252
