#include "timeprog/frmSettimana.h"

#include "texts/OwnText.h"
#include "timeprog/BandRules.h"
#include "timeprog/StripPicture.h"
#include "widgets/SpokenMark.h"

namespace {

constexpr int abbreviation = 3;

QString capitalised(const QString &text)
{
    return text.left(1).toUpper() + text.mid(1);
}

QList<RecordSetModel::Column> columns(const Texts &texts)
{
    static constexpr std::array days = {Text::Lunedi,  Text::Martedi, Text::Mercoledi, Text::Giovedi,
                                        Text::Venerdi, Text::Sabato,  Text::Domenica};
    QList<RecordSetModel::Column> columns;
    for (int day = 0; day < Band::Days; ++day) {
        const QString name = texts[days.at(static_cast<size_t>(day))];
        columns.append({dayFields()[day], name.left(abbreviation), name, spokenMark(texts), Qt::AlignCenter});
    }
    for (const auto &[field, caption] : {std::pair("Da", Text::FasciaDa), std::pair("A", Text::FasciaA)})
        columns.append({QString::fromLatin1(field), texts[caption], {}, {}, Qt::AlignCenter});
    return columns;
}

} // namespace

frmSettimana::frmSettimana(const Texts &texts, Messages &messages, ArchiveStore &archives, const Clock &clock,
                           QWidget *parent)
    : GridEditor(form, bandSource(), texts, messages, archives, parent),
      m_texts(texts),
      m_clock(clock),
      m_picture(new StripPicture(QStringLiteral("WeekPicture")))
{
    setPicture(m_picture);
    m_picture->setAccessibleName(texts[OwnText::WeekPicture]);
    connect(m_picture, &StripPicture::clicked, this, [this](qsizetype strip, int place) {
        if (const std::optional<qsizetype> row = bandAt(bandsOf(rows()), markedRow(), strip, place))
            markRow(*row);
    });
}

void frmSettimana::setCaptions()
{
    GridEditor::setCaptions();
    m_picture->setAccessibleName(m_texts[OwnText::WeekPicture]);
    showMoment();
}

GridEditor::Form frmSettimana::form(const Texts &texts)
{
    return {
        .window = QStringLiteral("frmSettimana"),
        .grid = QStringLiteral("dbgrdSettimana"),
        .data = QStringLiteral("DataSettimana"),
        .title = Text::MnuProgrammazioneSettimanale,
        .first = {QStringLiteral("Da"), QStringLiteral("txtOraIn"), QStringLiteral("lblOraIn"), texts[Text::OraInizio]},
        .last = {QStringLiteral("A"), QStringLiteral("txtOraFine"), QStringLiteral("lblOraFine"),
                 capitalised(texts[Text::OraFine])},
        .columns = columns(texts),
        .widest = QStringLiteral("00:00"),
        .firstEndColumn = Band::Days,
        .askDelete = Text::EliminareFasciaOraria,
        .isThere = Text::FasciaOrariaGiaPresente};
}

std::optional<GridEditor::Refusal> frmSettimana::check(Entry &entry) const
{
    switch (checkBand(entry.first, entry.last)) {
    case BandFault::None:
        return {};
    case BandFault::DaFormat:
        return Refusal{Text::FormatoOraBreveNonCorretto, Box::First};
    case BandFault::AFormat:
        return Refusal{Text::FormatoOraBreveNonCorretto, Box::Last};
    case BandFault::Order:
        return Refusal{Text::OraDiPartenzaDopoArrivo, Box::Last};
    case BandFault::Incomplete:
        break;
    }
    return Refusal{};
}

RecordSet::Values frmSettimana::modified(const Entry &entry) const
{
    return bandTimes(entry.first, entry.last);
}

RecordSet::Values frmSettimana::added(const Entry &entry) const
{
    return newBand(entry.first, entry.last);
}

void frmSettimana::cellPressed(int column)
{
    if (column < Band::Days)
        storeInPlace(toggledDay(column, currentValue(column)));
}

void frmSettimana::showPicture()
{
    m_picture->show(weekStrips(bandsOf(rows()), markedRow(), m_clock.now(), m_texts));
}
