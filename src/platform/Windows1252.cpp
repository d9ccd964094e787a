#include "platform/Windows1252.h"

#include <algorithm>
#include <array>

namespace {

/// Characters of the bytes 0x80 to 0x9F; all other bytes are those of Latin-1.
constexpr std::array<char16_t, 32> upper = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                            0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// Byte of a character, -1 when it has none.
int byteOf(QChar character)
{
    const char16_t code = character.unicode();
    if (code < 0x80 || (code >= 0xA0 && code <= 0xFF))
        return code;
    const auto found = std::find(upper.begin(), upper.end(), code);
    return found == upper.end() ? -1 : 0x80 + static_cast<int>(found - upper.begin());
}

} // namespace

QString Windows1252::decode(const QByteArray &bytes)
{
    QString text = QString::fromLatin1(bytes);
    for (QChar &character : text) {
        if (character.unicode() >= 0x80 && character.unicode() <= 0x9F)
            character = QChar(upper[character.unicode() - 0x80U]);
    }
    return text;
}

QByteArray Windows1252::encode(const QString &text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar character : text) {
        const int byte = byteOf(character);
        bytes.append(byte < 0 ? '?' : static_cast<char>(byte));
    }
    return bytes;
}

bool Windows1252::holds(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) { return byteOf(character) >= 0; });
}
