// The archive tool beside a supervisor that receives: what it writes is read back by other programs' readers.

#include "e2e/Programs.h"
#include "events/EventSearch.h"
#include "texts/DateTimeText.h"

#include <QFileInfo>

namespace {

struct Ended {
    int code = -1;
    QByteArray output, errors;
};

/// A program of the system, or one of ours, that runs to its end.
Ended run(const QString &name, const QStringList &arguments, const QByteArray &input = {})
{
    QProcess process;
    process.start(name, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(60'000))
        qFatal("%s does not end", qPrintable(name));
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

struct ArchiveSite : Site {
    Ended tool(const QString &command, const QStringList &more = {}) const
    {
        return run(program("kor-archive"), QStringList{command, u"--folder"_s, directory.path()} + more);
    }
    /// Columns as the window shows them, joined by "|".
    QStringList foundByTheWindow()
    {
        UserDirectory users(archives, ArchiveName::SearchUsers);
        EventSearch search(archives, users);
        const QDate day = QDate::currentDate();
        if (!users.open() || !search.start({{}, day, day, QTime(0, 0), QTime(23, 59, 59)}) || !finish(search))
            qFatal("no search");
        QStringList rows;
        for (qsizetype i = 0; i < search.results().count(); ++i)
            rows.append(textsOf(EventColumns::found, search.results().row(i).value()).join(u'|'));
        return rows;
    }
};

QStringList linesOf(const QByteArray &output)
{
    return QString::fromUtf8(output).split(u'\n', Qt::SkipEmptyParts);
}

/// Prints rows as the window has them: surname, name, type, channel, marks and day and time between them.
const QString readCsv = uR"(
import csv, sys
for r in csv.DictReader(sys.stdin):
    print('|'.join([r['surname'], r['name'], r['type'], r['channel'], r['channel_disabled'],
                    '-'.join(reversed(r['date'].split('-'))), r['time'], r['interface_disabled']]))
)"_s;
const QString readSheet = uR"(
import sys, xlrd
for sheet in xlrd.open_workbook(sys.argv[1]).sheets():
    for row in range(1, sheet.nrows):
        print('|'.join(sheet.row_values(row)))
)"_s;
const QString readJson = uR"([.surname, .name, .type, .channel, (if .channel_disabled then "X" else "" end), )"
                         uR"((.time[8:10] + "-" + .time[5:7] + "-" + .time[0:4]), .time[11:19], )"
                         uR"((if .interface_disabled then "X" else "" end)] | join("|"))"_s;

} // namespace

class TestArchiveEndToEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void besideASupervisorThatReceives()
    {
        ArchiveSite site;
        site.addUsers({{u"12345"_s, u"TX"_s, u"O'Neil, \"B\""_s, u"Zo\u00EB"_s}, listOf("777,DKS,Rossi,Mario")});
        Running interface("kor-simulator",
                          site.interface(listOf("--fast,--rate,40,--codes") + QStringList{u"tx:12345,dks:777"_s}));
        QVERIFY(interface.tells("Porte/COM7"));
        Running supervisor("kor-supervisor", site.console(listOf("--port,7")));
        QVERIFY(supervisor.tells("ON LINE"));
        Running follower("kor-archive", {u"follow"_s, u"--folder"_s, site.directory.path()});
        QTRY_VERIFY_WITH_TIMEOUT(site.foundByTheWindow().size() > 20, 20'000);
        const auto searched = [&site](const char *format) {
            return site.tool(u"search"_s, {u"--format"_s, QLatin1String(format)});
        };

        // What was stored before a look stands in it, in the window's order.
        const QStringList before = site.foundByTheWindow();
        QVERIFY(before.size() > 20);
        const Ended csv = searched("csv");
        const Ended json = searched("json");
        const QString sheet = site.directory.filePath(u"events.xls"_s);
        const Ended xls = site.tool(u"search"_s, {u"--format"_s, u"xls"_s, u"--output"_s, sheet});
        const QStringList behind = site.foundByTheWindow();
        for (const auto &[ended, read] : {std::pair(csv, run(u"/usr/bin/python3"_s, {u"-c"_s, readCsv}, csv.output)),
                                          {json, run(u"jq"_s, {u"-r"_s, readJson}, json.output)},
                                          {xls, run(u"/usr/bin/python3"_s, {u"-c"_s, readSheet, sheet})}}) {
            QVERIFY2(ended.code == 0 && read.code == 0, ended.errors + read.errors);
            const QStringList rows = linesOf(read.output);
            QVERIFY(rows.size() >= before.size());
            QCOMPARE(rows, behind.first(rows.size()));
        }
        QCOMPARE(linesOf(site.tool(u"users"_s, listOf("--format,csv")).output).size(), 3);
        QVERIFY(site.tool(u"coverage"_s, listOf("--format,json")).output.contains("\"state\":"));
        const Ended verified = site.tool(u"verify"_s);
        QVERIFY2(verified.code <= 1 && !verified.output.contains("Eventi_") && !verified.output.contains("Giornale_"),
                 verified.output + verified.errors);

        // A copy made meanwhile is a program folder with the same events.
        const QTemporaryDir copy;
        QCOMPARE(site.tool(u"backup"_s, {copy.path()}).code, 0);
        const Ended ofCopy =
            run(program("kor-archive"), listOf("search,--format,csv,--folder") + QStringList{copy.path()});
        QVERIFY(ofCopy.code == 0 && ofCopy.output.startsWith(csv.output));

        // The end of the line, then of the follower; another one has what came since, and nothing twice.
        QCOMPARE(follower.end(), 0);
        const QStringList first = linesOf(follower.output);
        QVERIFY(first.size() > 10);
        const QString cursor = first.constLast().section(u'"', 3, 3);
        const qsizetype stand = site.foundByTheWindow().size();
        QTRY_VERIFY_WITH_TIMEOUT(site.foundByTheWindow().size() > stand, 20'000);
        interface.end();
        QTest::qWait(1500);
        QCOMPARE(supervisor.end(), 0);
        Running next("kor-archive", {u"follow"_s, u"--folder"_s, site.directory.path(), u"--after"_s, cursor});
        QVERIFY(next.tells("cursor"));
        QTest::qWait(1500);
        QCOMPARE(next.end(), 0);
        const QStringList all = first + linesOf(next.output);
        QStringList told = linesOf(run(u"jq"_s, {u"-r"_s, readJson}, all.join(u'\n').toUtf8()).output);
        const QStringList stored = site.foundByTheWindow();
        QCOMPARE(told, stored.last(told.size()));
        QVERIFY(told.size() > first.size());
        QCOMPARE(site.files(u"Archivi"_s).filter(QRegularExpression(u"-wal|-shm|[.](part|kor)"_s)), QStringList());
    }

    void gateAndExitCodes()
    {
        ArchiveSite site;
        site.addUsers({});
        site.execute(ArchiveName::Users, "INSERT INTO Password DEFAULT VALUES");
        site.setPassword(u"segreta"_s);
        const auto with = [&site](const char *text) {
            site.write(u"pass"_s, text);
            QFile::setPermissions(site.folder.path(u"pass"_s), QFile::ReadOwner | QFile::WriteOwner);
            return site.tool(u"users"_s, {u"--password-file"_s, site.folder.path(u"pass"_s)});
        };
        QCOMPARE(with("segreta\n").code, 0);
        // The register does not become a list of itself.
        const QString link = site.directory.filePath(u"list"_s);
        QVERIFY(QFile::link(site.folder.path(QStringView(ArchiveName::Users).toString()), link));
        QCOMPARE(site.tool(u"users"_s, {u"--password-file"_s, site.folder.path(u"pass"_s), u"--output"_s, link}).code,
                 2);
        QCOMPARE(with("segreta\n").code, 0);
        const Ended wrong = with("falsa\n");
        QVERIFY(wrong.code == 2 && wrong.output.isEmpty() && wrong.errors.count('\n') == 1);
        const Ended nobody = site.tool(u"users"_s);
        QVERIFY(nobody.code == 2 && nobody.output.isEmpty());
        QCOMPARE(run(program("kor-archive"), listOf("users,--folder,/nowhere")).code, 2);
        // A reader that has seen enough.
        const QString line =
            u"%1 users --folder %2 --password-file %3 --format json | true; exit ${PIPESTATUS[0]}"_s.arg(
                program("kor-archive"), site.directory.path(), site.folder.path(u"pass"_s));
        with("segreta\n");
        const Ended piped = run(u"bash"_s, {u"-c"_s, line});
        QVERIFY2(piped.code == 0 && piped.errors.isEmpty(), piped.errors);
    }
};

QTEST_GUILESS_MAIN(TestArchiveEndToEnd)
#include "tst_e2e_archive.moc"
