#pragma once

#include "codes/Event.h"

#include <QByteArrayView>
#include <QDateTime>
#include <QString>

#include <optional>

/// What one record of the interface says: a code was read on a channel.
struct EventRecord {
    QString code; ///< without leading zeros; "" for nine zeros
    CodeType type = CodeType::Transmitter;
    QString channel;             ///< one character, "A" to "D" from an interface in order
    bool channelEnabled = false; ///< the channel was enabled for the code
    bool interfaceDisabled = false;
};

/// Length of a record without its line end.
inline constexpr qsizetype RecordLength = 16;

/// Reads a line of the interface.
/// @param line  all characters before the LF, the CR included
/// @return nothing when the line has not the form of a record
std::optional<EventRecord> decodeRecord(QByteArrayView line);

/// The event of a record that was received at @p moment, local time.
Event makeEvent(const EventRecord &record, const QDateTime &moment);
