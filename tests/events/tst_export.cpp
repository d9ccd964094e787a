#include "events/EventExport.h"
#include "support/Workbooks.h"

namespace {

const QStringList Captions{u"Cognome Utente"_s, u"KOR DIS"_s};
const QString FileName = u"Eventi.xls"_s;

Workbook workbook(const QStringList &captions, const QList<QStringList> &rows)
{
    Workbook made(u"Eventi"_s, captions);
    for (const QStringList &row : rows) {
        if (!made.addRow(row))
            qFatal("a row was refused");
    }
    return made;
}

bool write(const Workbook &book, QIODevice &device)
{
    WorkbookWriter writer(book, device);
    Result<bool> done = false;
    while (done && !done.value())
        done = writer.step();
    return done.ok();
}

} // namespace

class TestExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAcrossRecords()
    {
        // The first text of each workbook ends at another place around the end of the first record; behind it come one
        // that begins there, and one that goes through several records.
        const QTemporaryDir folder;
        QJsonArray expected;
        for (const QString &kind : {u"a"_s, u"è"_s, u"€"_s, u"ł"_s}) {
            for (qsizetype length = 8165; length < 8220; ++length) {
                const QStringList texts{QString(length, u'f'), kind.repeated(30), kind.repeated(20'000) + u'z',
                                        u"end"_s};
                QFile file(folder.filePath(u"%1"_s.arg(expected.size(), 4)));
                QVERIFY(file.open(QIODevice::WriteOnly) && write(workbook(listOf("C,C,C,C"), {texts}), file));
                expected.append(QJsonArray::fromStringList(texts));
            }
        }
        const QJsonArray books = readWorkbooks(folder.path());
        QCOMPARE(books.size(), expected.size());
        for (qsizetype number = 0; number < books.size(); ++number)
            QVERIFY2(books[number][0][5] == expected[number], qPrintable(QString::number(number)));
    }

    void sheets_data()
    {
        const Rows<qsizetype, QList<int>> row("count", "rows");
        row("none", 0, {1});
        row("one sheet, full", 65'535, {65'536});
        row("one row too many", 65'536, {65'536, 2});
    }
    void sheets()
    {
        QFETCH(qsizetype, count);
        QFETCH(QList<int>, rows);
        const QTemporaryDir folder;
        Disk disk;
        const auto text = [](qsizetype index) { return u"Nicolò %1"_s.arg(index); };
        EventExport work(disk, folder.filePath(FileName),
                         {u"Eventi"_s, Captions, count, [&](qsizetype index) {
                              return QStringList{text(index), index % 2 ? u"•"_s : QString()};
                          }});
        Result<bool> done = false;
        while (done && !done.value())
            done = work.step(QDeadlineTimer(20));
        QVERIFY(done.ok() && work.progress().done == count);
        const QJsonArray sheets = readWorkbooks(folder.path())[0].toArray();
        QCOMPARE(sheets.size(), rows.size());
        qsizetype first = 0;
        for (qsizetype number = 0; number < rows.size(); ++number) {
            const QJsonValue sheet = sheets[number];
            QCOMPARE(sheet[0].toString(), number ? u"Eventi %1"_s.arg(number + 1) : u"Eventi"_s);
            QVERIFY(sheet[1] == QJsonArray{700} && sheet[3] == rows[number]);
            QCOMPARE(sheet[4], QJsonArray::fromStringList(Captions));
            if (rows[number] > 1) {
                QCOMPARE(sheet[2], QJsonArray{400});
                QCOMPARE(sheet[5], (QJsonArray{text(first), first % 2 ? u"•"_s : u""_s}));
                first += rows[number] - 1;
                QCOMPARE(sheet[6][0].toString(), text(first - 1));
            }
        }
    }

    /// The old file stands until the new one is whole, and nothing else is left.
    void oldFileIsKept_data()
    {
        const Rows<int, int> row("turns", "faultyRow");
        row("stopped in the rows", 40, -1);
        row("stopped in the file", 102, -1);
        row("rows cannot be read", -1, 50);
        row("the disk fails, at any step", -1, -1);
    }
    void oldFileIsKept()
    {
        QFETCH(int, turns);
        QFETCH(int, faultyRow);
        const bool diskFails = turns < 0 && faultyRow < 0;
        const QTemporaryDir folder;
        QFile old(folder.filePath(FileName));
        QVERIFY(old.open(QIODevice::ReadWrite) && old.write("old") && old.flush());
        bool isDone = false;
        for (int stop = 0; !isDone && (diskFails || stop == 0); ++stop) {
            FakeDisk disk;
            disk.stopAt = diskFails ? stop : -1;
            disk.goesOn = true;
            {
                const auto rows = [&](qsizetype index) -> Result<QStringList> {
                    return index == faultyRow ? Result<QStringList>(Fault{FaultCode::Locked, {}}) : QStringList{u"x"_s};
                };
                EventExport work(disk, old.fileName(), {u"Eventi"_s, Captions, 100, rows});
                Result<bool> done = false;
                for (int turn = 0; done && !isDone && turn != turns; ++turn) {
                    done = work.step(QDeadlineTimer(0));
                    isDone = done && done.value();
                }
                QVERIFY(!isDone || disk.failed == 0);
                if (!done)
                    QCOMPARE(done.fault().code, diskFails ? FaultCode::InputOutput : FaultCode::Locked);
            }
            QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList(FileName));
            QFile now(old.fileName());
            QVERIFY(now.open(QIODevice::ReadOnly));
            QCOMPARE(now.readAll() == "old", !disk.steps.contains(u"rename "_s + FileName));
        }
        QCOMPARE(isDone, diskFails);
    }
};

QTEST_GUILESS_MAIN(TestExport)
#include "tst_export.moc"
