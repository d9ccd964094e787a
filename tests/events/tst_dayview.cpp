#include "events/DayView.h"
#include "support/Fixtures.h"

class TestDayView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dayGrows()
    {
        TestFolder test;
        FakeClock clock;
        test.addUsers({listOf("5,TX,Rossi,Mario")});
        DayView view(test.archives, clock);
        QVERIFY(view.open() && view.users().step(QDeadlineTimer(QDeadlineTimer::Forever)).value() &&
                !view.hasArchive());
        const auto add = [&](int from, int to) {
            for (int i = from; i <= to; ++i)
                test.addEvents(u"05-03-2004"_s, {{QString::number(i), u"TX"_s, u"A"_s, {}, {}, u"10:0%1:00"_s.arg(i)}});
        };
        const auto numbers = [&view] {
            QStringList shown;
            for (const ListedEvent &row : view.rows())
                shown.append(QString::number(row.ProgEv));
            return shown.join(u',');
        };
        const auto look = [&] {
            const Result<bool> changed = view.refresh(5);
            return (changed ? changed.value() ? u"changed "_s : u"same "_s : u"fault "_s) + numbers();
        };
        const QString file = test.folder.path(ArchiveName::events(u"05-03-2004"_s));
        add(1, 3);
        QCOMPARE(look(), u"changed 1,2,3"_s);
        QCOMPARE(look(), u"same 1,2,3"_s);
        add(4, 7);
        QCOMPARE(look(), u"changed 3,4,5,6,7"_s);
        // Stored late, after the clock's change, and still an event of its own time.
        test.addEvents(u"05-03-2004"_s, {{u"8"_s, u"TX"_s, u"A"_s, {}, {}, u"10:06:30"_s}});
        QCOMPARE(look(), u"changed 4,5,6,8,7"_s);
        QCOMPARE(textsOf(EventColumns::last, view.rows()[1]).join(u'|'), u"5|TX|Rossi|Mario|A||05-03-2004|10:05:00|"_s);
        // Set aside and made anew: what is shown is what is there.
        QFile::remove(file);
        QCOMPARE(look(), u"fault 4,5,6,8,7"_s);
        add(1, 1);
        QCOMPARE(look(), u"changed 1"_s);
    }

    /// What was set aside belongs to the day, be it brought into its archive or not, and nothing is shown twice.
    void daySetAside()
    {
        TestFolder test;
        FakeClock clock;
        test.addUsers({});
        const auto event = [](const char *code, const char *minute) {
            return QStringList{QLatin1String(code), u"TX"_s, u"A"_s, {}, {}, u"10:0%1:00"_s.arg(QLatin1String(minute))};
        };
        const QString day = u"05-03-2004"_s;
        test.addEvents(day, {event("1", "1"), event("2", "2"), event("2", "2"), event("3", "5")});
        const QString name = ArchiveName::events(day);
        QCOMPARE(test.archives.setAside(name).value(), name + u".guasto"_s);
        DayView view(test.archives, clock);
        QVERIFY(view.open() && finish(view.users()));
        const auto shown = [&view](int limit) {
            QString codes;
            do {
                if (!view.refresh(limit))
                    return u"FAULT"_s;
            } while (view.isReading());
            for (const ListedEvent &row : view.rows())
                codes += row.event.Codice;
            return codes;
        };
        test.addEvents(day, {event("4", "3"), event("5", "7")});
        QCOMPARE(shown(4), u"2435"_s);
        // One of them has been brought over so far.
        test.addEvents(day, {event("2", "2"), event("6", "8")});
        QCOMPARE(shown(9), u"1224356"_s);
        const QStringList files = test.files(u"Archivi"_s);
        QVERIFY(files.filter(u"Vista"_s).isEmpty());
        // As it says that all has been brought over, only the archive counts.
        test.execute(name, "PRAGMA user_version = 1");
        QCOMPARE(shown(9), u"2456"_s);
    }

    void dayChanges()
    {
        TestFolder test;
        FakeClock clock;
        test.addUsers({});
        const QStringList event = {u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s};
        test.addEvents(u"05-03-2004"_s, {event});
        DayView view(test.archives, clock);
        QVERIFY(view.open() && view.users().step(QDeadlineTimer(QDeadlineTimer::Forever)).value() && view.refresh(5));
        clock.moment = clock.moment.addDays(1);
        test.addEvents(u"05-03-2004"_s, {event});
        // A late event of the old day, and no archive of the new one yet.
        QVERIFY(view.refresh(5).value() && view.rows().size() == 2);
        test.addEvents(u"06-03-2004"_s, {});
        QVERIFY(view.refresh(5).value() && view.rows().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestDayView)
#include "tst_dayview.moc"
