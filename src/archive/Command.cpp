#include "archive/Command.h"

#include "texts/DateTimeText.h"
#include "texts/OwnText.h"

namespace tool {

Message Command::words(const Fault &fault) const
{
    return {OwnText::ToolOfFile, {fault.subject}, fault};
}

QString listOfDays(const QList<QDate> &days)
{
    QStringList names;
    for (const QDate day : days)
        names.append(DataBarre(day));
    return names.join(QStringLiteral(", "));
}

} // namespace tool
