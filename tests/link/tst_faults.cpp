#include "archives/Tables.h"
#include "link/EventLog.h"
#include "link/EventRoad.h"
#include "support/Fixtures.h"
#include "support/RecordingVfs.h"

#include <QTest>

#include <sqlite3.h>

namespace {

const QString today = u"05-03-2004"_s;
const QString statement = u"SELECT Codice, Data, Ora, Tipo, Canale, DataOrd FROM Eventi ORDER BY ProgEv"_s;

Event anEvent(int code, const FakeClock &clock)
{
    return makeEvent(*decodeRecord("R/A-" + QByteArray::number(code).rightJustified(9, '0') + "X..\r"), clock.now());
}

QString row(const Event &e)
{
    return QStringList{e.Codice, e.Data, e.Ora, e.Tipo, e.Canale, e.DataOrd}.join(QLatin1Char('|'));
}

} // namespace

class TestFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void waitsUntilItCanBeStored_data();
    void waitsUntilItCanBeStored();
    void waitingIsBounded();
    void eachWaitingEventGoesToItsDay();
    void whatCannotBeStoredAtTheEndIsTold();
    void damagedWhileOpen();
    void registerLockedAtTheStart();
    void flushedBeforeTold();
    void powerCutAtAnyStep_data();
    void powerCutAtAnyStep();
    void memoryDoesNotGrow();
};

void TestFaults::waitsUntilItCanBeStored_data()
{
    QTest::addColumn<int>("refusal"); // of the device, or 0 for another program's lock
    QTest::addColumn<QString>("reason");
    QTest::newRow("disk full") << SQLITE_FULL << "disk full";
    QTest::newRow("write error") << SQLITE_IOERR_WRITE << "read or write error";
    QTest::newRow("locked") << 0 << "locked by another program";
}

void TestFaults::waitsUntilItCanBeStored()
{
    QFETCH(int, refusal);
    QFETCH(QString, reason);
    RecordingVfs vfs;
    TestFolder test;
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    QStringList told;
    connect(&log, &EventLog::stored, this, [&told](const Event &e) { told.append(row(e)); });
    log.open();
    QVERIFY(log.append(anEvent(1, clock)));

    std::optional<Database> other;
    if (refusal == 0) {
        other = std::move(test.archives.open(ArchiveName::events(today), Database::Use::Safe).value());
        QVERIFY(other->execute("BEGIN IMMEDIATE").ok());
    }
    vfs.refusal = refusal;
    QStringList expected = told;
    for (int code = 2; code <= 4; ++code) {
        clock.moment = clock.moment.addSecs(20);
        QVERIFY(!log.append(anEvent(code, clock)));
        expected.append(row(anEvent(code, clock)));
    }
    log.retry();
    QCOMPARE(told.size(), 1);
    QCOMPARE(log.waiting(), 3);
    QStringList notice = takeNotices(notices);
    QCOMPARE(notice.size(), 1);
    QVERIFY2(notice[0].endsWith(reason), qPrintable(notice[0]));

    vfs.refusal = 0;
    other.reset();
    clock.moment = clock.moment.addSecs(3600);
    log.retry();
    QCOMPARE(told, expected);
    QCOMPARE(takeNotices(notices), QStringList{u"The events that waited (3) have been stored."_s});
    QVERIFY(log.append(anEvent(5, clock)));
    log.close();
    QCOMPARE(test.rows(ArchiveName::events(today), statement), expected + QStringList{row(anEvent(5, clock))});
    QVERIFY(notices.isEmpty());
}

void TestFaults::waitingIsBounded()
{
    RecordingVfs vfs;
    TestFolder test;
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    log.open();
    vfs.refusal = SQLITE_FULL;
    for (int code = 1; code <= EventLog::WaitingLimit + 7; ++code)
        log.append(anEvent(code, clock));
    QCOMPARE(log.waiting(), EventLog::WaitingLimit);
    for (int second = 0; second < 60; ++second)
        log.retry();
    QCOMPARE(takeNotices(notices).mid(1), QStringList{u"Events lost: 7"_s});
    log.append(anEvent(1, clock));
    vfs.refusal = 0;
    while (log.waiting() > 0)
        log.retry();
    QCOMPARE(takeNotices(notices),
             QStringList({u"The events that waited (10000) have been stored."_s, u"Events lost: 1"_s}));
    log.close();
    QCOMPARE(test.rows(ArchiveName::events(today), statement).first().section(QLatin1Char('|'), 0, 0), u"9"_s);
}

void TestFaults::eachWaitingEventGoesToItsDay()
{
    RecordingVfs vfs;
    TestFolder test;
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    log.open();
    vfs.refusal = SQLITE_FULL;
    log.append(anEvent(1, clock));
    clock.moment = clock.moment.addDays(1);
    log.changeDayIfNeeded();
    log.append(anEvent(2, clock));
    vfs.refusal = 0;
    log.retry();
    QCOMPARE(log.day(), u"06-03-2004"_s);
    QVERIFY(log.append(anEvent(3, clock)));
    log.close();
    QCOMPARE(test.rows(ArchiveName::events(today), statement).size(), 1);
    QCOMPARE(test.rows(ArchiveName::events(u"06-03-2004"_s), statement).size(), 2);
}

void TestFaults::whatCannotBeStoredAtTheEndIsTold()
{
    RecordingVfs vfs;
    TestFolder test;
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    log.open();
    vfs.refusal = SQLITE_FULL;
    log.append(anEvent(1, clock));
    log.append(anEvent(2, clock));
    log.close();
    QCOMPARE(takeNotices(notices).mid(1), QStringList{u"Events lost: 2"_s});
}

void TestFaults::damagedWhileOpen()
{
    TestFolder test;
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    log.open();
    QVERIFY(log.append(anEvent(1, clock)));
    const QString name = ArchiveName::events(today);
    {
        // Another program drops the table: what is left is no archive of ours.
        Result<Database> other = test.archives.open(name, Database::Use::Safe);
        QVERIFY(other.value().execute("DROP TABLE Eventi").ok());
    }
    QVERIFY(log.append(anEvent(2, clock)));
    const QStringList told = takeNotices(notices);
    QCOMPARE(told.size(), 1);
    QVERIFY2(told[0].contains(u".guasto"_s), qPrintable(told[0]));
    log.close();
    QCOMPARE(test.rows(name, statement), QStringList{row(anEvent(2, clock))});

    // Damage behind the first page shows only when a row is put there.
    log.open();
    log.close();
    QByteArray content = test.read(name);
    for (qsizetype at = 4096; at < content.size(); at += 512)
        content[at] = static_cast<char>(~content[at]);
    test.write(name, content);
    log.open();
    QVERIFY(log.append(anEvent(2, clock)));
    QCOMPARE(takeNotices(notices).size(), 1);

    // A damaged template makes nothing, and is told once.
    clock.moment = clock.moment.addDays(1);
    const QByteArray good = test.read(u"Archivi/Eventiorg.zeb"_s);
    test.write(u"Archivi/Eventiorg.zeb"_s, QByteArray(8192, 'x'));
    for (int tick = 0; tick < 5; ++tick)
        QVERIFY(!log.changeDayIfNeeded());
    QCOMPARE(takeNotices(notices).size(), 1);
    QVERIFY(!test.folder.exists(ArchiveName::events(u"06-03-2004"_s)));
    test.write(u"Archivi/Eventiorg.zeb"_s, good);
    clock.moment = clock.moment.addDays(-1);
    log.close();

    // Another deletes the file: the next tick makes it anew.
    log.open();
    QVERIFY(test.archives.remove(name).ok());
    QVERIFY(log.changeDayIfNeeded());
    QCOMPARE(takeNotices(notices).size(), 1);
    QVERIFY(log.append(anEvent(3, clock)));
    log.close();
    QCOMPARE(test.rows(name, statement), QStringList{row(anEvent(3, clock))});
}

void TestFaults::registerLockedAtTheStart()
{
    TestFolder test;
    test.addUsers({{u"1"_s, u"TX"_s}});
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    log.open();
    UsersSnapshot users(test.archives);
    EventRoad road(users, log, clock);
    {
        // In the middle of a change its journal stands beside the register: a copy now would be torn.
        Result<Database> other = test.archives.open(ArchiveName::Users, Database::Use::Safe);
        QVERIFY(other.value().execute("BEGIN EXCLUSIVE; INSERT INTO Utenti (Codice) VALUES ('2')").ok());
        QCOMPARE(users.refresh().fault().code, FaultCode::Locked);
        QVERIFY(!road.RegistraEvento("R/A-000000001X..\r"));
        QVERIFY(!road.RegistraEvento("R/A-000000002X..\r"));
        QVERIFY(!road.RegistraEvento("R/A-000000003X..\r"));
        clock.moment = clock.moment.addDays(1);
        QVERIFY(other.value().execute("COMMIT").ok());
    }
    QVERIFY(users.refresh().ok());
    log.changeDayIfNeeded();
    road.usersKnown();
    QVERIFY(road.RegistraEvento("R/A-000000001X..\r"));
    log.close();
    // Each in the archive of its own day.
    const auto rows = [&](const QString &day) {
        return test.rows(ArchiveName::events(day), u"SELECT Codice, Data FROM Eventi ORDER BY ProgEv"_s);
    };
    QCOMPARE(rows(today), QStringList({u"1|05-03-2004"_s, u"2|05-03-2004"_s}));
    QCOMPARE(rows(u"06-03-2004"_s), QStringList{u"1|06-03-2004"_s});
}

void TestFaults::flushedBeforeTold()
{
    RecordingVfs vfs;
    TestFolder test;
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    log.open();
    int told = 0;
    connect(&log, &EventLog::stored, this, [&] {
        ++told;
        QVERIFY2(vfs.steps.last().startsWith(u"flush"_s), qPrintable(vfs.steps.last()));
        vfs.steps.append(u"told"_s);
    });
    for (int code = 1; code <= 5; ++code)
        QVERIFY(log.append(anEvent(code, clock)));
    QCOMPARE(told, 5);
    // One flush an event once the journal stands.
    const qsizetype second = vfs.steps.indexOf(u"told"_s) + 1;
    QCOMPARE(vfs.steps.mid(second).filter(u"flush"_s).size(), 4);
    // Whole files: nothing is renamed that was not flushed.
    for (qsizetype i = 1; i < test.disk.steps.size(); ++i) {
        if (test.disk.steps[i].startsWith(u"rename"_s))
            QVERIFY2(test.disk.steps[i - 1].startsWith(u"flush"_s), qPrintable(test.disk.steps[i - 1]));
    }
    QVERIFY(test.disk.steps.contains(u"rename Eventi_05-03-2004.zeb"_s));
}

void TestFaults::powerCutAtAnyStep_data()
{
    QTest::addColumn<bool>("keepsAll");
    QTest::newRow("the device kept all that was written") << true;
    QTest::newRow("the device kept only what was flushed") << false;
}

void TestFaults::powerCutAtAnyStep()
{
    QFETCH(bool, keepsAll);
    bool ranThrough = false;
    for (int stop = 0; !ranThrough; ++stop) {
        QVERIFY(stop < 200);
        TestFolder test;
        QStringList told;
        {
            RecordingVfs vfs;
            vfs.stopAt = stop;
            FakeClock clock;
            Notices notices;
            EventLog log(test.archives, clock, notices);
            connect(&log, &EventLog::stored, this, [&told](const Event &e) { told.append(row(e)); });
            log.open();
            for (int code = 1; code <= 4; ++code)
                log.append(anEvent(code, clock));
            const qsizetype beforeEnd = told.size();
            log.close();
            ranThrough = beforeEnd == 4 && vfs.steps.size() < stop;
            if (!keepsAll)
                vfs.loseWhatWasNotFlushed();
        }
        const QStringList rows = test.rows(ArchiveName::events(today), statement);
        QVERIFY2(rows.size() >= told.size() && rows.mid(0, told.size()) == told,
                 qPrintable(u"cut at %1: %2"_s.arg(stop).arg(rows.join(QLatin1Char(' ')))));
        for (const QString &one : rows)
            QCOMPARE(one.count(QLatin1Char('|')), 5);
    }
}

void TestFaults::memoryDoesNotGrow()
{
    TestFolder test;
    test.addUsers({{u"1"_s, u"TX"_s}});
    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    log.open();
    UsersSnapshot users(test.archives);
    QVERIFY(users.refresh().ok());
    EventRoad road(users, log, clock);
    const auto receive = [&](int count) {
        for (int i = 0; i < count; ++i)
            road.RegistraEvento(i % 2 ? "R/A-000000001X..\r" : "R/A-000000009X..\r");
        return residentPages();
    };
    const qint64 early = receive(5'000);
    const qint64 late = receive(45'000);
    QVERIFY2(late - early < 512, qPrintable(QString::number(late - early)));
}

QTEST_GUILESS_MAIN(TestFaults)
#include "tst_faults.moc"
