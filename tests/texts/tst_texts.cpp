#include "support/Fixtures.h"
#include "texts/DateTimeText.h"
#include "texts/NameKey.h"
#include "texts/OwnTextTable.h"

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

    void dates_data()
    {
        const Rows<QString, QString> row("first", "last"); // a range's, as their keys
        row("05/03/2004", u"20040305"_s, u"20040305"_s);
        row("29/02/2004", u"20040229"_s, u"20040229"_s);
        row("29/02/1900", u"19000301"_s, u"19000228"_s);
        row("31/02/2000", u"20000301"_s, u"20000229"_s);
        row("31/04/2004", u"20040501"_s, u"20040430"_s);
        row("31/12/0099", u"00991231"_s, u"00991231"_s);
        row("32/12/2004", {}, {});
        row("5/3/2004", {}, {});
        row("", {}, {});
    }
    void dates()
    {
        QFETCH(QString, first);
        QFETCH(QString, last);
        const QString typed = QString::fromLatin1(QTest::currentDataTag()), key = DataOrdinabile(typed);
        QCOMPARE(DataOrdinabile(rangeDay(typed, End::First)), first);
        QCOMPARE(rangeDayOfKey(key, End::Last), rangeDay(typed, End::Last));
        const QDate day = rangeDay(typed, End::Last);
        QCOMPARE(DataOrdinabile(day), last);
        QCOMPARE(dayOfFile(DataFile(day)), day);
        if (!last.isEmpty() && first == last)
            QCOMPARE(DataBarre(day), typed);
    }
};

QTEST_GUILESS_MAIN(TestTexts)
#include "tst_texts.moc"
