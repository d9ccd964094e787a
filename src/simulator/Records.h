#pragma once

#include <QByteArray>

#include <optional>

class QRandomGenerator;

namespace simulator {

enum class CodeKind { Transmitter, Keypad };

/// A code that was read at the interface.
struct EventRecord {
    CodeKind kind = CodeKind::Transmitter;
    quint32 code = 0;               ///< 0 to 999999999
    char channel = 'A';             ///< 'A' to 'D'
    bool channelEnabled = true;     ///< the channel was enabled for the code
    bool interfaceDisabled = false; ///< the interface was disabled when the code was read
};

/// How the interface is set, as it tells when it is asked.
struct InterfaceSetting {
    QByteArray protocol = "WIEGAND 26 BIT";
    bool siteCode = false;
    bool channelInformation = false;
    QByteArray channels = "1234"; ///< no blanks
    bool disabled = false;
    bool pc = false;
    bool bridge = false;
    bool j1 = false;
    QByteArray version = "1.4"; ///< three characters
    bool lineFeeds = false;     ///< lines of the answer end with CR LF, else with CR
};

/// What is wrong with the answers of the interface.
enum class ReplyFault {
    None,
    Silence,    ///< never answers
    Late,       ///< answers after lateMilliseconds
    Third,      ///< answers only each third query
    Empty,      ///< the second line is empty
    NoThird,    ///< the third line is missing
    Garbage,    ///< random bytes instead of an answer
    NoChannels, ///< the second line lacks the channels
};

inline constexpr int lateMilliseconds = 1200;

QByteArray faultName(ReplyFault fault);
/// @param name  "none", "silence", "late", ... @return nothing for any other name
std::optional<ReplyFault> faultFromName(QByteArrayView name);

/// @param digits  1 to 9 decimal digits; anything else returns nothing
std::optional<quint32> codeFromText(QByteArrayView digits);

/// The 16 characters of a record, CR and LF.
QByteArray recordBytes(const EventRecord &record);

/// The answer to a query as the content faults leave it; faults of time (Silence, Late, Third) change nothing in it,
/// and Garbage has no answer: see garbage().
QByteArray replyBytes(const InterfaceSetting &setting, ReplyFault fault);

/// @p length random bytes of 1 to 127 without LF, so that they neither end a record nor look like a return of power.
QByteArray garbage(int length, QRandomGenerator &random);

} // namespace simulator
