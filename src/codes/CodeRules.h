#pragma once

#include <QString>

/// What a code comes from.
enum class CodeType { Transmitter, Keypad };

/// "TX" or "DKS", as stored and shown.
QString typeText(CodeType type);

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

/// Code of a communication protocol: 1 and 3 to 15, or 0 for a name that is not known.
/// @param name         as the interface reports it; case and blanks matter
/// @param siteCode     1 when the interface reports a site code
/// @param channelInfo  1 when the interface reports channel information
int protocolCode(const QString &name, int siteCode, int channelInfo);

/// True for the protocols that carry only a part of some codes.
bool hasTruncatedCodes(int protocol);

/// Truncated form of a user's code: the part of it that the interface delivers under a protocol.
///
/// @param code      decimal digits, no leading zeros, at most 9; "" counts as 0
/// @param protocol  0 to 15; 0 = not known
/// @return          tail of the decimal text (leading zeros kept), five upper-case hexadecimal digits for
///                  RS_C, or "" where the protocol carries the whole code
QString truncatedCode(const QString &code, int protocol);
