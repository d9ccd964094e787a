#include "journal/JournalReport.h"

#include "journal/JournalWords.h"
#include "texts/DateTimeText.h"
#include "texts/OwnText.h"

namespace {

constexpr int dayCharacters = 10;
constexpr int timeCharacters = 8;
constexpr int wordsCharacters = 63;

TableReport::Layout layoutOf(const Texts &texts, const QString &note)
{
    return {{{dayCharacters, Fit::Left, texts[Text::Data]},
             {timeCharacters, Fit::Left, texts[Text::Ora]},
             {wordsCharacters, Fit::Left, texts[OwnText::JournalWhat], 1, true}},
            TogliAnd(texts[OwnText::MnuJournal]),
            texts[Text::Pagina],
            note};
}

} // namespace

QStringList JournalReport::fields(const JournalRow &row, const Texts &texts)
{
    const QDateTime local = localTime(row.at);
    return {DataBarre(local.date()), OraTesto(local.time()), rowWords(row, texts)};
}

JournalReport::JournalReport(const Texts &texts, Rows rows, const QString &note)
    : RuledReport(layoutOf(texts, note), std::move(rows))
{
}
