#include "archives/Tables.h"
#include "link/EventLog.h"
#include "link/EventRoad.h"
#include "support/Fixtures.h"
#include "support/RecordingVfs.h"

#include <sqlite3.h>

namespace {

const QString today = u"05-03-2004"_s;
const QString statement = u"SELECT Codice, Data, Ora, Tipo, Canale, DataOrd FROM Eventi ORDER BY ProgEv"_s;

QString row(const Event &e)
{
    return QStringList{e.Codice, e.Data, e.Ora, e.Tipo, e.Canale, e.DataOrd}.join(u'|');
}

/// The log of the day in a folder; what it has told is noted.
struct Day {
    explicit Day(TestFolder &folder) : test(folder)
    {
        QObject::connect(&log, &EventLog::stored, [this](const Event &e) { told.append(row(e)); });
        log.open();
    }
    Event event(int code) const
    {
        return makeEvent(*decodeRecord("R/A-" + QByteArray::number(code).rightJustified(9, '0') + "X..\r"),
                         clock.now());
    }
    bool append(int code) { return log.append(event(code)); }
    QStringList rows(const QString &day = today) { return test.rows(ArchiveName::events(day), statement); }

    TestFolder &test;
    FakeClock clock;
    Notices notices;
    EventLog log{test.archives, clock, notices};
    QStringList told;
};

/// The same in a folder of its own, on a device that can refuse.
struct Stage {
    RecordingVfs vfs;
    TestFolder test;
    Day day{test};
};

} // namespace

class TestFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void waitsUntilItCanBeStored_data()
    {
        const Rows<int, QString> row("refusal", "reason"); // of the device, or 0 for another program's lock
        row("disk full", SQLITE_FULL, u"disk full"_s);
        row("write error", SQLITE_IOERR_WRITE, u"read or write error"_s);
        row("locked", 0, u"locked by another program"_s);
    }
    void waitsUntilItCanBeStored()
    {
        QFETCH(int, refusal);
        QFETCH(QString, reason);
        Stage stage;
        Day &day = stage.day;
        QVERIFY(day.append(1));
        std::optional<Database> other;
        if (refusal == 0) {
            other = std::move(stage.test.archives.open(ArchiveName::events(today), Database::Use::Safe).value());
            QVERIFY(other->execute("BEGIN IMMEDIATE").ok());
        }
        stage.vfs.refusal = refusal;
        QStringList expected = day.told;
        for (int code = 2; code <= 4; ++code) {
            day.clock.moment = day.clock.moment.addSecs(20);
            QVERIFY(!day.append(code));
            expected.append(row(day.event(code)));
        }
        day.log.retry();
        QCOMPARE(day.told.size(), 1);
        QCOMPARE(day.log.waiting(), 3);
        const QStringList notice = takeNotices(day.notices);
        QVERIFY2(notice.size() == 1 && notice[0].endsWith(reason), qPrintable(notice.join(u'/')));

        stage.vfs.refusal = 0;
        other.reset();
        day.clock.moment = day.clock.moment.addSecs(3600);
        day.log.retry();
        QCOMPARE(day.told, expected);
        QCOMPARE(takeNotices(day.notices), QStringList{u"The waiting events (3) have been stored."_s});
        QVERIFY(day.append(5));
        day.log.close();
        QCOMPARE(day.rows(), expected + QStringList{row(day.event(5))});
        QVERIFY(day.notices.isEmpty());
    }

    void waitingIsBounded()
    {
        Stage stage;
        Day &day = stage.day;
        stage.vfs.refusal = SQLITE_FULL;
        for (int code = 1; code <= EventLog::WaitingLimit + 7; ++code)
            day.append(code);
        QCOMPARE(day.log.waiting(), EventLog::WaitingLimit);
        for (int second = 0; second < 60; ++second)
            day.log.retry();
        QCOMPARE(takeNotices(day.notices).mid(1), QStringList{u"Events lost: 7"_s});
        day.append(1);
        stage.vfs.refusal = 0;
        while (day.log.waiting() > 0)
            day.log.retry();
        QCOMPARE(takeNotices(day.notices),
                 QStringList({u"The waiting events (10000) have been stored."_s, u"Events lost: 1"_s}));
        day.log.close();
        QVERIFY(day.rows().first().startsWith(u"9|"_s));
    }

    void eachWaitingEventGoesToItsDay()
    {
        Stage stage;
        Day &day = stage.day;
        stage.vfs.refusal = SQLITE_FULL;
        day.append(1);
        day.clock.moment = day.clock.moment.addDays(1);
        day.log.changeDayIfNeeded();
        day.append(2);
        stage.vfs.refusal = 0;
        day.log.retry();
        QCOMPARE(day.log.day(), u"06-03-2004"_s);
        QVERIFY(day.append(3));
        // What cannot be stored at the end either is told.
        stage.vfs.refusal = SQLITE_FULL;
        day.append(4);
        day.append(5);
        takeNotices(day.notices);
        day.log.close();
        QCOMPARE(takeNotices(day.notices), QStringList{u"Events lost: 2"_s});
        stage.vfs.refusal = 0;
        QCOMPARE(day.rows().size(), 1);
        QCOMPARE(day.rows(u"06-03-2004"_s).size(), 2);
    }

    void damagedWhileOpen()
    {
        TestFolder test;
        Day day(test);
        QVERIFY(day.append(1));
        const QString name = ArchiveName::events(today);
        // Another program drops the table: what is left is no archive of ours.
        QVERIFY(test.archives.open(name, Database::Use::Safe).value().execute("DROP TABLE Eventi").ok());
        QVERIFY(day.append(2));
        const QStringList told = takeNotices(day.notices);
        QVERIFY2(told.size() == 1 && told[0].contains(u".guasto"_s), qPrintable(told.join(u'/')));
        day.log.close();
        QCOMPARE(day.rows(), QStringList{row(day.event(2))});

        // Damage behind the first page shows only when a row is put there.
        day.log.open();
        day.log.close();
        QByteArray content = test.read(name);
        for (qsizetype at = 4096; at < content.size(); at += 512)
            content[at] = static_cast<char>(~content[at]);
        test.write(name, content);
        day.log.open();
        QVERIFY(day.append(2));
        QCOMPARE(takeNotices(day.notices).size(), 1);

        // A damaged template makes nothing, and is told once.
        day.clock.moment = day.clock.moment.addDays(1);
        const QByteArray good = test.read(u"Archivi/Eventiorg.zeb"_s);
        test.write(u"Archivi/Eventiorg.zeb"_s, QByteArray(8192, 'x'));
        for (int tick = 0; tick < 5; ++tick)
            QVERIFY(!day.log.changeDayIfNeeded());
        QCOMPARE(takeNotices(day.notices).size(), 1);
        QVERIFY(!test.folder.exists(ArchiveName::events(u"06-03-2004"_s)));
        test.write(u"Archivi/Eventiorg.zeb"_s, good);
        day.clock.moment = day.clock.moment.addDays(-1);
        day.log.close();

        // Another deletes the file: the next tick makes it anew.
        day.log.open();
        QVERIFY(test.archives.remove(name).ok());
        QVERIFY(day.log.changeDayIfNeeded());
        QCOMPARE(takeNotices(day.notices).size(), 1);
        QVERIFY(day.append(3));
        day.log.close();
        QCOMPARE(day.rows(), QStringList{row(day.event(3))});
    }

    void registerLockedAtTheStart()
    {
        TestFolder test;
        test.addUsers({listOf("1,TX")});
        Day day(test);
        UserDirectory users(test.archives, ArchiveName::UsersSnapshot);
        EventRoad road(users, day.log, day.clock);
        {
            // In the middle of a change its journal stands beside the register: a copy now would be torn.
            Result<Database> other = test.archives.open(ArchiveName::Users, Database::Use::Safe);
            QVERIFY(other.value().execute("BEGIN EXCLUSIVE; INSERT INTO Utenti (Codice) VALUES ('2')").ok());
            QCOMPARE(users.open().fault().code, FaultCode::Locked);
            for (const char *record : {"R/A-000000001X..\r", "R/A-000000002X..\r", "R/A-000000003X..\r"})
                QVERIFY(!road.RegistraEvento(record));
            day.clock.moment = day.clock.moment.addDays(1);
            QVERIFY(other.value().execute("COMMIT").ok());
        }
        QVERIFY(users.open().ok());
        day.log.changeDayIfNeeded();
        road.usersKnown();
        QVERIFY(road.RegistraEvento("R/A-000000001X..\r"));
        day.log.close();
        // Each in the archive of its own day.
        QCOMPARE(day.rows(),
                 QStringList({u"1|05-03-2004|07:45:00|TX|A|20040305"_s, u"2|05-03-2004|07:45:00|TX|A|20040305"_s}));
        QCOMPARE(day.rows(u"06-03-2004"_s), QStringList{u"1|06-03-2004|07:45:00|TX|A|20040306"_s});
    }

    void flushedBeforeTold()
    {
        Stage stage;
        QStringList &steps = stage.vfs.steps;
        connect(&stage.day.log, &EventLog::stored, this, [&steps] {
            QVERIFY2(steps.last().startsWith(u"flush"_s), qPrintable(steps.last()));
            steps.append(u"told"_s);
        });
        for (int code = 1; code <= 5; ++code)
            QVERIFY(stage.day.append(code));
        QCOMPARE(steps.count(u"told"_s), 5);
        // One flush an event once the journal stands.
        QCOMPARE(steps.mid(steps.indexOf(u"told"_s)).filter(u"flush"_s).size(), 4);
        // Whole files: nothing is renamed that was not flushed.
        const QStringList &whole = stage.test.disk.steps;
        for (qsizetype i = 1; i < whole.size(); ++i)
            QVERIFY(!whole[i].startsWith(u"rename"_s) || whole[i - 1].startsWith(u"flush"_s));
        QVERIFY(whole.contains(u"rename Eventi_05-03-2004.zeb"_s));

        // A change of the register is on disk when it is reported, and its journal before the first page changes.
        stage.test.addUsers({});
        Result<Database> users = stage.test.archives.open(ArchiveName::Users, Database::Use::Safe);
        stage.vfs.steps.clear();
        QVERIFY(users.value().execute("INSERT INTO Utenti (Codice) VALUES ('1')").ok());
        const qsizetype journal = steps.indexOf(u"flush Anagrafico.zeb-journal"_s);
        QVERIFY(journal >= 0 && journal < steps.indexOf(u"write Anagrafico.zeb"_s));
        QVERIFY(steps.lastIndexOf(u"flush Anagrafico.zeb"_s) > steps.lastIndexOf(u"write Anagrafico.zeb"_s));
    }

    void powerCutAtAnyStep_data()
    {
        const Rows<bool> row("keepsAll");
        row("the device kept all that was written", true);
        row("the device kept only what was flushed", false);
    }
    void powerCutAtAnyStep()
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
                Day day(test);
                for (int code = 1; code <= 4; ++code)
                    day.append(code);
                const qsizetype beforeEnd = day.told.size();
                day.log.close();
                told = day.told;
                ranThrough = beforeEnd == 4 && vfs.steps.size() < stop;
                if (!keepsAll)
                    vfs.loseWhatWasNotFlushed();
            }
            const QStringList rows = test.rows(ArchiveName::events(today), statement);
            QVERIFY2(rows.size() >= told.size() && rows.mid(0, told.size()) == told,
                     qPrintable(u"cut at %1: %2"_s.arg(stop).arg(rows.join(u' '))));
            for (const QString &one : rows)
                QCOMPARE(one.count(u'|'), 5);
        }
    }
};

QTEST_GUILESS_MAIN(TestFaults)
#include "tst_faults.moc"
