#pragma once

#include "startup/Protocol.h"

#include <QString>

#include <optional>

/// What a code comes from.
enum class CodeType { Transmitter, Keypad };

/// "TX" or "DKS", as stored and shown; "" without a type.
QString typeText(std::optional<CodeType> type);
/// The type that is stored so; none for any other text.
std::optional<CodeType> typeOf(const QString &text);

enum class EntryFault { None, NotAboveZero, AboveTransmitterMaximum, AboveKeypadMaximum };

struct EntryCheck {
    EntryFault fault = EntryFault::None;
    QString code; ///< without leading zeros; meaningful when fault is None
};

/// Highest code of a transmitter (hexadecimal 0EFFFFFF) and of a keypad.
inline constexpr int HighestTransmitterCode = 251'658'239;
inline constexpr int HighestKeypadCode = 999'999;
/// Digits of a code that is typed.
inline constexpr int LongestCode = 9;

/// Checks a code that was typed or received for a user of the register.
/// @param typed  decimal digits, with or without leading zeros
EntryCheck checkEntry(const QString &typed, CodeType type);

/// The protocol of that name, with the two marks that may stand behind it.
/// @param name  as the interface reports it; case and blanks matter
Protocol protocolCode(const QString &name, bool hasSiteCode, bool hasChannelInfo);

/// True for the protocols that carry only a part of some codes.
bool hasTruncatedCodes(Protocol protocol);

/// Truncated form of a user's code: the part of it that the interface delivers under a protocol.
///
/// @param code  decimal digits, no leading zeros, at most 9; "" counts as 0
/// @return      tail of the decimal text (leading zeros kept), five upper-case hexadecimal digits for RS_C, or "" where
///              the protocol carries the whole code
QString truncatedCode(const QString &code, Protocol protocol);
