#include "timeprog/TimeState.h"

namespace {

bool isInBand(const QList<Band> &bands, const QDateTime &moment)
{
    const QTime now(moment.time().hour(), moment.time().minute());
    const auto weekday = static_cast<size_t>(moment.date().dayOfWeek() - 1);
    for (const Band &band : bands) {
        // Bands come in the order of their start: none that follows can hold this minute.
        if (now < band.Da)
            break;
        if (now <= band.A && band.marks.at(weekday))
            return true;
    }
    return false;
}

bool isHoliday(const QList<Holiday> &holidays, const QDateTime &moment)
{
    const QDate today = moment.date();
    for (const Holiday &holiday : holidays) {
        if (today < holiday.DalGiorno)
            break;
        if (today <= holiday.AlGiorno)
            return true;
    }
    return false;
}

} // namespace

TimeState evaluate(const QList<Band> &bands, const QList<Holiday> &holidays, const QDateTime &moment)
{
    if (!isInBand(bands, moment))
        return TimeState::OutsideBands;
    return isHoliday(holidays, moment) ? TimeState::OnHoliday : TimeState::InBand;
}
