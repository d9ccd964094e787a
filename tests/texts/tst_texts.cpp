#include "texts/OwnTextTable.h"
#include "texts/Texts.h"

#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

class TestTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyLanguageSaysTheSame();
    void printedHeadersFitTheirColumns_data();
    void printedHeadersFitTheirColumns();
    void accessKeysAreUnique_data();
    void accessKeysAreUnique();
    void sentences();
};

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

/// No text is missing, and what is filled in or appended is the same in each language.
void TestTexts::everyLanguageSaysTheSame()
{
    const auto check = [](const TextRow &row) {
        const QString italian = QString::fromUtf8(row.italian);
        for (const char *other : {row.english, row.french, row.german}) {
            const QString text = QString::fromUtf8(other);
            QVERIFY2(!text.trimmed().isEmpty(), row.italian);
            QVERIFY2(text.isValidUtf16() && !text.contains(QChar::ReplacementCharacter), other);
            for (const char *part : {"%1", "%2", "\r\n"})
                QVERIFY2(text.count(QLatin1String(part)) == italian.count(QLatin1String(part)), other);
            QVERIFY2(text.count(QLatin1Char('&')) <= 1, other);
        }
    };
    for (const TextRow &row : textTable)
        check(row);
    for (const TextRow &row : ownTextTable)
        check(row);
    for (Text appended : {Text::Giorno, Text::TrasferimentoEvento, Text::ElaborazioneEvento, Text::Versione,
                          Text::EliminareUtente, Text::SuperatoNumeroMassimoDiCodici}) {
        for (const QString &text : languages(appended))
            QVERIFY2(text.endsWith(QLatin1Char(' ')), qPrintable(text));
    }
}

void TestTexts::printedHeadersFitTheirColumns_data()
{
    QTest::addColumn<Text>("text");
    QTest::addColumn<int>("width");
    QTest::newRow("channel mark") << Text::ChDis << 5;
    QTest::newRow("interface mark") << Text::KorDis << 5;
    QTest::newRow("type") << Text::Tipo << 5;
    QTest::newRow("code") << Text::CodiceColonna << 10;
    QTest::newRow("date") << Text::Data << 10;
    QTest::newRow("time") << Text::Ora << 8;
    QTest::newRow("surname") << Text::CognomeUtente << 15;
    QTest::newRow("first name") << Text::NomeUtente << 15;
    QTest::newRow("notes") << Text::InformazioniAggiuntive << 15;
    QTest::newRow("truncated code") << Text::CodiceTroncatoColonna << 9;
}

void TestTexts::printedHeadersFitTheirColumns()
{
    QFETCH(Text, text);
    QFETCH(int, width);
    for (const QString &caption : languages(text)) {
        const qsizetype blank = caption.indexOf(QLatin1Char(' '));
        for (const QString &half : {caption.left(blank), blank < 0 ? QString() : caption.mid(blank + 1)})
            QVERIFY2(half.size() <= width, qPrintable(half));
    }
}

void TestTexts::accessKeysAreUnique_data()
{
    QTest::addColumn<QList<Text>>("captions");
    QTest::newRow("menu bar") << QList{Text::MnuFile, Text::MnuAnagrafica, Text::MnuConsultazioni, Text::MnuStrumenti,
                                       Text::MnuAiuto};
    QTest::newRow("file") << QList{Text::MnuImpostaStampante, Text::MnuEsci};
    QTest::newRow("register") << QList{Text::MnuListaUtenti, Text::MnuProgrammazioneSettimanale,
                                       Text::MnuProgrammazioneFerie};
    QTest::newRow("events") << QList{Text::MnuRicercaEventi, Text::MnuUltimiEventi, Text::MnuStampaUltimiEventi,
                                     Text::MnuNumeroEventiOdierni};
    QTest::newRow("search") << QList{Text::CmdRicerca, Text::CmdStampa, Text::CmdEsportaInExcel, Text::CmdChiudi};
    QTest::newRow("port") << QList{Text::CmdOk, Text::CmdAnnulla, Text::CmdProvaConnessione};
    QTest::newRow("configuration") << QList{Text::CmdRileggi, Text::CmdOk};
}

void TestTexts::accessKeysAreUnique()
{
    QFETCH(QList<Text>, captions);
    for (int language = 0; language < 4; ++language) {
        QSet<QChar> keys;
        for (Text caption : captions) {
            const QString text = languages(caption)[language];
            const qsizetype at = text.indexOf(QLatin1Char('&'));
            if (at < 0)
                continue;
            QVERIFY2(!keys.contains(text[at + 1].toUpper()), qPrintable(text));
            keys.insert(text[at + 1].toUpper());
        }
    }
}

void TestTexts::sentences()
{
    Texts texts;
    QCOMPARE(texts[Text::Abilitato], u"Abilitato"_s);
    texts.fill(4);
    texts.fill(0);
    texts.fill(5);
    QCOMPARE(texts[Text::Abilitato], u"freigegeben"_s);
    texts.fill(2);
    // A name that looks like a place to fill in stays as it is.
    const Message message{OwnText::DayArchiveSetAside, {u"%2"_s, u"b"_s}, {}};
    QVERIFY(texts.sentence(message).contains(u"'%2' was damaged"_s));
    const Message fault{OwnText::SettingNotSaved, {u"COM"_s}, Fault{FaultCode::DiskFull, {}}};
    QCOMPARE(texts.sentence(fault), u"The setting 'COM' cannot be saved: disk full"_s);
}

QTEST_GUILESS_MAIN(TestTexts)
#include "tst_texts.moc"
