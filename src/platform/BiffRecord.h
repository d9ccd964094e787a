#pragma once

#include <QByteArray>
#include <QString>

/// One record of a BIFF8 stream: type and length of its data, two bytes each, then the data; all numbers little-endian.
class BiffRecord
{
public:
    static constexpr qsizetype HeaderSize = 4;
    static constexpr qsizetype MostData = 8224; ///< bytes that a record may hold without a continuation

    explicit BiffRecord(quint16 type) { u16(type).u16(0); }

    BiffRecord &u8(unsigned value)
    {
        m_bytes.append(static_cast<char>(value));
        return *this;
    }
    BiffRecord &u16(unsigned value) { return u8(value & 0xff).u8(value >> 8 & 0xff); }
    BiffRecord &u32(quint32 value) { return u16(value & 0xffff).u16(value >> 16); }
    /// The characters of @p text alone, without their count: one byte each, or two when @p wide.
    BiffRecord &characters(QStringView text, bool wide);
    /// Length in one byte, width of the characters, characters: the form of names, at most 255 characters.
    BiffRecord &name(QStringView text);

    qsizetype room() const { return HeaderSize + MostData - m_bytes.size(); }
    /// The whole record, its length set.
    QByteArray bytes() const;

    /// True when @p text has characters that one byte does not hold.
    static bool isWide(QStringView text);

private:
    QByteArray m_bytes;
};
