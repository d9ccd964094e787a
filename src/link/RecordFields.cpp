#include "link/RecordFields.h"

RecordFields recordFields(const EventRecord &record, const Texts &texts)
{
    const QString state = texts[record.channelEnabled ? Text::Abilitato : Text::Disabilitato].toUpper();
    return {record.code, record.channel + QStringLiteral(" - ") + state, typeText(record.type)};
}
