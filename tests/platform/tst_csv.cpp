#include "platform/CsvReader.h"
#include "platform/TextFile.h"
#include "support/Fixtures.h"

namespace {

constexpr qsizetype limit = 300'000;

/// "line:field|field;" of every record, then the fault.
QString records(const QByteArray &content, char separator)
{
    CsvReader reader(content, separator);
    CsvReader::Record record;
    QString all;
    for (Result<bool> more = true; more && more.value();) {
        more = reader.next(record);
        if (!more)
            all += more.fault().code == FaultCode::LineTooLong ? u"LONG "_s : u"NO "_s, all += more.fault().subject;
        else if (more.value())
            all += u"%1:%2;"_s.arg(record.line).arg(QString::fromUtf8(record.fields.join('|')));
    }
    return all;
}

} // namespace

class TestCsv : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dialects_data();
    void dialects();
    void files_data();
    void files();
};

void TestCsv::dialects_data()
{
    const Rows<QByteArray, char, QString> row("content", "separator", "read");
    row("spreadsheet with semicolons", "a;1,5;\r\n;;\r\n", ';', u"1:a|1,5|;2:||;"_s);
    row("tabs", "a\tb c\t\"d\te\"\n", '\t', u"1:a|b c|d\te;"_s);
    row("no last line end", "a,b\nc,d", ',', u"1:a|b;2:c|d;"_s);
    row("old line ends, empty lines", "a\r\rb\r", ',', u"1:a;3:b;"_s);
    row("quoted line ends count", "\"a\r\nb\",c\r\nd\n\n\"e\nf\rg\"\nh", ',', u"1:a\r\nb|c;3:d;5:e\nf\rg;8:h;"_s);
    row("blanks around fields", " a , \" b \" ,c d\n", ',', u"1:a| b |c d;"_s);
    row("a quote within a text", "5\" pipe,x\n", ',', u"1:5\" pipe|x;"_s);
    row("a quote that is never closed", "a\n\"b,c\nd\n", ',', u"1:a;NO 2"_s);
    row("longest line", QByteArray(CsvReader::LongestRecord - 1, 'x') + "\nb", ',',
        u"1:%1;2:b;"_s.arg(QString(CsvReader::LongestRecord - 1, u'x')));
    row("a line of a megabyte", "a\n" + QByteArray(1 << 20, 'x') + "\nb", ',', u"1:a;LONG 2"_s);
    row("a quoted field of a megabyte", "\"" + QByteArray(1 << 19, 'x').replace("xxxx", "xxx\n") + "\"\n", ',',
        u"LONG 1"_s);
    row("nothing", "", ',', {});
    row("only line ends", "\r\n\n\r", ',', {});
}

void TestCsv::dialects()
{
    QFETCH(const QByteArray, content);
    QFETCH(const char, separator);
    QTEST(records(content, separator), "read");
}

void TestCsv::files_data()
{
    const Rows<QByteArray, int, QByteArray, bool> row("bytes", "fault", "content", "isUtf8");
    const int none = -1, noTable = static_cast<int>(FaultCode::NoTable),
              tooLarge = static_cast<int>(FaultCode::TooLarge);
    row("mark and umlaut",
        "\xEF\xBB\xBF"
        "\xC3\xA4;1",
        none, "\xC3\xA4;1", true);
    row("old encoding", "M\xFCller;\x80", none, "M\xFCller;\x80", false);
    QByteArray across(65'535, 'x');
    across += "\xC3\xA4 \xE2\x82\xAC";
    row("a character across two pieces", across, none, across, true);
    row("old encoding in the second piece", across + '\xE8', none, across + '\xE8', false);
    row("a byte 0", QByteArray("a;b\n\0c", 6), noTable, {}, true);
    row("of two bytes a character", QByteArray("\xFF\xFE\xE4\0;\0", 6), none, "\xC3\xA4;", true);
    QByteArray wide("\xFF\xFE");
    wide += QByteArray("x\0", 2).repeated(32'766) + QByteArray("\x3D\xD8\0\xDE", 4);
    row("its character of two words across two pieces", wide, none, QByteArray(32'766, 'x') + "\xF0\x9F\x98\x80", true);
    row("larger", QByteArray(limit + 1, 'x'), tooLarge, {}, true);
}

void TestCsv::files()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, fault);
    const BareFolder test;
    test.write(u"list.csv"_s, bytes);
    TextFile file(test.directory.filePath(u"list.csv"_s), limit);
    const Result<void> read = finish(file);
    QCOMPARE(codeOf(read), fault);
    if (!read)
        return;
    QTEST(file.content(), "content");
    QTEST(file.isUtf8(), "isUtf8");
}

QTEST_APPLESS_MAIN(TestCsv)
#include "tst_csv.moc"
