#include "support/Fixtures.h"
#include "texts/NameKey.h"
#include "texts/OwnTextTable.h"

#include <QSet>

namespace {

QStringList languages(Text text)
{
    QStringList all;
    for (int language = 1; language <= 4; ++language) {
        Texts texts;
        texts.fill(language);
        all.append(texts[text]);
    }
    return all;
}

} // namespace

class TestTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// No text is missing, and what is filled in or appended is the same in each language.
    void everyLanguageSaysTheSame()
    {
        const auto check = [](const auto &row) {
            for (const char *other : {row.english, row.french, row.german}) {
                const QString text = QString::fromUtf8(other);
                QVERIFY2(!text.trimmed().isEmpty() && !text.contains(QChar::ReplacementCharacter), row.italian);
                for (const char *part : {"%1", "%2", "\r\n"})
                    QVERIFY2(text.count(QLatin1String(part)) == QByteArray(row.italian).count(part), other);
                QVERIFY2(text.count(u'&') <= 1, other);
            }
        };
        for (const auto &row : textTable)
            check(row);
        for (const auto &row : ownTextTable)
            check(row);
    }

    void accessKeysAreUnique()
    {
        const QList<QList<Text>> together = {
            {Text::MnuFile, Text::MnuAnagrafica, Text::MnuConsultazioni, Text::MnuStrumenti, Text::MnuAiuto},
            {Text::MnuImpostaStampante, Text::MnuEsci},
            {Text::MnuListaUtenti, Text::MnuProgrammazioneSettimanale, Text::MnuProgrammazioneFerie},
            {Text::MnuRicercaEventi, Text::MnuUltimiEventi, Text::MnuStampaUltimiEventi, Text::MnuNumeroEventiOdierni},
            {Text::CmdRicerca, Text::CmdStampa, Text::CmdEsportaInExcel, Text::CmdChiudi},
            {Text::CmdOk, Text::CmdAnnulla, Text::CmdProvaConnessione},
            {Text::CmdRileggi, Text::CmdOk},
            {Text::MnuImpostazionePortaSeriale, Text::MnuLetturaConfigurazioneInterfaccia, Text::MnuDiagnostica,
             Text::MnuImpostazioniDiControlloKor, Text::MnuLingua, Text::MnuAbilitazionePasswordPrincipale,
             Text::MnuAbilitazionePasswordUtenti, Text::MnuAbilitazionePasswordDiagnostica}};
        for (const QList<Text> &captions : together) {
            // In Italian the tools have had the same letters always.
            const int first = captions.contains(Text::MnuLingua) ? 1 : 0;
            QSet<QString> keys;
            for (Text caption : captions) {
                for (int language = first; language < 4; ++language) {
                    const QString text = languages(caption)[language];
                    const QString key = text.section(u'&', 1).left(1).toUpper() + QString::number(language);
                    QVERIFY2(!text.contains(u'&') || !keys.contains(key), qPrintable(text));
                    keys.insert(key);
                }
            }
        }
    }

    /// Case, accent, ligature, sharp s, two accents; an apostrophe stands before letters.
    void sortKeys()
    {
        for (const auto &[before, after] : {std::pair(u"rossi"_s, u"ROSSINI"_s),
                                            {u"Österle"_s, u"Ostermann"_s},
                                            {u"Æbelø"_s, u"Afzal"_s},
                                            {u"Straße"_s, u"Strasser"_s},
                                            {u"\u1EA4n"_s, u"Anna"_s},
                                            {u"D'Angelo"_s, u"Dangelo"_s}})
            QVERIFY2(nameKey(before) < nameKey(after), qPrintable(nameKey(before) + u" / "_s + nameKey(after)));
    }
};

QTEST_GUILESS_MAIN(TestTexts)
#include "tst_texts.moc"
