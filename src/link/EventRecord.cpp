#include "link/EventRecord.h"

#include "startup/PlainText.h"

std::optional<EventRecord> decodeRecord(QByteArrayView line)
{
    if (line.size() != RecordLength + 1 || line[1] != '/' || line[3] != '-' || line[RecordLength] != '\r')
        return std::nullopt;
    const char enabled = line[13];
    if (enabled != '.' && enabled != 'X')
        return std::nullopt;
    EventRecord record;
    record.type = line[0] == 'R' ? CodeType::Transmitter : CodeType::Keypad;
    record.channel = QString::fromLatin1(line.sliced(2, 1));
    record.code = TogliZeri(QString::fromLatin1(line.sliced(4, 9)));
    record.channelEnabled = enabled == 'X';
    record.interfaceDisabled = line[14] == 'D';
    return record;
}

Event makeEvent(const EventRecord &record, const QDateTime &moment)
{
    const QTime time = moment.time();
    return {record.code,
            moment.date(),
            QTime(time.hour(), time.minute(), time.second()),
            record.type,
            record.channel,
            !record.channelEnabled,
            record.interfaceDisabled};
}
