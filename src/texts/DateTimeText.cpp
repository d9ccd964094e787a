#include "texts/DateTimeText.h"

#include <algorithm>
#include <array>

namespace {

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

/// The number that @p count characters of a text make; -1 when they are not all digits.
int number(QStringView text, qsizetype first, qsizetype count)
{
    int value = 0;
    for (const QChar character : text.mid(first, count)) {
        if (!isDigit(character))
            return -1;
        value = 10 * value + character.unicode() - u'0';
    }
    return value;
}

/// Three numbers of a text "aa?bb?cccc" or "aa?bb?cc" that has the given separator; -1 for what is no number.
std::array<int, 3> numbers(QStringView text, qsizetype size, char16_t separator)
{
    if (text.size() != size || text[2] != separator || text[5] != separator)
        return {-1, -1, -1};
    return {number(text, 0, 2), number(text, 3, 2), number(text, 6, size - 6)};
}

/// Writes a number into a text, with zeros in front.
void put(QString &text, qsizetype first, int digits, int value)
{
    for (qsizetype at = first + digits - 1; at >= first; --at, value /= 10)
        text[at] = QChar(u'0' + value % 10);
}

QString dateText(QDate day, char16_t separator)
{
    if (!day.isValid())
        return {};
    QString text(10, QChar(separator));
    put(text, 0, 2, day.day());
    put(text, 3, 2, day.month());
    put(text, 6, 4, day.year());
    return text;
}

QDate nearestDay(int year, int month, int day, End end)
{
    const QDate first(year, month, 1);
    if (!first.isValid() || day < 1 || day > 31)
        return {};
    if (day <= first.daysInMonth())
        return first.addDays(day - 1);
    return end == End::First ? first.addMonths(1) : first.addDays(first.daysInMonth() - 1);
}

} // namespace

QString DataFile(QDate day)
{
    return dateText(day, u'-');
}

QString DataBarre(QDate day)
{
    return dateText(day, u'/');
}

QString DataOrdinabile(QDate day)
{
    return DataOrdinabile(DataFile(day));
}

QString DataOrdinabile(const QString &date)
{
    return date.right(4) + date.mid(3, 2) + date.left(2);
}

QString OraTesto(QTime time)
{
    if (!time.isValid())
        return {};
    QString text(8, QLatin1Char(':'));
    put(text, 0, 2, time.hour());
    put(text, 3, 2, time.minute());
    put(text, 6, 2, time.second());
    return text;
}

QString dayAndTime(const QDateTime &moment)
{
    return DataBarre(moment.date()) + QLatin1Char(' ') + OraTesto(moment.time());
}

QDate dayOfFile(QStringView text)
{
    const auto [day, month, year] = numbers(text, 10, u'-');
    return year > 0 && QDate::isValid(year, month, day) ? QDate(year, month, day) : QDate();
}

QTime timeOf(QStringView text)
{
    const auto [hour, minute, second] = numbers(text, 8, u':');
    return QTime::isValid(hour, minute, second) ? QTime(hour, minute, second) : QTime();
}

bool DataValida(const QString &date)
{
    const auto [day, month, year] = numbers(date, 10, u'/');
    return day >= 1 && day <= 31 && month >= 1 && month <= 12 && year >= 1;
}

bool OraValida(const QString &time)
{
    return timeOf(time).isValid();
}

bool OraBreveValida(const QString &time)
{
    return time.size() == 5 && OraValida(time + QStringLiteral(":00"));
}

QDate rangeDay(const QString &date, End end)
{
    const auto [day, month, year] = numbers(date, 10, u'/');
    return year > 0 ? nearestDay(year, month, day, end) : QDate();
}

QDate rangeDayOfKey(const QString &key, End end)
{
    const int year = key.size() == 8 ? number(key, 0, 4) : -1;
    return year > 0 ? nearestDay(year, number(key, 4, 2), number(key, 6, 2), end) : QDate();
}

QTime shortTimeOf(const QString &text)
{
    const qsizetype colon = text.indexOf(QLatin1Char(':'));
    const int hour = number(text, 0, colon);
    const int minute = number(text, colon + 1, 2);
    return colon >= 0 && QTime::isValid(hour, minute, 0) ? QTime(hour, minute) : QTime();
}

QString DataEstesa(const QDate &today, const Texts &texts)
{
    const auto nth = [](Text first, int offset) { return static_cast<Text>(static_cast<int>(first) + offset); };
    return texts[nth(Text::Domenica, today.dayOfWeek() % 7)] + QStringLiteral(", ") +
           today.toString(QStringLiteral("dd ")) + texts[nth(Text::Gennaio, today.month() - 1)] +
           today.toString(QStringLiteral(" yyyy"));
}
