#pragma once

#include "simulator/Records.h"

#include <QString>

#include <optional>
#include <variant>

namespace simulator {

struct SendRecord {
    EventRecord record;
};
struct SendBytes {
    QByteArray bytes;
};
struct SendBurst {
    int records = 0;
};
struct SwitchOff {
};
struct SwitchOn {
};
struct SetFault {
    ReplyFault fault = ReplyFault::None;
};
struct SetProtocol {
    QByteArray name;
};
struct Wait {
    int milliseconds = 0;
};
struct TellStatus {
};
struct Unplug {
};
struct Plug {
};
struct Quit {
};

using Command = std::variant<SendRecord, SendBytes, SendBurst, SwitchOff, SwitchOn, SetFault, SetProtocol, Wait,
                             TellStatus, Unplug, Plug, Quit>;

/// Most records of one burst.
inline constexpr int burstLimit = 100'000;

/// Exactly one of the two is there, but for a line that asks for nothing (blank, or a comment).
struct ParsedLine {
    std::optional<Command> command;
    QString fault; ///< what is wrong with the line, beginning with the command
};

/// @param line  one line without its LF; a CR at its end is not part of it
ParsedLine parseLine(const QByteArray &line);

/// Whether the command puts bytes on the wire.
bool sendsBytes(const Command &command);

} // namespace simulator
