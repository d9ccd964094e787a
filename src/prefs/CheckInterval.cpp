#include "prefs/CheckInterval.h"

#include "startup/Numbers.h"
#include "startup/PlainText.h"

QString acceptedMinutes(const QString &typed)
{
    const QString digits = SoloCifre(typed);
    return leadingNumber(digits) > LongestCheckInterval ? QString::number(LongestCheckInterval) : digits;
}

std::optional<int> checkInterval(bool automatic, const QString &typed)
{
    if (!automatic)
        return 0;
    const int minutes = toSixteenBits(leadingNumber(typed));
    if (minutes < 1 || minutes > LongestCheckInterval)
        return std::nullopt;
    return minutes;
}
