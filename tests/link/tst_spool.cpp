#include "link/EventRoad.h"
#include "support/DayLog.h"

class TestSpool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void waitsUntilItCanBeStored_data()
    {
        // Of the device, or 0 for another program's lock.
        const Rows<int, QString, QString> row("refusal", "reason", "waits");
        const QString inMemory = u"Nothing is stored: events wait in memory (3)"_s;
        row("disk full", SQLITE_FULL, u"disk full"_s, inMemory);
        row("write error", SQLITE_IOERR_WRITE, u"read or write error"_s, inMemory);
        row("locked", 0, u"locked by another program"_s, u"Events waiting on disk: 3"_s);
    }
    void waitsUntilItCanBeStored()
    {
        QFETCH(int, refusal);
        QFETCH(QString, reason);
        QFETCH(QString, waits);
        Stage stage;
        Day &day = stage.day;
        QVERIFY(day.append(1));
        std::optional<Database> other;
        if (refusal == 0)
            other = day.lock();
        stage.vfs.refusal = refusal;
        QStringList expected = day.told;
        for (int code = 2; code <= 4; ++code) {
            day.clock.moment = day.clock.moment.addSecs(20);
            QVERIFY(!day.append(code));
            expected.append(row(day.event(code)));
        }
        day.log.retry();
        QVERIFY(day.told.size() == 1 && waiting(day.log) == 3);
        QCOMPARE(day.waits(), waits);
        const QStringList notice = takeNotices(day.notices);
        QVERIFY2(notice.size() == 1 && notice[0].endsWith(reason), qPrintable(notice.join(u'/')));

        stage.vfs.refusal = 0;
        other.reset();
        day.clock.moment = day.clock.moment.addSecs(3600);
        QVERIFY(day.storeAll());
        QCOMPARE(day.waits(), QString());
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
        for (int code = 1; code <= EventSpool::MemoryLimit + 7; ++code)
            day.append(code);
        QCOMPARE(waiting(day.log), EventSpool::MemoryLimit);
        for (int second = 0; second < 60; ++second)
            day.log.retry();
        QCOMPARE(takeNotices(day.notices).mid(1), QStringList{u"Events lost: 7"_s});
        day.append(1);
        stage.vfs.refusal = 0;
        QVERIFY(day.storeAll());
        QCOMPARE(takeNotices(day.notices), listOf("The waiting events (10000) have been stored.,Events lost: 1"));
        day.log.close();
        QVERIFY(day.rows().first().startsWith(u"9|"_s));
    }

    void registerAndDayUnreadableUntilTheNextStart()
    {
        TestFolder test;
        test.addUsers({listOf("1,TX"), listOf("2,TX")});
        QStringList expected;
        {
            Day day(test);
            UserDirectory users(test.archives, ArchiveName::UsersSnapshot);
            EventRoad road(users, day.log, day.clock);
            QVERIFY(!road.RegistraEvento("R/A-000000001X..\r") && !road.RegistraEvento("R/A-000000009X..\r"));
            QVERIFY(users.open().ok());
            const std::optional<Database> other = day.lock();
            road.usersKnown();
            QVERIFY(!road.RegistraEvento("R/A-000000002X..\r"));
            QTRY_COMPARE(day.waits(), u"Events waiting on disk: 2"_s);
            expected = {row(day.event(1)), row(day.event(2))};
            // The next day waits for nobody.
            day.clock.moment = day.clock.moment.addDays(1);
            day.log.changeDayIfNeeded();
            QVERIFY(road.RegistraEvento("R/A-000000001X..\r"));
            takeNotices(day.notices);
            day.log.close();
            QCOMPARE(takeNotices(day.notices), QStringList{u"Events waiting on disk: 2"_s});
        }
        Day next(test, false);
        UserDirectory users(test.archives, ArchiveName::UsersSnapshot);
        EventRoad road(users, next.log, next.clock);
        QVERIFY(users.open().ok());
        next.log.open();
        QVERIFY(next.storeAll());
        QCOMPARE(takeNotices(next.notices), QStringList{u"The waiting events (2) have been stored."_s});
        next.log.close();
        QCOMPARE(next.rows(), expected);
        QCOMPARE(next.rows(u"06-03-2004"_s).size(), 1);
        QVERIFY(!test.folder.exists(u"Archivi/Attesa.zeb"_s));
    }

    /// What can be read of a damaged spool is stored once, in its order and before what comes later, also when the
    /// power is cut at any step of the rescue.
    void damagedSpool_data()
    {
        const Rows<int, int, int> row("page", "least", "most");
        row("first", 0, 0, 0);
        row("in the middle", 3, 70, 100);
        row("last", -1, 90, 149);
    }
    void damagedSpool()
    {
        QFETCH(int, page);
        QFETCH(int, least);
        QFETCH(int, most);
        const QString name = u"Archivi/Attesa.zeb"_s;
        TestFolder test;
        {
            Day day(test);
            const std::optional<Database> other = day.lock();
            for (int code = 1; code <= 150; ++code)
                QVERIFY(!day.append(code));
            day.log.close();
        }
        QByteArray content = test.read(name);
        content[(page < 0 ? content.size() / 4096 + page : page) * 4096 + 100] ^= 1;
        for (const bool ofTheLibrary : {false, true}) {
            bool ranThrough = false;
            for (int stop = 0; !ranThrough; ++stop) {
                for (const QString &file : test.files(u"Archivi"_s).filter(u"Attesa"_s))
                    QVERIFY(QFile::remove(test.folder.path(u"Archivi/"_s + file)));
                QVERIFY(stop < 100 && test.archives.remove(ArchiveName::events(today)).ok());
                test.write(name, content);
                {
                    RecordingVfs vfs;
                    test.disk.steps.clear();
                    (ofTheLibrary ? vfs.stopAt : test.disk.stopAt) = stop;
                    Day day(test);
                    const QString told = takeNotices(day.notices).join(u'/');
                    ranThrough = told.contains(u"which wait on: "_s);
                    QVERIFY2(!told.contains(u'%'), qPrintable(told));
                    test.disk.stopAt = -1;
                }
                Day next(test);
                next.append(500);
                QVERIFY(next.storeAll());
                next.log.close();
                QStringList codes = test.rows(ArchiveName::events(today), u"SELECT Codice FROM Eventi"_s);
                const QString all = u"cut at %1: %2"_s.arg(stop).arg(codes.join(u' '));
                QVERIFY2(codes.size() > least && codes.size() <= most + 1 && codes.last() == u"500"_s, qPrintable(all));
                QStringList sorted = codes;
                std::sort(sorted.begin(), sorted.end(), [](auto &a, auto &b) { return a.toInt() < b.toInt(); });
                QVERIFY2(codes == sorted && sorted.removeDuplicates() == 0, qPrintable(all));
            }
        }
    }

    /// What is deleted, or replaced by a copy of itself, costs no waiting event and doubles none.
    void spoolLosesItsName_data()
    {
        const Rows<bool, bool> row("copied", "ends");
        for (const int way : {0, 1, 2, 3})
            row(QByteArray::number(way), (way & 1) != 0, (way & 2) != 0);
    }
    void spoolLosesItsName()
    {
        QFETCH(bool, copied); // else deleted
        QFETCH(bool, ends);   // just before the end
        TestFolder test;
        Day day(test);
        const QString path = test.folder.path(u"Archivi/Attesa.zeb"_s);
        {
            const std::optional<Database> other = day.lock();
            QVERIFY(!day.append(1));
            day.log.changeDayIfNeeded();
            QVERIFY(!day.append(2));
            QVERIFY(!copied || QFile::copy(path, path + u".old"_s));
            QVERIFY(QFile::remove(path) && (!copied || QFile::rename(path + u".old"_s, path)));
            ends ? day.log.close() : void(day.log.changeDayIfNeeded());
        }
        if (ends)
            day.log.open();
        QVERIFY(day.storeAll());
        QCOMPARE(day.rows(), QStringList({row(day.event(1)), row(day.event(2))}));
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
            Database other = test.hold(ArchiveName::Users, "BEGIN EXCLUSIVE; INSERT INTO Utenti (Codice) VALUES ('2')");
            QCOMPARE(users.open().fault().code, FaultCode::Locked);
            for (const char *record : {"R/A-000000001X..\r", "R/A-000000002X..\r", "R/A-000000003X..\r"})
                QVERIFY(!road.RegistraEvento(record));
            day.clock.moment = day.clock.moment.addDays(1);
            QVERIFY(other.execute("COMMIT").ok());
        }
        QVERIFY(users.open().ok());
        day.log.changeDayIfNeeded();
        road.usersKnown();
        // On a slow device it waits behind the others.
        (void)road.RegistraEvento("R/A-000000001X..\r");
        QVERIFY(day.storeAll());
        day.log.close();
        // Each in the archive of its own day.
        QCOMPARE(day.rows(), listOf("1|05-03-2004|07:45:00|TX|A|20040305,2|05-03-2004|07:45:00|TX|A|20040305"));
        QCOMPARE(day.rows(u"06-03-2004"_s), QStringList{u"1|06-03-2004|07:45:00|TX|A|20040306"_s});
    }
};

QTEST_GUILESS_MAIN(TestSpool)
#include "tst_spool.moc"
