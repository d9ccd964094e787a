#pragma once

#include <QString>

#include <optional>

/// True when a person can be asked on the standard input.
bool isTerminal();

/// Asks on the terminal, without showing what is typed.
/// @return one line without its end; nothing when the input ended instead, or on Ctrl+C
std::optional<QString> askOnTerminal(const QString &prompt);

/// Holds whoever is typing up for some seconds: what he types meanwhile is neither shown nor taken.
void holdUpTerminal(int seconds);

/// True when nobody but the owner, who must be this user, can read or write the file.
bool isOwnersOnly(const QString &path);
