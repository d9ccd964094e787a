#include "timeprog/frmFerie.h"

#include "texts/OwnText.h"
#include "timeprog/HolidayRules.h"
#include "timeprog/StripPicture.h"

frmFerie::frmFerie(const Texts &texts, Messages &messages, ArchiveStore &archives, const Clock &clock, QWidget *parent)
    : GridEditor(form, holidaySource(), texts, messages, archives, parent),
      m_texts(texts),
      m_clock(clock),
      m_picture(new StripPicture(QStringLiteral("HolidayPicture")))
{
    setPicture(m_picture);
    m_picture->setAccessibleName(texts[OwnText::HolidayPicture]);
    connect(m_picture, &StripPicture::clicked, this, [this](qsizetype strip, int place) {
        if (const std::optional<qsizetype> row =
                holidayAt(holidaysOf(rows()), markedRow(), m_clock.date(), strip, place))
            markRow(*row);
    });
}

void frmFerie::setCaptions()
{
    GridEditor::setCaptions();
    m_picture->setAccessibleName(m_texts[OwnText::HolidayPicture]);
    showMoment();
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

void frmFerie::showPicture()
{
    m_picture->show(holidayStrips(holidaysOf(rows()), markedRow(), m_clock.date(), m_texts));
}
