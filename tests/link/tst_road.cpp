#include "archives/Tables.h"
#include "link/EventLog.h"
#include "link/EventRoad.h"
#include "support/Fixtures.h"

#include <QSignalSpy>
#include <QTest>

class TestRoad : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void records_data();
    void records();
    void publishesAllStoresRegistered();
    void dayOfAnEvent();
    void damagedDayIsSetAside_data();
    void damagedDayIsSetAside();
    void namesOfTheSnapshot();
};

void TestRoad::records_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("event");
    const auto row = [](const char *text, const char *ending, const char *event) {
        QTest::newRow(text) << QByteArray(text) + ending
                            << (*event ? QString(QLatin1String(event)).arg(QStringLiteral("05-03-2004|07:45:00"))
                                       : QString());
    };
    row("R/A-000012345X..", "\r", "12345|%1|TX|A|||20040305");
    row("K/B-000000777.D.", "\r", "777|%1|DKS|B|X|X|20040305");
    row("r/D-999999999XDx", "\r", "999999999|%1|DKS|D||X|20040305");
    row("R/C-000000000.. ", "\r", "|%1|TX|C|X||20040305");
    row("R/A-000012345Y..", "\r", "");
    row("R/A-000012345x..", "\r", "");
    row("R/A-000012345X..", "", "");
    row("R/A-000012345X..", "\n", "");
    row("R-A-000012345X..", "\r", "");
    row("R/A/000012345X..", "\r", "");
    row("R/A-000012345X...", "\r", "");
    row("R/A-00012345X..", "\r", "");
    row(" R/A-000012345X.", "\r", "");
    row("", "", "");
}

void TestRoad::records()
{
    QFETCH(QByteArray, line);
    const std::optional<EventRecord> record = decodeRecord(line);
    const QString event = record ? asText(makeEvent(*record, FakeClock().now())) : QString();
    QTEST(event, "event");
}

void TestRoad::publishesAllStoresRegistered()
{
    TestFolder test;
    test.addUsers({{QStringLiteral("12345"), QStringLiteral("TX")}});
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    log.open();
    UsersSnapshot users(test.archives);
    QVERIFY(users.refresh().ok());
    EventRoad road(users, log, clock);
    QSignalSpy stored(&road, &EventRoad::stored);

    const struct {
        const char *line;
        bool kept;
        const char *code;
        const char *type;
    } cases[] = {
        {"R/A-000012345X..\r", true, "12345", "TX"},
        {"K/B-000012345.D.\r", true, "12345", "DKS"}, // the type is not compared
        {"R/A-000012346X..\r", false, "12346", "TX"},
        {"R/A-000000000X..\r", false, "", "TX"},
    };
    for (const auto &one : cases) {
        road.lastReceived().received = false;
        QCOMPARE(road.RegistraEvento(one.line), one.kept);
        QVERIFY(road.lastReceived().received);
        QCOMPARE(road.lastReceived().code, QLatin1String(one.code));
        QCOMPARE(road.lastReceived().type, QLatin1String(one.type));
    }
    road.lastReceived().received = false;
    QVERIFY(!road.RegistraEvento("R/A-000012345Y..\r"));
    QVERIFY(!road.lastReceived().received);
    QCOMPARE(stored.size(), 2);

    // The register was saved with another code: the next event counts by the new one.
    test.addUsers({{QStringLiteral("12346"), QStringLiteral("TX")}});
    test.write(QStringLiteral("Archivi/Anagrafica.evn"), "left over");
    QVERIFY(users.refresh().ok());
    QVERIFY(road.RegistraEvento("R/A-000012346X..\r"));
    log.close();
    QCOMPARE(test.rows(ArchiveName::events(QStringLiteral("05-03-2004")), QStringLiteral("SELECT * FROM Eventi")),
             QStringList({QStringLiteral("1|12345|05-03-2004|07:45:00|TX|A|||20040305||"),
                          QStringLiteral("2|12345|05-03-2004|07:45:00|DKS|B|X|X|20040305||"),
                          QStringLiteral("3|12346|05-03-2004|07:45:00|TX|A|||20040305||")}));
    QVERIFY(notices.isEmpty());
}

void TestRoad::dayOfAnEvent()
{
    TestFolder test;
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    const Event event = makeEvent(*decodeRecord("R/A-000012345X..\r"), clock.now());
    QCOMPARE(log.append(event).fault().code, FaultCode::NotOpen);
    log.open();
    QVERIFY(test.folder.exists(ArchiveName::events(QStringLiteral("05-03-2004"))));
    QVERIFY(!log.changeDayIfNeeded());
    clock.moment = clock.moment.addDays(1);
    QCOMPARE(log.append(event).value(), 1);
    QVERIFY(log.changeDayIfNeeded());
    QVERIFY(!log.changeDayIfNeeded());
    QCOMPARE(log.append(event).value(), 1);
    QCOMPARE(log.append(event).value(), 2);

    // A day that cannot be opened is told once, and the day before goes on until it can.
    clock.moment = clock.moment.addDays(1);
    QVERIFY(test.folder.remove(QStringLiteral("Archivi/Eventiorg.zeb")).ok());
    QVERIFY(!log.changeDayIfNeeded());
    QVERIFY(!log.changeDayIfNeeded());
    QCOMPARE(takeNotices(notices).size(), 1);
    QCOMPARE(log.append(event).value(), 3);
    log.close();
    QCOMPARE(test.rows(ArchiveName::events(QStringLiteral("06-03-2004")), QStringLiteral("SELECT Codice FROM Eventi"))
                 .size(),
             3);
    QVERIFY(!test.folder.exists(ArchiveName::events(QStringLiteral("06-03-2004")) + QStringLiteral("-wal")));
}

void TestRoad::damagedDayIsSetAside_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<const char16_t *>("copied");
    QTest::newRow("noise") << QByteArray(20000, '\x5A') << static_cast<const char16_t *>(nullptr);
    QTest::newRow("empty") << QByteArray("") << static_cast<const char16_t *>(nullptr);
    QTest::newRow("another archive") << QByteArray() << ArchiveName::BandsTemplate;
}

void TestRoad::damagedDayIsSetAside()
{
    QFETCH(QByteArray, content);
    QFETCH(const char16_t *, copied);
    TestFolder test;
    const QString day = ArchiveName::events(QStringLiteral("05-03-2004"));
    if (copied)
        content = test.read(QStringView(copied).toString());
    test.write(day, content);
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    log.open();
    QVERIFY(log.append({}).ok());
    const QStringList told = takeNotices(notices);
    QCOMPARE(told.size(), 1);
    QVERIFY2(told[0].contains(day + QStringLiteral(".guasto'")), qPrintable(told[0]));
    QCOMPARE(test.read(day + QStringLiteral(".guasto")).size(), content.size());
}

void TestRoad::namesOfTheSnapshot()
{
    TestFolder test;
    test.addUsers({{QStringLiteral("7"), QStringLiteral("TX"), QStringLiteral("O'Hara"), QStringLiteral("Sean")},
                   {QStringLiteral("7"), QStringLiteral("DKS"), QStringLiteral("Wei\u00DF"), QStringLiteral("Greta")}});
    UsersSnapshot users(test.archives);
    QVERIFY(users.refresh().ok());
    QCOMPARE(users.name(QStringLiteral("7"), QStringLiteral("DKS")).Cognome, QStringLiteral("Wei\u00DF"));
    QCOMPARE(users.name(QStringLiteral("7"), QStringLiteral("TX")).Cognome, QStringLiteral("O'Hara"));
    QCOMPARE(users.name(QStringLiteral("8"), QStringLiteral("TX")).Cognome, QString());
    // A register that cannot be read leaves the users known so far.
    test.write(QStringLiteral("Archivi/Anagrafico.zeb"), "x");
    QVERIFY(!users.refresh());
    QVERIFY(users.contains(QStringLiteral("7")));
}

QTEST_GUILESS_MAIN(TestRoad)
#include "tst_road.moc"
