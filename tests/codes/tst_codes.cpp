#include "codes/CodeRules.h"
#include "startup/DateTimeText.h"
#include "startup/Numbers.h"
#include "startup/PlainText.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestCodes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void truncated_data();
    void truncated();
    void protocols_data();
    void protocols();
    void entries_data();
    void entries();
    void numbers_data();
    void numbers();
    void validity_data();
    void validity();
    void conversions();
    void nextDay_data();
    void nextDay();
};

void TestCodes::truncated_data()
{
    QTest::addColumn<int>("protocol");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("expected");
    const auto row = [](int protocol, const char *code, const char *expected) {
        QTest::addRow("%d %s", protocol, code)
            << protocol << QString(QLatin1String(code)) << QString(QLatin1String(expected));
    };
    row(1, "16777215", "");
    row(1, "16777216", "6777216");
    row(1, "100000001", "00000001");
    row(1, "123456789", "3456789");
    row(3, "65535", "");
    row(3, "65536", "5536");
    row(4, "123456", "23456");
    row(7, "524288", "24288");
    row(8, "1524287", "524287");
    row(10, "99999999", "");
    row(10, "100000000", "00000000");
    row(15, "", "00000");
    row(15, "1", "00001");
    row(15, "255", "000FF");
    row(15, "1234567", "2D687");
    row(15, "1048576", "00000");
    for (int carriesAll : {0, 2, 5, 6, 9, 11, 12, 13, 14, 16, -1})
        row(carriesAll, "251658239", "");
}

void TestCodes::truncated()
{
    QFETCH(int, protocol);
    QFETCH(QString, code);
    QTEST(truncatedCode(code, protocol), "expected");
    if (!truncatedCode(code, protocol).isEmpty())
        QVERIFY(hasTruncatedCodes(protocol));
}

void TestCodes::protocols_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QList<int>>("expected"); // site code and channel information 00, 01, 10, 11
    const auto row = [](const char *name, const QList<int> &expected) {
        QTest::newRow(name) << QString(QLatin1String(name)) << expected;
    };
    row("WIEGAND 26 BIT", {1, 1, 4, 3});
    row("WIEGAND 37 BIT HID", {5, 6, 8, 7});
    row("WIEGAND 37 BIT HID D10302", {9, 10, 9, 10});
    row("WIEGAND 50 BIT", {11, 12, 11, 12});
    row("TOLMAR", {13, 13, 13, 13});
    row("ISO2", {14, 14, 14, 14});
    row("RS_C", {15, 15, 15, 15});
    row("wiegand 26 bit", {0, 0, 0, 0});
    row("ISO2 ", {0, 0, 0, 0});
    row("-1", {0, 0, 0, 0});
}

void TestCodes::protocols()
{
    QFETCH(QString, name);
    const QList<int> codes = {protocolCode(name, 0, 0), protocolCode(name, 0, 1), protocolCode(name, 1, 0),
                              protocolCode(name, 1, 1)};
    QTEST(codes, "expected");
}

void TestCodes::entries_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<CodeType>("type");
    QTest::addColumn<EntryFault>("fault");
    QTest::addColumn<QString>("code");
    const auto row = [](const char *typed, CodeType type, EntryFault fault, const char *code) {
        QTest::addRow("%s %d", typed, int(type))
            << QString(QLatin1String(typed)) << type << fault << QString(QLatin1String(code));
    };
    row("00123", CodeType::Transmitter, EntryFault::None, "123");
    row("000", CodeType::Keypad, EntryFault::NotAboveZero, "");
    row("", CodeType::Transmitter, EntryFault::NotAboveZero, "");
    row("251658239", CodeType::Transmitter, EntryFault::None, "251658239");
    row("251658240", CodeType::Transmitter, EntryFault::AboveTransmitterMaximum, "");
    row("999999", CodeType::Keypad, EntryFault::None, "999999");
    row("1000000", CodeType::Keypad, EntryFault::AboveKeypadMaximum, "");
}

void TestCodes::entries()
{
    QFETCH(QString, typed);
    QFETCH(CodeType, type);
    const EntryCheck check = checkEntry(typed, type);
    QTEST(check.fault, "fault");
    QTEST(check.code, "code");
}

void TestCodes::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("lenient");
    QTest::addColumn<int>("whole"); // 99 = none
    const auto row = [](const char *text, int lenient, int whole) {
        QTest::newRow(text) << QString(QLatin1String(text)) << lenient << whole;
    };
    row("", 0, 99);
    row("25", 25, 25);
    row(" 30 ", 30, 30);
    row("12 min", 12, 99);
    row("-1", -1, -1);
    row("+7", 7, 7);
    row("2.6", 3, 99);
    row(".6", 1, 99);
    row("abc", 0, 99);
    row("nan", 0, 99);
    row("inf", 0, 99);
    row("-inf", 0, 99);
    row("40000", 32767, 32767);
    row("-40000", -32768, -32768);
    row("99999999999999999999999", 32767, 32767);
    row("1e999", 32767, 99);
    row("-", 0, 99);
}

void TestCodes::numbers()
{
    QFETCH(QString, text);
    QTEST(toSixteenBits(leadingNumber(text)), "lenient");
    QTEST(wholeNumber(text).value_or(99), "whole");
}

void TestCodes::validity_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("date");
    QTest::addColumn<bool>("time");
    QTest::addColumn<bool>("shortTime");
    const auto row = [](const char *text, bool date, bool time, bool shortTime) {
        QTest::newRow(text) << QString(QLatin1String(text)) << date << time << shortTime;
    };
    row("31/02/2004", true, false, false);
    row("1/2/2004", false, false, false);
    row("00/02/2004", false, false, false);
    row("32/02/2004", false, false, false);
    row("01/13/2004", false, false, false);
    row("01-12-2004", false, false, false);
    row("01/12/0000", false, false, false);
    row("23:59:59", false, true, false);
    row("24:00:00", false, false, false);
    row("12:60:00", false, false, false);
    row("12:00:60", false, false, false);
    row("12:00.00", false, false, false);
    row("1a:00:00", false, false, false);
    row("12:00:5 ", false, false, false);
    row("23:59", false, false, true);
    row("24:00", false, false, false);
    row("12:60", false, false, false);
    row("7:30", false, false, false);
    row("07.30", false, false, false);
    row("0a:30", false, false, false);
    row("", false, false, false);
}

void TestCodes::validity()
{
    QFETCH(QString, text);
    QTEST(DataValida(text), "date");
    QTEST(OraValida(text), "time");
    QTEST(OraBreveValida(text), "shortTime");
}

void TestCodes::conversions()
{
    const QString system = u"03-05-2004"_s;
    QCOMPARE(DataFile(system), u"05-03-2004"_s);
    QCOMPARE(DataBarre(system), u"05/03/2004"_s);
    QCOMPARE(DataTrattini(DataBarre(system)), DataFile(system));
    QCOMPARE(DataOrdinabile(DataFile(system)), u"20040305"_s);
    QCOMPARE(GiornoMese(u"03-05"_s), u"05/03"_s);
    QCOMPARE(Minuti(u"07:45"_s), 465);
    QVERIFY(OraNonDopo(u"08:00"_s, u"08:00"_s));
    QVERIFY(!OraNonDopo(u"08:01"_s, u"08:00"_s));
    QCOMPARE(TogliZeri(u"000000000"_s), QString());
    QCOMPARE(TogliZeri(u"000120"_s), u"120"_s);
    QCOMPARE(SoloCifre(u"1\u06622x3"_s), u"123"_s);
    QCOMPARE(TogliAnd(u"A&GG&&"_s), u"AGG"_s);
    QCOMPARE(Centra(u"TX"_s, 5), u" TX  "_s);
    QCOMPARE(Centra(u"ABCDEFG"_s, 5), u"ABCDEFG"_s);
    Texts texts;
    texts.fill(2);
    QCOMPARE(DataEstesa(QDate(2004, 3, 7), texts), u"Sunday, 07 March 2004"_s);
    QCOMPARE(DataEstesa(QDate(2004, 12, 4), texts), u"Saturday, 04 December 2004"_s);
}

void TestCodes::nextDay_data()
{
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *day, const char *expected) {
        QTest::newRow(day) << QString(QLatin1String(expected));
    };
    row("28/02/2004", "29/02/2004");
    row("29/02/2004", "01/03/2004");
    row("28/02/1900", "01/03/1900");
    row("28/02/2000", "29/02/2000");
    row("31/02/2004", "01/03/2004");
    row("30/04/2004", "01/05/2004");
    row("30/03/2004", "31/03/2004");
    row("31/12/2004", "01/01/2005");
    row("09/11/2004", "10/11/2004");
    row("30/06/0099", "01/07/0099");
    row("31/12/0099", "01/01/0100");
}

void TestCodes::nextDay()
{
    QTEST(GiornoSeguente(QString::fromLatin1(QTest::currentDataTag())), "expected");
}

QTEST_GUILESS_MAIN(TestCodes)
#include "tst_codes.moc"
