#pragma once

#include "codes/CodeRules.h"

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

/// An event as a row of the day's archive, all fields as text.
struct Event {
    QString Codice;  ///< without leading zeros
    QString Data;    ///< "dd-mm-yyyy"
    QString Ora;     ///< "hh:mm:ss"
    QString Tipo;    ///< "TX" or "DKS"
    QString Canale;  ///< "A" to "D"
    QString AbCh;    ///< "X" when the channel was not enabled, else ""
    QString KorDis;  ///< "X" when the interface was disabled, else ""
    QString DataOrd; ///< "yyyymmdd"
    bool operator==(const Event &) const = default;
};

/// Length of a record without its line end.
inline constexpr qsizetype RecordLength = 16;

/// Reads a line of the interface.
/// @param line  all characters before the LF, the CR included
/// @return nothing when the line has not the form of a record
std::optional<EventRecord> decodeRecord(QByteArrayView line);

/// The event of a record that was received at @p moment, local time.
Event makeEvent(const EventRecord &record, const QDateTime &moment);
