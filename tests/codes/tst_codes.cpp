#include "codes/CodeRules.h"
#include "startup/Numbers.h"
#include "startup/PlainText.h"
#include "support/Fixtures.h"
#include "texts/DateTimeText.h"

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
        QTEST(truncatedCode(tag(), Protocol{protocol}), "expected");
        QVERIFY(hasTruncatedCodes(Protocol{protocol}));
        for (int carriesAll : {0, 2, 5, 6, 9, 11, 12, 13, 14, 16, -1})
            QCOMPARE(truncatedCode(u"251658239"_s, Protocol{carriesAll}), QString());
    }

    void protocols_data()
    {
        const Rows<QList<int>> row("expected"); // site code and channel information 00, 01, 10, 11
        row("WIEGAND 26 BIT", {1, 1, 4, 3});
        row("WIEGAND 37 BIT HID", {5, 6, 8, 7});
        row("WIEGAND 37 BIT HID D10302", {9, 10, 9, 10});
        row("WIEGAND 50 BIT", {11, 12, 11, 12});
        row("TOLMAR", {13, 13, 13, 13});
        row("ISO2", {14, 14, 14, 14});
        row("RS_C", {15, 15, 15, 15});
        row("wiegand 26 bit", {0, 0, 0, 0});
        row("ISO2 ", {0, 0, 0, 0});
    }
    void protocols()
    {
        const QString name = tag();
        QList<int> codes;
        for (const bool site : {false, true}) {
            for (const bool channels : {false, true})
                codes.append(static_cast<int>(protocolCode(name, site, channels)));
        }
        QTEST(codes, "expected");
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
        QCOMPARE(SoloCifre(u"1\u06622x3"_s), u"123"_s);
        QCOMPARE(TogliAnd(u"A&GG&&"_s), u"AGG"_s);
        QCOMPARE(Centra(u"TX"_s, 5), u" TX  "_s);
        Texts texts;
        texts.fill(2);
        QCOMPARE(DataEstesa(QDate(2004, 3, 7), texts), u"Sunday, 07 March 2004"_s);
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
        const QString typed = tag(), key = DataOrdinabile(typed);
        QCOMPARE(DataOrdinabile(rangeDay(typed, End::First)), first);
        QCOMPARE(rangeDayOfKey(key, End::Last), rangeDay(typed, End::Last));
        const QDate day = rangeDay(typed, End::Last);
        QCOMPARE(DataOrdinabile(day), last);
        QCOMPARE(dayOfFile(DataFile(day)), day);
        if (!last.isEmpty() && first == last)
            QCOMPARE(DataBarre(day), typed);
    }
};

QTEST_GUILESS_MAIN(TestCodes)
#include "tst_codes.moc"
