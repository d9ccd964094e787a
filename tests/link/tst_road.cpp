#include "link/EventLog.h"
#include "link/EventRoad.h"
#include "support/Fixtures.h"

#include <QSignalSpy>

namespace {

/// The log of the day in a folder of its own.
struct Log : TestFolder {
    Log() { log.open(); }

    FakeClock clock;
    Notices notices;
    EventLog log{archives, clock, notices};
};

} // namespace

class TestRoad : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void records_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("event");
        const auto row = [](const char *text, const char *ending, const char *event) {
            QTest::newRow(text) << QByteArray(text) + ending
                                << (*event ? QString(QLatin1String(event)).arg(u"05-03-2004|07:45:00"_s) : QString());
        };
        row("R/A-000012345X..", "\r", "12345|%1|TX|A|||20040305");
        row("K/B-000000777.D.", "\r", "777|%1|DKS|B|X|X|20040305");
        row("r/D-999999999XDx", "\r", "999999999|%1|DKS|D||X|20040305");
        row("R/C-000000000.. ", "\r", "|%1|TX|C|X||20040305");
        row("R/A-000012345Y..", "\r", "");
        row("R/A-000012345X..", "", "");
        row("R/A-000012345X..", "\n", "");
        row("R/A-000012345X...", "\r", "");
        row("R/A-00012345X..", "\r", "");
        row("", "", "");
    }
    void records()
    {
        QFETCH(QByteArray, line);
        const std::optional<EventRecord> record = decodeRecord(line);
        const QString event = record ? asText(makeEvent(*record, FakeClock().now())) : QString();
        QTEST(event, "event");
    }

    void publishesAllStoresRegistered()
    {
        Log test;
        EventLog &log = test.log;
        test.addUsers({listOf("12345,TX")});
        UserDirectory users(test.archives, ArchiveName::UsersSnapshot);
        QVERIFY(users.open().ok());
        EventRoad road(users, log, test.clock);
        QSignalSpy stored(&log, &EventLog::stored);

        QString told;
        connect(&road, &EventRoad::recordReceived, this,
                [&told](const EventRecord &record) { told = u'|' + record.code + u'|' + typeText(record.type); });
        const auto publish = [&](const char *line) {
            told.clear();
            return (road.RegistraEvento(line) ? u"kept"_s : u"not kept"_s) + told;
        };
        QCOMPARE(publish("R/A-000012345X..\r"), u"kept|12345|TX"_s);
        QCOMPARE(publish("K/B-000012345.D.\r"), u"kept|12345|DKS"_s); // the type is not compared
        QCOMPARE(publish("R/A-000012346X..\r"), u"not kept|12346|TX"_s);
        QCOMPARE(publish("R/A-000000000X..\r"), u"not kept||TX"_s);
        QCOMPARE(publish("R/A-000012345Y..\r"), u"not kept"_s);
        QCOMPARE(stored.size(), 2);

        // The register was saved with another code: the next event counts by the new one.
        test.addUsers({listOf("12346,TX")});
        test.write(u"Archivi/Anagrafica.evn"_s, "left over");
        QVERIFY(users.open() && road.RegistraEvento("R/A-000012346X..\r"));
        log.close();
        QCOMPARE(test.rows(ArchiveName::events(u"05-03-2004"_s), u"SELECT * FROM Eventi"_s),
                 QStringList({u"1|12345|05-03-2004|07:45:00|TX|A|||20040305||"_s,
                              u"2|12345|05-03-2004|07:45:00|DKS|B|X|X|20040305||"_s,
                              u"3|12346|05-03-2004|07:45:00|TX|A|||20040305||"_s}));
        QVERIFY(test.notices.isEmpty());
    }

    void dayOfAnEvent()
    {
        Log test;
        EventLog &log = test.log;
        FakeClock &clock = test.clock;
        const auto append = [&] { return log.append(makeEvent(*decodeRecord("R/A-000012345X..\r"), clock.now())); };
        const auto rows = [&](const char *day) {
            return test.rows(ArchiveName::events(QLatin1String(day)),
                             u"SELECT Data, Ora FROM Eventi ORDER BY ProgEv"_s);
        };
        QVERIFY(!log.changeDayIfNeeded());

        // What the clock does, whether the tick of ten seconds comes before the event, and where the row goes.
        using Step = std::tuple<const char *, qint64, bool, const char *, const char *>;
        for (const auto &[what, seconds, tick, archive, row] : std::initializer_list<Step>{
                 {"nothing", 0, true, "05-03-2004", "05-03-2004|07:45:00"},
                 {"an hour back", -3600, true, "05-03-2004", "05-03-2004|06:45:00"},
                 {"past midnight, before the tick", 64'000, false, "05-03-2004", "06-03-2004|00:31:40"},
                 {"after the tick", 10, true, "06-03-2004", "06-03-2004|00:31:50"},
                 {"a day forward", 86'400, true, "07-03-2004", "07-03-2004|00:31:50"},
                 {"a day back", -86'400, true, "06-03-2004", "06-03-2004|00:31:50"},
                 {"two days forward, before the tick", 172'800, false, "06-03-2004", "08-03-2004|00:31:50"},
                 {"after the tick", 1, true, "08-03-2004", "08-03-2004|00:31:51"},
             }) {
            clock.moment = clock.moment.addSecs(seconds);
            if (tick)
                log.changeDayIfNeeded();
            QVERIFY2(append(), what);
            QCOMPARE(rows(archive).last(), QLatin1String(row));
        }
        // The hour that comes twice when summer time ends: the rows keep the order in which they came.
        const QTimeZone rome("Europe/Rome");
        for (const qint64 utc : {1099180740, 1099180800, 1099184340, 1099184400}) {
            clock.moment = QDateTime::fromSecsSinceEpoch(utc, rome);
            log.changeDayIfNeeded();
            QVERIFY(append());
        }
        QCOMPARE(rows("31-10-2004"),
                 listOf("31-10-2004|01:59:00,31-10-2004|02:00:00,31-10-2004|02:59:00,31-10-2004|02:00:00"));

        // A day that cannot be opened is told once, and the day before goes on until it can.
        clock.moment = clock.moment.addDays(1);
        QVERIFY(test.folder.remove(u"Archivi/Eventiorg.zeb"_s).ok());
        QVERIFY(!log.changeDayIfNeeded() && !log.changeDayIfNeeded());
        QCOMPARE(takeNotices(test.notices).size(), 1);
        QVERIFY(append());
        log.close();
        QCOMPARE(rows("31-10-2004").size(), 5);
        QVERIFY(!test.folder.exists(ArchiveName::events(u"31-10-2004"_s) + u"-wal"_s));
    }

    void damagedDayIsSetAside()
    {
        const QString day = ArchiveName::events(u"05-03-2004"_s);
        const QByteArray another = TestFolder().read(QStringView(ArchiveName::BandsTemplate).toString());
        for (const QByteArray &content : {QByteArray(20000, '\x5A'), QByteArray(""), another}) {
            TestFolder test;
            test.write(day, content);
            FakeClock clock;
            Notices notices;
            EventLog log(test.archives, clock, notices);
            log.open();
            QVERIFY(log.append({}));
            const QStringList told = takeNotices(notices);
            QVERIFY2(!told.isEmpty() && told[0].contains(day + u".guasto'"_s), qPrintable(told.join(u'/')));
            QCOMPARE(test.read(day + u".guasto"_s).size(), content.size());
        }
    }
};

QTEST_GUILESS_MAIN(TestRoad)
#include "tst_road.moc"
