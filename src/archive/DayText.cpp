#include "archive/DayText.h"

#include "texts/DateTimeText.h"

namespace tool {

QString dayText(const QString &typed, QDate today)
{
    if (typed == QStringLiteral("today"))
        return DataBarre(today);
    if (typed == QStringLiteral("yesterday"))
        return DataBarre(today.addDays(-1));
    QString text = typed;
    if (const QStringList parts = typed.split(QLatin1Char('-')); parts.size() == 3 && parts[0].size() == 4)
        text = QStringList{parts[2], parts[1], parts[0]}.join(QLatin1Char('/'));
    return DataValida(text) ? text : QString();
}

QString timeText(const QString &typed)
{
    if (OraBreveValida(typed))
        return typed + QStringLiteral(":00");
    return OraValida(typed) ? typed : QString();
}

} // namespace tool
