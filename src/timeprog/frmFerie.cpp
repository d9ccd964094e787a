#include "timeprog/frmFerie.h"

#include "timeprog/HolidayRules.h"

frmFerie::frmFerie(const Texts &texts, Messages &messages, ArchiveStore &archives, QWidget *parent)
    : GridEditor(form(texts), holidaySource(), texts, messages, archives, parent)
{
}

GridEditor::Form frmFerie::form(const Texts &texts)
{
    const End first = {QStringLiteral("DalGiorno"), QStringLiteral("txtDalGiorno"), QStringLiteral("lblDalGiorno"),
                       texts[Text::DalGiorno] + QLatin1Char(':')};
    const End last = {QStringLiteral("AlGiorno"), QStringLiteral("txtAlGiorno"), QStringLiteral("lblAlGiorno"),
                      texts[Text::AlGiorno] + QLatin1Char(':')};
    return {.window = QStringLiteral("frmFerie"),
            .grid = QStringLiteral("dbgrdFerie"),
            .data = QStringLiteral("DataFerie"),
            .title = Text::MnuProgrammazioneFerie,
            .first = first,
            .last = last,
            .columns = {{first.field, first.caption}, {last.field, last.caption}},
            .widest = QStringLiteral("00/00/0000"),
            .firstEndColumn = 0,
            .askDelete = Text::EliminareIntervalloFerie,
            .isThere = Text::IntervalloFerieGiaPresente};
}

std::optional<GridEditor::Refusal> frmFerie::check(Entry &entry) const
{
    switch (checkHoliday(entry.first, entry.last)) {
    case HolidayFault::None:
        return {};
    case HolidayFault::DalGiornoFormat:
        return Refusal{Text::FormatoDataNonCorretto, Box::First};
    case HolidayFault::AlGiornoFormat:
        return Refusal{Text::FormatoDataNonCorretto, Box::Last};
    case HolidayFault::Order:
        return Refusal{Text::DataDiPartenzaDopoArrivo, Box::Last};
    case HolidayFault::Incomplete:
        break;
    }
    return Refusal{};
}

RecordSet::Values frmFerie::modified(const Entry &entry) const
{
    return holiday(entry.first, entry.last);
}
