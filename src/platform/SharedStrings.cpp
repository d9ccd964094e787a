#include "platform/SharedStrings.h"

#include <QtEndian>

namespace {

constexpr quint16 SharedStringTable = 0x00fc;
constexpr quint16 Continue = 0x003c;

} // namespace

SharedStrings::SharedStrings() : m_last(SharedStringTable)
{
    // The two counts, known only at the end.
    m_last.u32(0).u32(0);
}

quint32 SharedStrings::add(const QString &text)
{
    ++m_uses;
    const auto known = m_numbers.constFind(text);
    if (known != m_numbers.constEnd())
        return *known;
    const auto number = static_cast<quint32>(m_numbers.size());
    m_numbers.insert(text, number);
    append(text);
    return number;
}

void SharedStrings::continueRecord()
{
    m_full += m_last.bytes();
    m_last = BiffRecord(Continue);
}

void SharedStrings::append(QStringView text)
{
    const bool wide = BiffRecord::isWide(text);
    const qsizetype width = wide ? 2 : 1;
    // Length, width and the first character are never parted: readers look for all of them in one record.
    if (m_last.room() < 3 + width)
        continueRecord();
    m_last.u16(static_cast<unsigned>(text.size())).u8(wide ? 1 : 0);
    for (;;) {
        const qsizetype count = qMin(text.size(), m_last.room() / width);
        m_last.characters(text.first(count), wide);
        text = text.sliced(count);
        if (text.isEmpty())
            return;
        continueRecord();
        // What goes on from the record before says again how wide its characters are.
        m_last.u8(wide ? 1 : 0);
    }
}

QByteArray SharedStrings::bytes() const
{
    QByteArray records = m_full + m_last.bytes();
    char *counts = records.data() + BiffRecord::HeaderSize;
    qToLittleEndian(m_uses, counts);
    qToLittleEndian(static_cast<quint32>(m_numbers.size()), counts + 4);
    return records;
}
