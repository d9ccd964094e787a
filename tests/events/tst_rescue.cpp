#include "archives/Tables.h"
#include "events/DayView.h"
#include "events/EventSearch.h"
#include "link/EventLog.h"
#include "support/Fixtures.h"
#include "support/RecordingVfs.h"
#include "texts/DateTimeText.h"

#include <QRandomGenerator>

#include <algorithm>

namespace {

const QString today = u"05-03-2004"_s;
const QString name = ArchiveName::events(today);
const QString aside = name + u".guasto"_s;

constexpr int patience = 30'000; ///< milliseconds, for the slowest machine

/// A day of which some seconds have several events, and some events equal ones.
QList<QStringList> eventsOfADay(int count)
{
    QList<QStringList> events;
    for (int i = 0; i < count; ++i) {
        const QString time = QTime(0, 0).addSecs(i / 3).toString(u"HH:mm:ss"_s);
        events.append({QString::number(i % 3 == 2 ? i - 1 : i), u"TX"_s, u"A"_s, {}, {}, time});
    }
    return events;
}

/// Turns pages of an archive into such that cannot be read.
QByteArray torn(QByteArray content, const QList<qsizetype> &pages)
{
    for (const qsizetype page : pages)
        content[page * 4096 + 100] ^= 1;
    return content;
}

/// "hh:mm:ss code" of each row that a look at its number reads.
QStringList readOneByOne(TestFolder &test, const QString &archive, int highest)
{
    Result<Database> database = test.archives.open(archive, Database::Use::Safe);
    if (!database)
        return {};
    QStringList rows;
    for (qint64 number = 1; number <= highest; ++number) {
        (void)database.value().each(u"SELECT Ora, Codice FROM Eventi WHERE ProgEv = ?"_s, {number},
                                    [&rows](const Statement &row) { rows.append(row.text(0) + u' ' + row.text(1)); });
    }
    return rows;
}

QStringList sorted(QStringList rows)
{
    rows.sort();
    return rows;
}

/// What the log makes of the day, with events that come meanwhile.
struct Reception {
    explicit Reception(TestFolder &test) : log(test.archives, clock, notices)
    {
        QObject::connect(&log, &EventLog::stored, [this](const Event &event) { ++told[event.Codice]; });
    }
    bool append(int code)
    {
        return log.append({QString::number(code), clock.date(), clock.moment.time(), CodeType::Transmitter, u"A"_s});
    }

    FakeClock clock;
    Notices notices;
    QMap<QString, int> told; ///< before the log, which signals into it while it closes
    EventLog log;
};

/// What a search of the day finds, and whether it tells that the day is incomplete.
QStringList search(TestFolder &test, bool *isIncomplete = nullptr)
{
    UserDirectory users(test.archives, u"Archivi/AnaCon.zeb"_s);
    TypedQuery day;
    day.firstDay = day.lastDay = u"05/03/2004"_s;
    EventSearch search(test.archives, users);
    QStringList rows;
    if (!users.open() || !search.start(eventQuery(day)) || !finish(search))
        return {u"FAULT"_s};
    for (qsizetype i = 0; i < search.results().count(); ++i) {
        const Event event = search.results().row(i).value().event;
        rows.append(OraTesto(event.Ora) + u' ' + event.Codice);
    }
    if (isIncomplete)
        *isIncomplete = search.incompleteDays() == QList<QDate>{{2004, 3, 5}};
    return rows;
}

} // namespace

class TestRescue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Pages at random: what is rescued and shown is what a look at each row by its number reads.
    void damagedPages()
    {
        QRandomGenerator random(5);
        for (int round = 0; round < 6; ++round) {
            TestFolder test;
            test.addUsers({});
            test.addEvents(today, eventsOfADay(2000));
            const QByteArray sound = test.read(name);
            QList<qsizetype> pages{1 + round}; // among the first is the root of the table, of which all hangs
            for (int more = random.bounded(8); round > 0 && more > 0; --more)
                pages.append(random.bounded(qsizetype{1}, sound.size() / 4096));
            std::sort(pages.begin(), pages.end());
            pages.erase(std::unique(pages.begin(), pages.end()), pages.end());
            test.write(name, torn(sound, pages));
            const QStringList expected = readOneByOne(test, name, 2000);

            // Set aside by an earlier release, or just before a cut: it is shown as it is.
            test.write(aside, test.read(name));
            QVERIFY(QFile::remove(test.folder.path(name)));
            bool isIncomplete = false;
            QCOMPARE(sorted(search(test, &isIncomplete)), sorted(expected));
            QVERIFY(isIncomplete);

            Reception day(test);
            DayView view(test.archives, day.clock);
            QVERIFY(view.open() && finish(view.users()));
            day.log.open();
            // Nothing that comes meanwhile waits.
            int code = 5000;
            QVERIFY(QTest::qWaitFor(
                [&] {
                    const bool isStored = day.append(code);
                    code += isStored ? 1 : 0;
                    return !isStored || (view.refresh(1000) && isRescued(test.archives, name));
                },
                patience));
            QCOMPARE(waiting(day.log), 0);
            QCOMPARE(takeNotices(day.notices),
                     QStringList{u"Events of the archive '%1' rescued from the files set aside: %2"_s.arg(name).arg(
                         expected.size())});
            QStringList all = expected;
            for (int live = 5000; live < code; ++live)
                all.append(u"07:45:00 %1"_s.arg(live));
            QCOMPARE(sorted(test.rows(name, u"SELECT Ora || ' ' || Codice FROM Eventi"_s)), sorted(all));
            // What was being read is read to its end first.
            QVERIFY(QTest::qWaitFor(
                [&] { return view.refresh(1000) && view.rows().size() == std::min<qsizetype>(1000, all.size()); },
                patience));
            const QStringList found = search(test, &isIncomplete);
            QCOMPARE(sorted(found), sorted(all));
            QVERIFY(std::is_sorted(found.begin(), found.end(),
                                   [](const QString &a, const QString &b) { return a.left(8) < b.left(8); }));
            QVERIFY(isIncomplete);
            day.log.close();
            QCOMPARE(test.read(aside), torn(sound, pages));
        }
    }

    /// The journal of a file set aside is read, and neither is touched.
    void journalBesideIt()
    {
        TestFolder test;
        test.addUsers({});
        test.addEvents(today, eventsOfADay(3));
        {
            Result<Database> open = test.archives.open(name, Database::Use::Log);
            QVERIFY(open.value().execute("INSERT INTO Eventi (Codice, Ora, Tipo, Canale, Data, DataOrd) "
                                         "VALUES ('7', '08:00:00', 'TX', 'A', '05-03-2004', '20040305')"));
            test.write(aside, test.read(name));
            test.write(aside + u"-wal"_s, test.read(name + u"-wal"_s));
        }
        QVERIFY(test.archives.remove(name));
        // Two of three are equal; of such the day has one already under its number, and one that came since.
        test.addEvents(today, QList<QStringList>(2, {u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"00:00:00"_s}));
        test.execute(name, "UPDATE Eventi SET ProgEv = 9 WHERE ProgEv = 1");
        test.write(name + u".guasto2"_s, "no archive");
        const QStringList files = test.files(u"Archivi"_s);
        const QByteArray journal = test.read(aside + u"-wal"_s);
        const QByteArray content = test.read(aside);
        QCOMPARE(sorted(search(test)), sorted(listOf("00:00:00 0,00:00:00 1,00:00:00 1,00:00:00 1,08:00:00 7")));
        QCOMPARE(test.read(aside + u"-wal"_s), journal);
        QCOMPARE(test.read(aside), content);
        QCOMPARE(test.files(u"Archivi"_s), files);
    }

    void cutAtAnyStep_data()
    {
        const Rows<bool> row("keepsAll");
        row("the device kept all that was written", true);
        row("the device kept only what was flushed", false);
    }
    void cutAtAnyStep()
    {
        QFETCH(bool, keepsAll);
        TestFolder test;
        // The first one is equal to one that comes after the damage: both count.
        test.addEvents(today,
                       QList<QStringList>{{u"9000"_s, u"TX"_s, u"A"_s, {}, {}, u"07:45:00"_s}} + eventsOfADay(249));
        const QByteArray damaged = torn(test.read(name), {4});
        test.write(name, damaged);
        const QStringList expected = readOneByOne(test, name, 250);
        QVERIFY(expected.size() > 150 && expected.size() < 250);
        bool ranThrough = false;
        for (int stop = 0; !ranThrough; stop += 1 + stop / 30) {
            QVERIFY(stop < 400);
            for (const QString &file : test.files(u"Archivi"_s).filter(u"Eventi_"_s))
                QVERIFY(QFile::remove(test.folder.path(u"Archivi/"_s + file)));
            test.write(name, damaged);
            QStringList stored;
            {
                RecordingVfs vfs;
                vfs.stopAt = stop;
                Reception day(test);
                day.log.open();
                if (day.append(9000))
                    stored.append(u"07:45:00 9000"_s);
                for (int turn = 0; turn < 20; ++turn)
                    day.log.retry();
                if (day.append(9001))
                    stored.append(u"07:45:00 9001"_s);
                ranThrough = vfs.steps.size() < stop;
                // No orderly end.
                vfs.stopAt = 0;
                day.log.close();
                if (!keepsAll)
                    vfs.loseWhatWasNotFlushed();
            }
            Reception next(test);
            next.log.open();
            QVERIFY2(QTest::qWaitFor([&] { return isRescued(test.archives, name); }, patience),
                     qPrintable(QString::number(stop)));
            next.log.close();
            const QStringList rows = test.rows(name, u"SELECT Ora || ' ' || Codice FROM Eventi"_s);
            // Live events leave the numbers of those that are rescued to them.
            const QString numbers = u"SELECT Codice FROM Eventi WHERE ProgEv > 250 ORDER BY ProgEv"_s;
            QVERIFY(!ranThrough || test.rows(name, numbers) == listOf("9000,9001"));
            // What was not told as stored may be there all the same, once.
            QStringList rest = rows;
            for (const QString &one : expected + stored)
                QVERIFY2(rest.removeOne(one), qPrintable(u"cut at %1: %2 is missing"_s.arg(stop).arg(one)));
            QVERIFY2(rest.removeDuplicates() == 0 && rest.filter(u" 900"_s) == rest,
                     qPrintable(u"cut at %1: %2"_s.arg(stop).arg(rest.join(u'/'))));
        }
    }
};

QTEST_GUILESS_MAIN(TestRescue)
#include "tst_rescue.moc"
