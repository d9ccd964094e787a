#include "events/DailyEventCount.h"

#include "startup/Numbers.h"
#include "startup/PlainText.h"

QString acceptedEventCount(const QString &typed)
{
    const QString digits = SoloCifre(typed);
    return leadingNumber(digits) > HighestDailyEventCount ? QString::number(HighestDailyEventCount) : digits;
}

std::optional<int> dailyEventCount(const QString &text)
{
    const double number = leadingNumber(acceptedEventCount(text));
    if (number < 1)
        return {};
    return static_cast<int>(number);
}
