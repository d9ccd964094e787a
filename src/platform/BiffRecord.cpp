#include "platform/BiffRecord.h"

#include <algorithm>

BiffRecord &BiffRecord::characters(QStringView text, bool wide)
{
    for (const QChar character : text) {
        if (wide)
            u16(character.unicode());
        else
            u8(character.unicode());
    }
    return *this;
}

BiffRecord &BiffRecord::name(QStringView text)
{
    const bool wide = isWide(text);
    return u8(static_cast<unsigned>(text.size())).u8(wide ? 1 : 0).characters(text, wide);
}

QByteArray BiffRecord::bytes() const
{
    QByteArray record = m_bytes;
    const qsizetype length = record.size() - HeaderSize;
    record[2] = static_cast<char>(length & 0xff);
    record[3] = static_cast<char>(length >> 8);
    return record;
}

bool BiffRecord::isWide(QStringView text)
{
    return std::any_of(text.cbegin(), text.cend(), [](QChar character) { return character.unicode() > 0xff; });
}
