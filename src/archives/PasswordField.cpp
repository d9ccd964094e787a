#include "archives/PasswordField.h"

#include "platform/Windows1252.h"

namespace {

constexpr int shift = 108;
constexpr int leadingFillers = 11;
constexpr int trailingFillers = 15;

QString fillers(int count, QRandomGenerator &random)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text.append(QChar(static_cast<char16_t>(random.bounded(95) + 32 + shift)));
    return text;
}

} // namespace

QString scramble(const QString &password, QRandomGenerator &random)
{
    const int key = random.bounded(10) + 1;
    QString field = fillers(leadingFillers, random) + QChar(static_cast<char16_t>(key + shift));
    for (const char byte : Windows1252::encode(password.leftJustified(PasswordLength, QLatin1Char(' '), true)))
        field.append(QChar(static_cast<char16_t>(static_cast<unsigned char>(byte) + key + shift)));
    return field + fillers(trailingFillers, random);
}

std::optional<QString> unscramble(const QString &field)
{
    if (field.isEmpty())
        return QString(PasswordLength, QLatin1Char(' '));
    if (field.size() < leadingFillers + 1 + PasswordLength || field[leadingFillers].unicode() < shift)
        return std::nullopt;
    const int key = field[leadingFillers].unicode();
    QByteArray bytes;
    for (const QChar character : field.mid(leadingFillers + 1, PasswordLength)) {
        const int code = character.unicode() - key;
        if (code < 0 || code > 255)
            return std::nullopt;
        bytes.append(static_cast<char>(code));
    }
    return Windows1252::decode(bytes);
}

QString trimBlanks(const QString &text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text[first] == QLatin1Char(' '))
        ++first;
    while (last > first && text[last - 1] == QLatin1Char(' '))
        --last;
    return text.sliced(first, last - first);
}
