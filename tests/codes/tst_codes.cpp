#include "codes/CodeRules.h"
#include "startup/DateTimeText.h"
#include "startup/Numbers.h"
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
        row("+7", 7, 7);
        row(".6", 1, 99);
        row("nan", 0, 99);
        row("40000", 32767, 32767);
        row("99999999999999999999999", 32767, 32767);
        row("1e999", 32767, 99);
        row("-", 0, 99);
    }
    void numbers()
    {
        QTEST(toSixteenBits(leadingNumber(tag())), "lenient");
        QTEST(wholeNumber(tag()).value_or(99), "whole");
    }
};

QTEST_GUILESS_MAIN(TestCodes)
#include "tst_codes.moc"
