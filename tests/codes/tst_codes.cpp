#include "codes/CodeRules.h"
#include "startup/DateTimeText.h"
#include "startup/Numbers.h"
#include "startup/PlainText.h"
#include "support/Fixtures.h"

namespace {

/// The name of the row, which is what is tested.
QString tag()
{
    return QString::fromLatin1(QTest::currentDataTag());
}

} // namespace

class TestCodes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void truncated_data()
    {
        const Rows<int, QString> row("protocol", "expected");
        row("16777215", 1, {});
        row("16777216", 1, u"6777216"_s);
        row("100000001", 1, u"00000001"_s);
        row("123456789", 1, u"3456789"_s);
        row("65535", 3, {});
        row("65536", 3, u"5536"_s);
        row("123456", 4, u"23456"_s);
        row("524288", 7, u"24288"_s);
        row("1524287", 8, u"524287"_s);
        row("99999999", 10, {});
        row("100000000", 10, u"00000000"_s);
        row("", 15, u"00000"_s);
        row("1", 15, u"00001"_s);
        row("255", 15, u"000FF"_s);
        row("1234567", 15, u"2D687"_s);
        row("1048576", 15, u"00000"_s);
    }
    void truncated()
    {
        QFETCH(int, protocol);
        QTEST(truncatedCode(tag(), protocol), "expected");
        QVERIFY(hasTruncatedCodes(protocol));
        for (int carriesAll : {0, 2, 5, 6, 9, 11, 12, 13, 14, 16, -1})
            QCOMPARE(truncatedCode(u"251658239"_s, carriesAll), QString());
    }

    void entries_data()
    {
        const Rows<CodeType, EntryFault, QString> row("type", "fault", "code");
        row("00123", CodeType::Transmitter, EntryFault::None, u"123"_s);
        row("000", CodeType::Keypad, EntryFault::NotAboveZero, {});
        row("", CodeType::Transmitter, EntryFault::NotAboveZero, {});
        row("251658239", CodeType::Transmitter, EntryFault::None, u"251658239"_s);
        row("251658240", CodeType::Transmitter, EntryFault::AboveTransmitterMaximum, {});
        row("999999", CodeType::Keypad, EntryFault::None, u"999999"_s);
        row("1000000", CodeType::Keypad, EntryFault::AboveKeypadMaximum, {});
    }
    void entries()
    {
        QFETCH(CodeType, type);
        const EntryCheck check = checkEntry(tag(), type);
        QTEST(check.fault, "fault");
        QTEST(check.code, "code");
    }

    void numbers_data()
    {
        const Rows<int, int> row("lenient", "whole"); // 99 = none
        row("", 0, 99);
        row(" 30 ", 30, 30);
        row("12 min", 12, 99);
        row("-1", -1, -1);
        row("+7", 7, 7);
        row("2.6", 3, 99);
        row(".6", 1, 99);
        row("nan", 0, 99);
        row("-inf", 0, 99);
        row("40000", 32767, 32767);
        row("-40000", -32768, -32768);
        row("99999999999999999999999", 32767, 32767);
        row("1e999", 32767, 99);
        row("-", 0, 99);
    }
    void numbers()
    {
        QTEST(toSixteenBits(leadingNumber(tag())), "lenient");
        QTEST(wholeNumber(tag()).value_or(99), "whole");
    }

    void validity()
    {
        // Which days a month has is not looked at.
        const QString date = u"31/02/2004"_s, time = u"23:59:59"_s, shortTime = u"23:59"_s;
        const QStringList none = listOf("1/2/2004,00/02/2004,32/02/2004,01/13/2004,01-12-2004,01/12/0000, "
                                        "1/02/2004,01/2 /2004,01/02/2e10,24:00:00,12:60:00,12:00:60,12:00.00,"
                                        "1a:00:00,12:00:5 ,24:00,12:60,7:30,07.30,0a:30");
        for (const QString &text : none + QStringList{date, time, shortTime, QString()}) {
            QVERIFY2(DataValida(text) == (text == date), qPrintable(text));
            QVERIFY2(OraValida(text) == (text == time), qPrintable(text));
            QVERIFY2(OraBreveValida(text) == (text == shortTime), qPrintable(text));
        }
    }

    void conversions()
    {
        QCOMPARE(DataTrattini(DataBarre(u"03-05-2004"_s)), DataFile(u"03-05-2004"_s));
        QVERIFY(OraNonDopo(u"08:00"_s, u"08:00"_s) && !OraNonDopo(u"08:01"_s, u"08:00"_s));
        QCOMPARE(SoloCifre(u"1\u06622x3"_s), u"123"_s);
        QCOMPARE(TogliAnd(u"A&GG&&"_s), u"AGG"_s);
        QCOMPARE(Centra(u"TX"_s, 5), u" TX  "_s);
        Texts texts;
        texts.fill(2);
        QCOMPARE(DataEstesa(QDate(2004, 3, 7), texts), u"Sunday, 07 March 2004"_s);
    }

    void nextDay_data()
    {
        const Rows<QString> row("expected");
        row("28/02/2004", u"29/02/2004"_s);
        row("29/02/2004", u"01/03/2004"_s);
        row("28/02/1900", u"01/03/1900"_s);
        row("28/02/2000", u"29/02/2000"_s);
        row("31/02/2004", u"01/03/2004"_s);
        row("30/04/2004", u"01/05/2004"_s);
        row("30/03/2004", u"31/03/2004"_s);
        row("31/12/0099", u"01/01/0100"_s);
    }
    void nextDay() { QTEST(GiornoSeguente(tag()), "expected"); }
};

QTEST_GUILESS_MAIN(TestCodes)
#include "tst_codes.moc"
