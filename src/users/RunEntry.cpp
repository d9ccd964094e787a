#include "users/RunEntry.h"

#include "codes/CodeRules.h"
#include "startup/Numbers.h"

#include <algorithm>

namespace {

bool isDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool isWhole(const QString &text)
{
    return std::all_of(text.begin(), text.end(), isDigit);
}

bool isAboveMaximum(const QString &start, const QString &number)
{
    return leadingNumber(start) + leadingNumber(number) > HighestTransmitterCode;
}

} // namespace

QString acceptedDigits(const QString &typed)
{
    QString accepted = typed;
    while (!accepted.isEmpty() && !isDigit(accepted.back()))
        accepted.chop(1);
    return accepted;
}

StartEntry acceptedStart(const QString &typed, const QString &number)
{
    StartEntry entry{acceptedDigits(typed)};
    if (leadingNumber(number) < 1)
        return {{}, StartHint::NumberFirst};
    while (!entry.text.isEmpty() && isAboveMaximum(entry.text, number)) {
        entry.text.chop(1);
        entry.hint = StartHint::AboveMaximum;
    }
    return entry;
}

RunCheck checkRun(const QString &number, const QString &start)
{
    // Characters in the middle of a box are let in while it is typed in.
    if (!isWhole(number))
        return {RunFault::NumberNotAboveZero};
    if (!isWhole(start))
        return {RunFault::StartNotAboveZero};
    if (leadingNumber(number) < 1)
        return {RunFault::NumberNotAboveZero};
    if (leadingNumber(start) < 1)
        return {RunFault::StartNotAboveZero};
    if (isAboveMaximum(start, number))
        return {RunFault::AboveMaximum};
    return {RunFault::None, static_cast<int>(leadingNumber(start)), toSixteenBits(leadingNumber(number))};
}
