#include "link/EventRecord.h"

#include "startup/DateTimeText.h"
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
    const auto mark = [](bool set) { return set ? QStringLiteral("X") : QString(); };
    Event event;
    event.Codice = record.code;
    event.Data = moment.toString(QStringLiteral("dd-MM-yyyy"));
    event.Ora = moment.toString(QStringLiteral("HH:mm:ss"));
    event.Tipo = typeText(record.type);
    event.Canale = record.channel;
    event.AbCh = mark(!record.channelEnabled);
    event.KorDis = mark(record.interfaceDisabled);
    event.DataOrd = DataOrdinabile(event.Data);
    return event;
}
