#pragma once

#include <QString>

/// @p text without its leading "0" characters; a text of zeros becomes "".
QString TogliZeri(const QString &text);
/// The characters of @p text that are '0' to '9', in their order.
QString SoloCifre(const QString &text);
/// @p text without any "&": a menu caption as plain words.
QString TogliAnd(const QString &text);
/// The caption of a menu entry or a button as a title: also without the dots of one that asks for something.
QString titleOf(const QString &caption);

/// Where a text stands in a column of fixed width.
enum class Fit { Left, Centred, Right };

/// @p text in the middle of @p width characters, the odd blank behind it; a longer text is never cut.
QString Centra(const QString &text, int width);

/// @p text as one line that moves nothing on a terminal, whatever a name holds.
QString printable(QString text);
