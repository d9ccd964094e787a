#include "support/DayLog.h"

class TestFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void damagedWhileOpen()
    {
        TestFolder test;
        Day day(test);
        QVERIFY(day.append(1));
        const QString name = ArchiveName::events(today);
        // Another program drops the table: what is left is no archive of ours.
        test.execute(name, "DROP TABLE Eventi");
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
        QTRY_COMPARE(waiting(day.log), 0);
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
        test.execute(name + u".old"_s, "INSERT INTO Eventi (Codice) VALUES ('9')");
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
        QVERIFY(day.storeAll() && day.append(3));
        QTEST(takeNotices(day.notices), "told");
        // They were told before.
        QCOMPARE(day.told, QStringList{row(day.event(3))});
        day.log.close();
        QCOMPARE(test.rows(name, u"SELECT Codice FROM Eventi ORDER BY ProgEv"_s), codes);
        QVERIFY(!test.folder.exists(u"Archivi/Attesa.zeb"_s));
    }

    /// What is copied over an open day, or its journal, has the same identity, and no event fails.
    void writtenOver_data()
    {
        const Rows<QStringList, int, int> row("files", "brought", "rows");
        row("by an older copy", {QString()}, 201, 203);
        row("its journal, which is empty now", {u"-wal"_s}, 2, 203);
        row("with journal and index", {QString(), u"-wal"_s, u"-shm"_s}, 1, 3);
    }
    void writtenOver()
    {
        QFETCH(QStringList, files);
        QFETCH(int, brought);
        QFETCH(int, rows);
        TestFolder test;
        Day day(test);
        const QString name = ArchiveName::events(today);
        const auto quietMinute = [&day] {
            day.clock.milliseconds += 60'000;
            day.log.changeDayIfNeeded();
        };
        QVERIFY(day.append(1));
        quietMinute();
        QHash<QString, QByteArray> older;
        for (const QString &file : std::as_const(files))
            older.insert(file, test.read(name + file));
        for (int code = 2; code <= 200; ++code)
            QVERIFY(day.append(code));
        if (files.size() < 3)
            quietMinute();
        QVERIFY(day.append(201));
        for (const QString &file : std::as_const(files))
            test.write(name + file, older[file]);
        QVERIFY(day.append(202));
        day.log.changeDayIfNeeded();
        QVERIFY(day.storeAll() && day.append(203));
        const QStringList told = takeNotices(day.notices);
        QVERIFY2(told.size() == 1 && told[0].contains(u"was replaced") && told[0].endsWith(QString::number(brought)),
                 qPrintable(told.join(u'/')));
        day.log.close();
        QStringList codes = test.rows(name, u"SELECT Codice FROM Eventi ORDER BY ProgEv"_s);
        QVERIFY(codes.size() == rows && codes.removeDuplicates() == 0 && codes.last() == u"203"_s);
    }

    void comesWhileOthersAreBroughtOver()
    {
        TestFolder test;
        QList<QStringList> early;
        for (int second = 0; second < 5000; ++second)
            early.append({u"1"_s, u"TX"_s, u"A"_s, {}, {}, QTime(0, 0).addSecs(second).toString(u"HH:mm:ss"_s)});
        test.addEvents(today, early);
        test.execute(ArchiveName::events(today), "DELETE FROM Eventi WHERE ProgEv = 70");
        Day day(test);
        QVERIFY(QFile::remove(test.folder.path(ArchiveName::events(today))));
        day.log.changeDayIfNeeded();
        // In the middle of them it waits, behind them.
        QVERIFY(!day.append(2) && day.storeAll() && day.append(3));
        day.log.close();
        const QString numbers = u"SELECT ProgEv, Codice FROM Eventi WHERE ProgEv > 4999"_s;
        QCOMPARE(test.rows(ArchiveName::events(today), numbers), listOf("5000|1,5001|2,5002|3"));
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
        Database users = stage.test.hold(ArchiveName::Users, "SELECT 1");
        stage.vfs.steps.clear();
        QVERIFY(users.execute("INSERT INTO Utenti (Codice) VALUES ('1')").ok());
        const qsizetype journal = steps.indexOf(u"flush Anagrafico.zeb-journal"_s);
        QVERIFY(journal >= 0 && journal < steps.indexOf(u"write Anagrafico.zeb"_s));
        QVERIFY(steps.lastIndexOf(u"flush Anagrafico.zeb"_s) > steps.lastIndexOf(u"write Anagrafico.zeb"_s));
    }

    /// On a device that kept all that was written, and on one that kept only what was flushed.
    void powerCutAtAnyStep_data()
    {
        const Rows<bool> row("keepsAll");
        row("all", true);
        row("flushed", false);
    }
    void powerCutAtAnyStep()
    {
        QFETCH(bool, keepsAll);
        TestFolder test;
        bool ranThrough = false;
        for (int stop = 0; !ranThrough; ++stop) {
            QVERIFY(stop < 200 && test.archives.remove(ArchiveName::events(today)).ok());
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
