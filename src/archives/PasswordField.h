#pragma once

#include <QRandomGenerator>
#include <QString>

#include <optional>

// How a password stands in a field of the table Password. The form hides it from a glance; it is no encryption.

/// Characters that a password has at most; a shorter one is filled up with blanks.
inline constexpr int PasswordLength = 10;

/// Scrambled form of @p password, 37 characters with codes from 109 to 373, another one each time.
/// @param password  Windows-1252 characters; cut or filled up with blanks to PasswordLength. "" gives the form that
///                  stands for no password
QString scramble(const QString &password, QRandomGenerator &random);

/// The PasswordLength characters behind a scrambled form, blanks included; nothing when @p field is not one. An empty
/// field stands for ten blanks.
std::optional<QString> unscramble(const QString &field);

/// @p text without the blanks at its ends; other white space can be part of a password.
QString trimBlanks(const QString &text);
