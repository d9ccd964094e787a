#include "startup/Numbers.h"

#include <QByteArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

} // namespace

double leadingNumber(QStringView text)
{
    QByteArray bytes = text.toLatin1();
    bytes = bytes.sliced(std::find_if(bytes.cbegin(), bytes.cend(), [](char c) { return c != ' '; }) - bytes.cbegin());
    if (bytes.startsWith('+') && !bytes.startsWith("+-"))
        bytes.remove(0, 1);
    // Words such as "nan" and "infinity" are numbers to from_chars.
    const qsizetype first = bytes.startsWith('-') ? 1 : 0;
    if (bytes.size() <= first || !(isDigit(bytes[first]) || bytes[first] == '.'))
        return 0;
    double number = 0;
    const auto [end, error] = std::from_chars(bytes.cbegin(), bytes.cend(), number);
    if (error == std::errc::result_out_of_range)
        return first == 1 ? std::numeric_limits<double>::lowest() : std::numeric_limits<double>::max();
    return error == std::errc() ? number : 0;
}

int toSixteenBits(double number)
{
    constexpr double lowest = std::numeric_limits<qint16>::min();
    constexpr double highest = std::numeric_limits<qint16>::max();
    return static_cast<int>(std::nearbyint(std::clamp(number, lowest, highest)));
}

std::optional<int> wholeNumber(QStringView text)
{
    const QByteArray bytes = text.trimmed().toLatin1();
    const qsizetype first = bytes.startsWith('-') || bytes.startsWith('+') ? 1 : 0;
    if (bytes.size() == first || !std::all_of(bytes.cbegin() + first, bytes.cend(), isDigit))
        return std::nullopt;
    return toSixteenBits(leadingNumber(text.trimmed()));
}
