#include "archives/Tables.h"
#include "link/EventLog.h"
#include "link/EventRoad.h"
#include "support/Fixtures.h"
#include "support/RecordingVfs.h"
#include "texts/DateTimeText.h"

#include <sqlite3.h>

namespace {

const QString today = u"05-03-2004"_s;
const QString statement = u"SELECT Codice, Data, Ora, Tipo, Canale, DataOrd FROM Eventi ORDER BY ProgEv"_s;

QString english(const Message &message)
{
    Texts texts;
    texts.fill(2);
    return texts.sentence(message);
}

QString row(const Event &e)
{
    return QStringList{e.Codice, DataFile(e.Data), OraTesto(e.Ora), typeText(e.Tipo), e.Canale, DataOrdinabile(e.Data)}
        .join(u'|');
}

/// The log of the day in a folder; what it has told is noted.
struct Day {
    explicit Day(TestFolder &folder, bool opens = true) : test(folder)
    {
        QObject::connect(&log, &EventLog::stored, [this](const Event &e) { told.append(row(e)); });
        if (opens)
            log.open();
    }
    Event event(int code) const
    {
        return makeEvent(*decodeRecord("R/A-" + QByteArray::number(code).rightJustified(9, '0') + "X..\r"),
                         clock.now());
    }
    bool append(int code) { return log.append(event(code)); }
    /// Tries until nothing waits any more.
    bool storeAll()
    {
        log.retry();
        return QTest::qWaitFor([this] { return log.waiting() == 0; });
    }
    /// What the status bar shows.
    QString waits() const { return log.waits() ? english(*log.waits()) : QString(); }
    qsizetype onDisk() { return log.waiting() - log.unsaved(); }
    /// Another program's hold on the archive of a day, as long as the result lives.
    std::optional<Database> lock(const QString &day = today)
    {
        std::optional<Database> other(
            std::move(test.archives.open(ArchiveName::events(day), Database::Use::Safe).value()));
        return other->execute("BEGIN IMMEDIATE") ? std::move(other) : std::nullopt;
    }
    QStringList rows(const QString &day = today) { return test.rows(ArchiveName::events(day), statement); }

    TestFolder &test;
    FakeClock clock;
    Notices notices;
    QStringList told; ///< before the log, which signals into it while it closes
    EventLog log{test.archives, clock, notices};
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
        QCOMPARE(day.told.size(), 1);
        QCOMPARE(day.log.waiting(), 3);
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
        for (int code = 1; code <= EventLog::WaitingLimit + 7; ++code)
            day.append(code);
        QCOMPARE(day.log.waiting(), EventLog::WaitingLimit);
        for (int second = 0; second < 60; ++second)
            day.log.retry();
        QCOMPARE(takeNotices(day.notices).mid(1), QStringList{u"Events lost: 7"_s});
        day.append(1);
        stage.vfs.refusal = 0;
        QVERIFY(day.storeAll());
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
        QVERIFY(day.storeAll());
        QCOMPARE(DataFile(day.log.day()), u"06-03-2004"_s);
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
        const QStringList rescued = {u"Events of the archive '%1' rescued from the files set aside: 0"_s.arg(name)};
        QCOMPARE(takeNotices(day.notices), rescued);

        // Damage behind the first page is found when it is opened.
        day.log.open();
        day.log.close();
        QByteArray content = test.read(name);
        for (qsizetype at = 4096; at < content.size(); at += 512)
            content[at] = static_cast<char>(~content[at]);
        test.write(name, content);
        day.log.open();
        QStringList all;
        QTRY_VERIFY((all += takeNotices(day.notices)).contains(rescued[0]));
        QCOMPARE(all.size(), 2);
        QVERIFY(day.append(2));

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

        day.log.close();
    }

    /// No event goes into a large day before it has been read through: with the damage it would be set aside.
    void largeDamagedDay()
    {
        TestFolder test;
        const QString name = ArchiveName::events(today);
        test.addEvents(today, QList<QStringList>(50'000, listOf("1,TX,A,,,07:00:00")));
        QByteArray content = test.read(name);
        content.replace(content.size() - 200, 100, QByteArray(100, 'x'));
        test.write(name, content);
        Day day(test);
        day.append(2);
        QTRY_COMPARE(day.log.waiting(), 0);
        QCOMPARE(takeNotices(day.notices).size(), 1);
        day.log.close();
        QVERIFY(day.rows().contains(row(day.event(2))));
        QVERIFY(test.read(name + u".guasto"_s).size() >= content.size());
    }

    void losesItsName_data()
    {
        const Rows<bool, bool, QStringList, QStringList> row("older", "main", "codes", "told");
        const QString sentence =
            u"The event archive 'Archivi/Eventi_05-03-2004.zeb' was replaced or deleted while it was open. "
            "Events brought into the new one: %1"_s;
        row("deleted", false, true, listOf("1,1,1,2,3"), {sentence.arg(4)});
        row("replaced by an older copy", true, true, listOf("1,9,1,1,2,3"), {sentence.arg(3)});
        row("its journal deleted", false, false, listOf("1,1,1,2,3"), {});
    }
    void losesItsName()
    {
        QFETCH(bool, older);
        QFETCH(bool, main);
        QFETCH(QStringList, codes);
        TestFolder test;
        Day day(test);
        const QString name = ArchiveName::events(today);
        const QString path = test.folder.path(name);
        QVERIFY(day.append(1));
        day.log.close();
        // An older copy has one of three equal events, and one that the open archive has not.
        QVERIFY(QFile::copy(path, path + u".old"_s));
        {
            Result<Database> old = test.archives.open(name + u".old"_s, Database::Use::Safe);
            QVERIFY(old.value().execute("INSERT INTO Eventi (Codice) VALUES ('9')").ok());
        }
        day.log.open();
        for (const int code : {1, 1, 2})
            QVERIFY(day.append(code));
        day.told.clear();
        QVERIFY(QFile::remove(path + u"-wal"_s));
        QVERIFY(!main || QFile::remove(path));
        QVERIFY(!older || QFile::rename(path + u".old"_s, path));
        if (older) {
            // Whoever looks into it before it was noticed would mix the two.
            QCOMPARE(test.archives.open(name, Database::Use::Safe).fault().code, FaultCode::Locked);
        } else {
            day.log.changeDayIfNeeded();
        }
        QTRY_VERIFY(!day.notices.isEmpty() || !main);
        QTRY_COMPARE(DataFile(day.log.day()), today);
        QVERIFY(day.storeAll());
        QVERIFY(day.append(3));
        QTEST(takeNotices(day.notices), "told");
        // They were told before.
        QCOMPARE(day.told, QStringList{row(day.event(3))});
        day.log.close();
        QCOMPARE(test.rows(name, u"SELECT Codice FROM Eventi ORDER BY ProgEv"_s), codes);
        QVERIFY(!test.folder.exists(u"Archivi/Attesa.zeb"_s));
    }

    /// A journal that goes astray after a quiet minute costs nothing.
    void quietMinute()
    {
        TestFolder test;
        Day day(test);
        QVERIFY(day.append(1));
        const QString copy = ArchiveName::events(u"01-01-2004"_s);
        const auto inTheFile = [&] {
            test.write(copy, test.read(ArchiveName::events(today)));
            return day.rows(u"01-01-2004"_s).size();
        };
        day.clock.milliseconds += 59'000;
        day.log.changeDayIfNeeded();
        QCOMPARE(inTheFile(), 0);
        day.clock.milliseconds += 1'000;
        day.log.changeDayIfNeeded();
        QCOMPARE(inTheFile(), 1);
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

    void damagedSpool()
    {
        TestFolder test;
        test.write(u"Archivi/Attesa.zeb"_s, QByteArray(5000, 'x'));
        Day day(test);
        {
            const std::optional<Database> other = day.lock();
            QVERIFY(!day.append(1));
            QCOMPARE(day.onDisk(), 1);
        }
        QVERIFY(day.storeAll());
        QVERIFY(takeNotices(day.notices).first().endsWith(u"'Archivi/Attesa.zeb.guasto'."_s));
    }

    /// What is deleted, or replaced by a copy of itself, costs no waiting event and doubles none.
    void spoolLosesItsName_data()
    {
        const Rows<bool, bool> row("copied", "ends");
        row("deleted", false, false);
        row("deleted just before the end", false, true);
        row("replaced by a copy", true, false);
        row("replaced by a copy just before the end", true, true);
    }
    void spoolLosesItsName()
    {
        QFETCH(bool, copied);
        QFETCH(bool, ends);
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
            if (ends)
                day.log.close();
            else
                day.log.changeDayIfNeeded();
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
        // On a slow device it waits behind the others.
        (void)road.RegistraEvento("R/A-000000001X..\r");
        QVERIFY(day.storeAll());
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
        QVERIFY(!stage.test.folder.exists(u"Archivi/Attesa.zeb"_s));
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
        TestFolder test;
        bool ranThrough = false;
        for (int stop = 0; !ranThrough; ++stop) {
            QVERIFY(stop < 200);
            QVERIFY(test.archives.remove(ArchiveName::events(today)).ok());
            QStringList told;
            QStringList kept; // on disk, in the day or waiting for it
            {
                RecordingVfs vfs;
                vfs.stopAt = stop;
                Day day(test);
                const auto append = [&](int code) {
                    const qsizetype before = day.onDisk();
                    if (day.append(code) || day.onDisk() > before)
                        kept.append(row(day.event(code)));
                };
                append(1);
                {
                    const std::optional<Database> other = vfs.steps.size() < stop ? day.lock() : std::nullopt;
                    append(2);
                    append(3);
                }
                for (int turn = 0; turn < 5; ++turn)
                    day.log.retry();
                append(4);
                const qsizetype beforeEnd = day.told.size();
                day.log.close();
                told = day.told;
                ranThrough = beforeEnd == 4 && vfs.steps.size() < stop;
                if (!keepsAll)
                    vfs.loseWhatWasNotFlushed();
            }
            Day next(test);
            QVERIFY(next.storeAll());
            next.log.close();
            QStringList rows = next.rows();
            const QString all = u"cut at %1: %2"_s.arg(stop).arg(rows.join(u' '));
            QVERIFY2(rows.mid(0, told.size()) == told, qPrintable(all));
            for (const QString &one : kept)
                QVERIFY2(rows.contains(one), qPrintable(all));
            QVERIFY2(rows.removeDuplicates() == 0, qPrintable(all));
        }
    }
};

QTEST_GUILESS_MAIN(TestFaults)
#include "tst_faults.moc"
