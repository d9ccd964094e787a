#include "timeprog/HolidayRules.h"

#include "archives/Tables.h"
#include "texts/DateTimeText.h"

CopyEditor::Source holidaySource()
{
    return {QStringView(ArchiveName::Holidays).toString(), QStringLiteral("Archivi/Ferie.$$$"),
            QStringLiteral("SELECT * FROM Giorni ORDER BY DalGiorno")};
}

HolidayFault checkHoliday(const QString &DalGiorno, QString &AlGiorno)
{
    if (DalGiorno.isEmpty())
        return HolidayFault::Incomplete;
    if (!DataValida(DalGiorno))
        return HolidayFault::DalGiornoFormat;
    if (AlGiorno.isEmpty())
        AlGiorno = DalGiorno;
    if (!DataValida(AlGiorno))
        return HolidayFault::AlGiornoFormat;
    return DataOrdinabile(DalGiorno) <= DataOrdinabile(AlGiorno) ? HolidayFault::None : HolidayFault::Order;
}

RecordSet::Values holiday(const QString &DalGiorno, const QString &AlGiorno)
{
    return {{QStringLiteral("DalGiorno"), DalGiorno},
            {QStringLiteral("AlGiorno"), AlGiorno},
            {QStringLiteral("DalGiornoOrd"), DataOrdinabile(DalGiorno)},
            {QStringLiteral("AlGiornoOrd"), DataOrdinabile(AlGiorno)}};
}

QList<Holiday> holidaysOf(const RecordSet &set)
{
    const int first = set.column(QStringLiteral("DalGiornoOrd"));
    const int last = set.column(QStringLiteral("AlGiornoOrd"));
    QList<Holiday> holidays;
    for (qsizetype row = 0; row < set.recordCount(); ++row)
        holidays.append(
            {rangeDayOfKey(set.value(row, first), End::First), rangeDayOfKey(set.value(row, last), End::Last)});
    return holidays;
}
