#include "startup/DateTimeText.h"

#include "startup/Numbers.h"

#include <algorithm>
#include <initializer_list>

namespace {

int number(QStringView text)
{
    return static_cast<int>(std::clamp(leadingNumber(text), -1e6, 1e6));
}

QString twoDigits(int value)
{
    return (QStringLiteral("00") + QString::number(value)).right(2);
}

bool areDigits(const QString &text, std::initializer_list<qsizetype> positions)
{
    return std::all_of(positions.begin(), positions.end(), [&text](qsizetype position) {
        return text[position] >= QLatin1Char('0') && text[position] <= QLatin1Char('9');
    });
}

bool isWithin(int value, int lowest, int highest)
{
    return value >= lowest && value <= highest;
}

int daysBeforeNextMonth(int month, int year)
{
    if (month == 2)
        return AnnoBisestile(year) ? 29 : 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

} // namespace

QString DataFile(const QString &date)
{
    return date.mid(3, 3) + date.left(3) + date.right(4);
}

QString DataBarre(const QString &date)
{
    return DataFile(date).replace(2, 1, QLatin1Char('/')).replace(5, 1, QLatin1Char('/'));
}

QString DataTrattini(const QString &date)
{
    return QString(date).replace(2, 1, QLatin1Char('-')).replace(5, 1, QLatin1Char('-'));
}

QString DataOrdinabile(const QString &date)
{
    return date.right(4) + date.mid(3, 2) + date.left(2);
}

QString GiornoMese(const QString &text)
{
    return text.right(2) + QLatin1Char('/') + text.left(2);
}

bool DataValida(const QString &date)
{
    return date.size() == 10 && date[2] == QLatin1Char('/') && date[5] == QLatin1Char('/') &&
           areDigits(date, {0, 1, 3, 4, 6, 7, 8, 9}) && isWithin(number(date.left(2)), 1, 31) &&
           isWithin(number(date.mid(3, 2)), 1, 12) && number(date.right(4)) >= 1;
}

bool OraValida(const QString &time)
{
    return time.size() == 8 && OraBreveValida(time.left(5)) && time[5] == QLatin1Char(':') && areDigits(time, {6, 7}) &&
           isWithin(number(time.right(2)), 0, 59);
}

bool OraBreveValida(const QString &time)
{
    return time.size() == 5 && time[2] == QLatin1Char(':') && areDigits(time, {0, 1, 3, 4}) &&
           isWithin(number(time.left(2)), 0, 23) && isWithin(number(time.right(2)), 0, 59);
}

int Minuti(const QString &time)
{
    return number(time.left(2)) * 60 + number(time.right(2));
}

bool OraNonDopo(const QString &a, const QString &b)
{
    return Minuti(a) <= Minuti(b);
}

QString GiornoSeguente(const QString &date)
{
    const int day = number(date.left(2));
    const int month = number(date.mid(3, 2));
    const int year = number(date.right(4));
    if (day < daysBeforeNextMonth(month, year))
        return twoDigits(day + 1) + date.mid(2, 8);
    if (month == 12)
        return QStringLiteral("01/01/") + QString::number(year + 1).rightJustified(4, QLatin1Char('0'));
    return QStringLiteral("01/") + twoDigits(month + 1) + date.mid(5, 5);
}

bool AnnoBisestile(int year)
{
    const QString text = QString::number(year);
    const int counted = text.endsWith(QStringLiteral("00")) ? number(text.left(2)) : year;
    return counted % 4 == 0;
}

QString DataEstesa(const QDate &today, const Texts &texts)
{
    const auto nth = [](Text first, int offset) { return static_cast<Text>(static_cast<int>(first) + offset); };
    return texts[nth(Text::Domenica, today.dayOfWeek() % 7)] + QStringLiteral(", ") +
           today.toString(QStringLiteral("dd ")) + texts[nth(Text::Gennaio, today.month() - 1)] +
           today.toString(QStringLiteral(" yyyy"));
}
