#include "archive/SearchCommand.h"
#include "archive/ToolOptions.h"
#include "archive/UsersCommand.h"
#include "support/ToolRun.h"
#include "users/UserExport.h"

#include <QDir>
#include <QJsonDocument>

using namespace tool;

namespace {

const QDate toDay(2004, 3, 5);

ToolOptions options(const QString &line)
{
    return readToolOptions(QStringList{u"kor-archive"_s} + line.split(u' ', Qt::SkipEmptyParts), toDay);
}

QString wrong(const QString &line)
{
    const ToolOptions read = options(line);
    return read.wrong ? english(*read.wrong) : QString();
}

/// Lets a search take the shortest turns, and somebody else act between them.
QByteArray search(ToolRun &run, const ToolOptions &wanted, const std::function<void()> &meanwhile = {})
{
    SearchCommand command(run.site(), wanted, {wanted.format, wanted.separator, 0, false}, &run, run.test.disk);
    Result<bool> done = false;
    while (done && !done.value()) {
        done = command.step(QDeadlineTimer(0));
        if (meanwhile)
            meanwhile();
    }
    return done ? run.output : "FAULT " + english(command.words(done.fault())).toUtf8();
}

} // namespace

class TestTool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void days_data()
    {
        const Rows<QString, QString> row("typed", "day");
        row("ISO", u"2004-02-29"_s, u"29/02/2004"_s);
        row("slashes", u"29/02/2004"_s, u"29/02/2004"_s);
        row("today", u"today"_s, u"05/03/2004"_s);
        row("yesterday", u"yesterday"_s, u"04/03/2004"_s);
        row("the month has not so many", u"2004-02-31"_s, u"31/02/2004"_s);
        row("short", u"2004-2-29"_s, {});
        row("no month", u"2004-13-01"_s, {});
        row("the other way round", u"05-03-2004"_s, {});
        row("tomorrow", u"tomorrow"_s, {});
    }
    void days()
    {
        QFETCH(QString, typed);
        QFETCH(QString, day);
        const ToolOptions read = options(u"search --from "_s + typed);
        QCOMPARE(read.wrong.has_value(), day.isEmpty());
        QCOMPARE(read.query.firstDay, day);
    }

    void arguments_data()
    {
        const Rows<QString, QString> row("line", "told");
        row("none", {}, u"The command is missing"_s);
        row("no command", u"find"_s, u"Unexpected argument: 'find'"_s);
        row("unknown option", u"search --day x"_s, u"Unknown option: '--day'"_s);
        row("another's option", u"users --from today"_s, u"The option '--from' does not go with 'users'"_s);
        row("format of none", u"search --format xml"_s, u"'xml' is not possible for --format"_s);
        row("sheet on the terminal", u"search --format xls"_s, u"'--format xls' needs --output FILE"_s);
        row("times", u"search --between 08:00:00-18:00:00"_s, u"'08:00:00-18:00:00' is not possible"_s);
        row("past midnight", u"search --between 22:00..06:00"_s, u"'22:00..06:00' is not possible"_s);
        row("channels", u"search --channels AE"_s, u"'AE' is not possible"_s);
        row("code", u"search --code 12a"_s, u"'12a' is not possible"_s);
        row("code and name", u"search --code 12 --surname Rossi"_s, u"The option '--code' does not go with"_s);
        row("separator", u"users --format csv --separator \u20AC"_s, u"'\u20AC' is not possible"_s);
        row("no target", u"backup"_s, u"'backup' needs TARGET"_s);
        row("cursor", u"follow --after x"_s, u"'x' is not possible for --after"_s);
        row("empty folder", u"users --folder="_s, u"The value of the option '--folder DIR' is missing"_s);
        row("all right", u"search --from 2004-03-01 --to today --type TX --channels ab --separator ; --format csv"_s,
            {});
    }
    void arguments()
    {
        QFETCH(QString, line);
        QFETCH(QString, told);
        const QString told0 = wrong(line);
        QVERIFY2(told0.startsWith(told) && told0.isEmpty() == told.isEmpty(), qPrintable(told0));
    }

    void lines_data()
    {
        const Rows<QString, QByteArray> row("format", "last");
        row("csv", u"csv --separator ;"_s,
            "date;time;type;code;surname;name;channel;channel_disabled;interface_disabled\r\n"
            "2004-03-04;23:59:59;TX;7;;;A;;X\r\n"
            "2004-03-05;08:00:00;DKS;12;\"O\"\"Neil;\";Zo\xC3\xAB;B;X;\r\n"
            "08/13/2004;09:00:00;TX;12;;;A;;\r\n");
        row("json", u"json"_s,
            "{\"time\":\"2004-03-04T23:59:59+01:00\",\"type\":\"TX\",\"code\":\"7\",\"surname\":\"\",\"name\":\"\","
            "\"channel\":\"A\",\"channel_disabled\":false,\"interface_disabled\":true}\n"
            "{\"time\":\"2004-03-05T08:00:00+01:00\",\"type\":\"DKS\",\"code\":\"12\",\"surname\":\"O\\\"Neil;\","
            "\"name\":\"Zo\xC3\xAB\",\"channel\":\"B\",\"channel_disabled\":true,\"interface_disabled\":false}\n"
            "{\"time\":\"08/13/2004T09:00:00\",\"type\":\"TX\",\"code\":\"12\",\"surname\":\"\",\"name\":\"\","
            "\"channel\":\"A\",\"channel_disabled\":false,\"interface_disabled\":false}\n");
        row("table", u"table"_s,
            "Date        Time      Type  Code       User Surname     User First name  CH  CH DIS  KOR DIS\n"
            "2004-03-04  23:59:59  TX    7                                            A           X\n"
            "2004-03-05  08:00:00  DKS   12         O\"Neil;          Zo\xC3\xAB              B   X\n"
            "08/13/2004  09:00:00  TX    12                                           A\n");
    }
    void lines()
    {
        QFETCH(QString, format);
        QFETCH(QByteArray, last);
        qputenv("TZ", "Europe/Rome");
        TestFolder test;
        test.addUsers({{u"12"_s, u"DKS"_s, u"O\"Neil;"_s, u"Zo\u00EB"_s}});
        test.addEvents(u"04-03-2004"_s, {u"7,TX,A,,X,23:59:59"_s.split(u',')});
        test.addEvents(u"05-03-2004"_s, {u"12,DKS,B,X,,08:00:00"_s.split(u','), u"12,TX,A,,,09:00:00"_s.split(u',')});
        // A row that no program of ours has written is told as it stands.
        test.execute(ArchiveName::events(toDay), "UPDATE Eventi SET Data = '08/13/2004' WHERE ProgEv = 2");
        ToolRun run(test);
        QCOMPARE(search(run, options(u"search --from yesterday --to today --format "_s + format)), last);
        qunsetenv("TZ");
    }

    /// What a search by the window finds, in its order, while the day is written to and without a trace in the folder.
    void sameRowsAsTheWindow_data()
    {
        const Rows<QString> row("filter");
        row("all", u""_s);
        row("code", u"--code 0012"_s);
        row("person", u"--surname rossi"_s);
        row("state and channels", u"--only disabled --channels BD"_s);
        row("type and time", u"--type dks --between 08:00..08:20"_s);
    }
    void sameRowsAsTheWindow()
    {
        QFETCH(QString, filter);
        TestFolder test;
        test.addUsers({listOf("12,TX,Rossi,Mario"), listOf("7,DKS,Bianchi,Anna")});
        QList<QStringList> events;
        for (int i = 0; i < 500; ++i)
            events.append({i % 3 ? u"12"_s : u"7"_s, i % 3 ? u"TX"_s : u"DKS"_s, QString(QChar(u'A' + i % 4)),
                           i % 5 ? u""_s : u"X"_s, i % 7 ? u""_s : u"X"_s,
                           QTime(8, i / 10, i % 10).toString(u"HH:mm:ss"_s)});
        test.addEvents(u"03-03-2004"_s, events);
        test.addEvents(u"04-03-2004"_s, events);
        test.damage(ArchiveName::events(QDate(2004, 3, 4)));
        QVERIFY(QFile::copy(test.folder.path(ArchiveName::events(QDate(2004, 3, 4))),
                            test.folder.path(u"Archivi/Eventi_04-03-2004.zeb.guasto"_s)));
        test.addEvents(u"05-03-2004"_s, events);
        const QString range = u"search --from 2004-03-01 --to 2004-03-05 --format csv "_s;
        const ToolOptions wanted = options(range + filter);
        QVERIFY(!wanted.wrong);
        TypedQuery query = wanted.query;
        if (!wanted.surname.isEmpty())
            query.person = EventQuery::Person{u"12"_s};

        QStringList expected;
        {
            UserDirectory users(test.archives, ArchiveName::SearchUsers);
            QVERIFY(users.open());
            EventSearch window(test.archives, users);
            QVERIFY(window.start(eventQuery(query)) && finish(window));
            for (qsizetype i = 0; i < window.results().count(); ++i) {
                const ListedEvent event = window.results().row(i).value();
                expected.append(QStringList{event.event.Data.toString(Qt::ISODate), OraTesto(event.event.Ora),
                                            typeText(event.event.Tipo), event.event.Codice, event.Cognome, event.Nome,
                                            event.event.Canale, markText(event.event.AbCh),
                                            markText(event.event.KorDis)}
                                    .join(u','));
            }
        }
        QVERIFY(expected.size() > 20);
        test.disk.steps.clear();
        const QStringList before = test.files(u"Archivi"_s);
        ToolRun run(test);
        const Database held = test.hold(ArchiveName::events(toDay), "PRAGMA journal_mode = WAL; BEGIN IMMEDIATE");
        const QStringList open = test.files(u"Archivi"_s);
        QStringList found = QString::fromUtf8(search(run, wanted, [&] {
                                // Nothing of the folder is held between two turns.
                                QCOMPARE(test.files(u"Archivi"_s), open);
                            })).split(u"\r\n"_s);
        found.removeFirst();
        found.removeLast();
        QCOMPARE(found, expected);
        QCOMPARE(test.disk.steps, QStringList());
        QVERIFY(run.told.filter(u"incomplete"_s).size() == 1);
    }

    void people()
    {
        TestFolder test;
        test.addUsers({listOf("12,TX,Rossi,Mario"), listOf("13,TX,ROSSI,Anna"), listOf("14,TX,Neri,Anna")});
        ToolRun run(test);
        QVERIFY(search(run, options(u"search --surname Rossi"_s))
                    .startsWith("FAULT Several users have this name: choose one of 12, 13"));
        QVERIFY(search(run, options(u"search --surname Verdi"_s)).startsWith("FAULT Code or name is not"));
        QVERIFY(!search(run, options(u"search --surname rossi --name anna"_s)).startsWith("FAULT"));
    }

    /// The file of the window, whatever order and truncated codes the register has.
    void usersAsTheWindowExports()
    {
        TestFolder test;
        test.addUsers({listOf("9,TX,=a"), listOf("70007,TX,b"), listOf("10,DKS,c")});
        ToolRun run(test);
        UsersCommand command(run.site(), {Format::Csv, ';'}, Protocol::Wiegand26Site, run);
        SavedUsers saved(test.archives);
        QVERIFY(finish(command) && finish(saved));
        const UserExport window{test.directory.filePath(u"users.csv"_s), ';', Protocol::Wiegand26Site};
        QVERIFY(finish(*window.task(test.disk, run.texts, saved.users())));
        QCOMPARE(run.output, test.read(u"users.csv"_s));
    }

    /// A day whose file changes while it is read without a lock is read again.
    void changedWhileRead()
    {
        TestFolder test;
        test.addUsers({});
        QList<QStringList> events(3000, u"12,TX,A,,,08:00:00"_s.split(u','));
        test.addEvents(u"05-03-2004"_s, events);
        ToolRun run(test);
        UserDirectory users(run.archives);
        struct Counting : EventSink {
            Result<void> add(const Statement &row, const SearchResults::Columns &) override
            {
                numbers.append(row.integer(0));
                if (numbers.size() == 1500 && change)
                    std::exchange(change, nullptr)();
                return {};
            }
            void keep() override { kept = numbers.size(); }
            void takeBack() override
            {
                ++changes;
                numbers.resize(kept);
            }
            std::function<void()> change;
            QList<qint64> numbers;
            qsizetype kept = 0;
            int changes = 0;
        } sink;
        sink.change = [&test] { test.execute(ArchiveName::events(toDay), "UPDATE Eventi SET Codice = '13'"); };
        EventSearch search(run.archives, users, sink);
        QVERIFY(search.start({{}, toDay, toDay, QTime(0, 0), QTime(23, 59, 59)}));
        QVERIFY(finish(search));
        QCOMPARE(sink.changes, 1);
        QCOMPARE(sink.numbers.size(), 3000);
        QVERIFY(std::is_sorted(sink.numbers.begin(), sink.numbers.end()));
        QVERIFY(search.isComplete());
    }
};

QTEST_GUILESS_MAIN(TestTool)
#include "tst_tool.moc"
