#include "codes/UserColumns.h"
#include "events/EventReport.h"
#include "reports/TextReport.h"
#include "support/Fixtures.h"
#include "support/RecordedPage.h"
#include "texts/Texts.h"
#include "users/UserListReport.h"

namespace {

using Mark = RecordedPage::Mark;
using Table = EventReport::Table;

constexpr int unlimited = -1;

/// How one kind of table must look on a page whose line of 10 points is 220 high. All figures are twips.
struct Look {
    std::unique_ptr<TableReport> (*make)(const Texts &texts, const TableReport::Rows &rows);
    QStringList fields;
    QString title, headings[2], row;
    double left, firstTop, nextTop; ///< upper edge of the headings
    double textInRow;               ///< of the row's text, below the row's upper edge
    int firstRows, nextRows;        ///< that fill a page
    QList<double> verticals;
    double band, right;
};

template<Table table>
std::unique_ptr<TableReport> events(const Texts &texts, const TableReport::Rows &rows)
{
    return std::make_unique<EventReport>(table, texts, rows);
}

std::unique_ptr<TableReport> users(const Texts &texts, const TableReport::Rows &rows)
{
    QList<User> all(rows.count);
    for (qsizetype row = 0; row < rows.count; ++row) {
        qsizetype field = 0;
        for (const UserColumn &column : userColumns)
            column.value.set(all[row], rows.fields(row).value().value(field++));
    }
    return std::make_unique<UserListReport>(texts, all);
}

// clang-format off
const Look search = {
    events<Table::Search>,
    u"Rossi,Anna,LONGTYPE,B,,05-03-2004,07:45:00,X"_s.split(u','), u"RICERCA EVENTI"_s,
    {u"     Cognome            Nome       Tipo  CH   CH      Data      Ora     KOR "_s,
     u"      Utente           Utente                 DIS                       DIS "_s},
    u" Rossi            Anna             LONGTYPE  B        05-03-2004 07:45:00   X  "_s,
    900, 1396, 300, 220, 28, 31,
    {900, 2970, 5010, 5730, 6210, 6930, 8250, 9330, 10050}, 10050, 10050,
};
const Look userList = {
    users,
    listOf("1234,TX,ABCDEFGHIJKLMNOPQ,Anna,piano 2,004D2"), u"LISTA UTENTI"_s,
    {u"  Codice    Tipo      Cognome          Nome        Informazioni    Codice  "_s,
     u"                      Utente          Utente        Aggiuntive    Troncato "_s},
    u"      1234   TX   ABCDEFGHIJKLMNO Anna            piano 2             004D2"_s,
    960, 1496, 400, 0, 28, 30,
    {960, 2280, 3000, 4920, 6840, 8760, 9960}, 3030, 9960,
};
// clang-format on

RecordedPage recorded(Report &report, int budget, int *steps = nullptr)
{
    RecordedPage page;
    int count = 1;
    while (!report.step(page, QDeadlineTimer(budget)).value())
        ++count;
    if (steps)
        *steps = count;
    return page;
}

} // namespace

class TestReports : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pages_data()
    {
        const Rows<const Look *, int, int> row("look", "count", "pages");
        // A full page is followed by one that holds the headings alone.
        for (const auto &[count, pages] : {std::pair(0, 1), {1, 1}, {3, 1}, {25, 1}, {28, 2}, {500, 17}})
            row(qPrintable(QString::asprintf("search: %d", count)), &search, count, pages);
        row("one user", &userList, 1, 1);
        row("60 users", &userList, 60, 3);
    }
    void pages()
    {
        QFETCH(const Look *, look);
        QFETCH(int, count);
        const bool isEvents = look != &userList;
        const auto report = look->make(Texts(), {count, [&](qsizetype) { return look->fields; }});
        const RecordedPage page = recorded(*report, unlimited);
        QTEST(page.pages, "pages");

        QSet<QString> expected;
        const auto expect = [&expected](const Mark &mark) { expected.insert(mark.asText()); };
        expect({1, (10920 - 192.0 * double(look->title.size())) / 2, 440, look->title, 0, 0, -16});
        int left = count;
        for (int number = 1; number <= page.pages; ++number) {
            const double top = number == 1 ? look->firstTop : look->nextTop;
            const int rows = qMin(left, number == 1 ? look->firstRows : look->nextRows);
            const double bottom = top + (rows + 1) * 440;
            left -= rows;
            for (int i = 0; i < 2; ++i)
                expect({number, look->left, top + i * 220, look->headings[i], 0, 0, -10});
            for (int i = 0; i <= rows + 1; ++i)
                expect({number, look->left, top + i * 440, u"-"_s, look->right, top + i * 440});
            for (int i = 1; i <= rows; ++i)
                expect({number, look->left, top + i * 440 + look->textInRow, look->row, 0, 0, 10});
            for (int i = 0; i <= (isEvents ? 0 : rows); ++i)
                expect({number, look->left, top + i * 440, u"#"_s, look->band, top + (i + 1) * 440});
            for (const double x : look->verticals)
                expect({number, x, isEvents ? top : top + 440, u"|"_s, x, bottom});
            for (int i = 0; i <= (isEvents ? -1 : rows); ++i) {
                for (const double x : {look->left, look->right})
                    expect({number, x, top + i * 440, u"|"_s, x, top + (i + 1) * 440});
            }
            const QString foot = u"Pagina %1  "_s.arg(number);
            expect({number, 10920 - 120.0 * double(foot.size()), 14780, foot, 0, 0, isEvents ? 8 : 10});
            if (isEvents)
                expect({number, 200, 14680, u"-"_s, 10720, 14680});
        }
        QCOMPARE(left, 0);
        QSet<QString> drawn;
        for (const Mark &mark : page.marks)
            drawn.insert(mark.asText());
        QCOMPARE(QStringList((drawn - expected).values()).join(u'/'), QString());
        QCOMPARE(QStringList((expected - drawn).values()).join(u'/'), QString());
    }

    /// Below the last row and nothing else, however little room is left.
    void note()
    {
        const QString words =
            u"Not known whether the program listened: 12 times, 1234567890 days 12 h in all, at most"_s;
        for (const int rows : {1, 27, 28}) {
            const TableReport::Rows data = {rows, [](qsizetype) { return search.fields; }};
            EventReport with(Table::Search, Texts(), data, words), without(Table::Search, Texts(), data);
            const QList<Mark> marks = recorded(with, unlimited).marks, plain = recorded(without, unlimited).marks;
            QCOMPARE(marks.mid(0, plain.size()), plain);
            const int page = rows == 28 ? 2 : 1;
            const double bottom = page == 2 ? 300 + 440 : 1396 + (rows + 1) * 440;
            QCOMPARE(marks.mid(plain.size()), (QList<Mark>{{page, 900, bottom + 220, words.left(73), 0, 0, 10},
                                                           {page, 900, bottom + 440, words.mid(74), 0, 0, 10}}));
            QVERIFY(bottom + 660 < 14680);
        }
    }

    void turns()
    {
        const TableReport::Rows rows = {40, [](qsizetype i) { return QStringList{QString::number(i)}; }};
        EventReport whole(Table::LastEvents, Texts(), rows), parts(Table::LastEvents, Texts(), rows);
        int steps = 0;
        const RecordedPage inParts = recorded(parts, 0, &steps);
        QCOMPARE(inParts.marks, recorded(whole, unlimited).marks);
        QCOMPARE(steps, 40);

        RecordedPage full;
        full.lastPage = 1;
        EventReport refused(Table::LastEvents, Texts(), rows);
        QCOMPARE(refused.step(full, QDeadlineTimer(unlimited)).fault().code, FaultCode::InputOutput);
    }

    void plainText()
    {
        // 91 characters fit on a line, 68 lines on a page.
        QStringList lines(67, u"x"_s);
        lines << QString(91, u'a') + u"b"_s << QString() << u"end"_s;
        TextReport report(lines);
        QCOMPARE(recorded(report, 0).marks.mid(66), (QList<Mark>{{1, 0, 14520, u"x"_s, 0, 0, 10},
                                                                 {1, 0, 14740, QString(91, u'a'), 0, 0, 10},
                                                                 {2, 0, 0, u"b"_s, 0, 0, 10},
                                                                 {2, 0, 220, {}, 0, 0, 10},
                                                                 {2, 0, 440, u"end"_s, 0, 0, 10}}));
    }
};

QTEST_APPLESS_MAIN(TestReports)
#include "tst_reports.moc"
