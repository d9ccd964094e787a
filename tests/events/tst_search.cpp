#include "events/EventSearch.h"
#include "support/Fixtures.h"
#include "support/RecordingVfs.h"
#include "texts/DateTimeText.h"

#include <QRandomGenerator>

namespace {

TypedQuery range(const QString &first, const QString &last)
{
    TypedQuery query;
    query.firstDay = first;
    query.lastDay = last;
    return query;
}

/// Code of person as of a name that was chosen; "?" is a name that is nobody's.
TypedQuery query(const QString &channels, const QString &types, EventQuery::State state = EventQuery::State::All,
                 const QString &code = {}, const QString &person = {})
{
    TypedQuery made = range(u"03/03/2004"_s, u"05/03/2004"_s);
    for (int i = 0; i < 4; ++i)
        made.channels[std::size_t(i)] = channels.contains(QChar(u'A' + i));
    made.transmitters = types.contains(u"TX"_s);
    made.keypads = types.contains(u"DKS"_s);
    made.state = state;
    made.code = code;
    if (!person.isEmpty())
        made.person = EventQuery::Person{person == u"?"_s ? QString() : person};
    return made;
}

QStringList allRows(const SearchResults &results)
{
    QStringList rows;
    for (qsizetype i = 0; i < results.count(); ++i)
        rows.append(textsOf(EventColumns::found, results.row(i).value()).join(u'|'));
    return rows;
}

/// "from>to enabled+disabled@first row" of each bar that has an event, and the number of all bars.
QString text(const QList<EventCounts::Bar> &bars)
{
    QStringList texts;
    for (const EventCounts::Bar &bar : bars)
        if (bar.firstRow >= 0)
            texts.append(u"%1>%2 %3+%4@%5"_s.arg(bar.from.toString(u"dd.HH"_s), bar.to.toString(u"dd.HH"_s))
                             .arg(bar.enabled)
                             .arg(bar.disabled)
                             .arg(bar.firstRow));
    return texts.join(u", ") + u" of %1"_s.arg(bars.size());
}

/// Takes the shortest step. @return whether there is more to do
bool goesOn(EventSearch &search)
{
    const Result<bool> isDone = search.step(QDeadlineTimer(0));
    return isDone && !isDone.value();
}

void run(EventSearch &search, const TypedQuery &wanted)
{
    QVERIFY(search.start(eventQuery(wanted)));
    while (goesOn(search)) {
    }
}

} // namespace

class TestSearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void faults_data()
    {
        const Rows<TypedQuery, QueryFault> row("wanted", "fault");
        TypedQuery noTime = query(u"A"_s, u"TX"_s);
        noTime.from = u"24:00:00"_s;
        row("no date", range(u"3/3/2004"_s, u"xx"_s), QueryFault::FirstDay);
        row("a digit of another script", range(u"03/03/2004"_s, u"1\u0663/03/2004"_s), QueryFault::LastDay);
        row("no time", noTime, QueryFault::From);
        row("days the wrong way round", range(u"01/04/2004"_s, u"31/03/2004"_s), QueryFault::Order);
        row("no channel", query({}, {}), QueryFault::NoChannel);
        row("no type", query(u"D"_s, {}, {}, {}, u"?"_s), QueryFault::NoType);
        row("nobody's name", query(u"A"_s, u"DKS"_s, {}, {}, u"?"_s), QueryFault::UnknownPerson);
        row("a person's code", query(u"A"_s, u"DKS"_s, {}, {}, u"12"_s), QueryFault::None);
    }
    void faults()
    {
        QFETCH(TypedQuery, wanted);
        QFETCH(QueryFault, fault);
        TestFolder test;
        test.addUsers({listOf("12,TX,Rossi,Mario")});
        UserDirectory users(test.archives, u"Archivi/AnaCon.zeb"_s);
        QVERIFY(users.open());
        QCOMPARE(checkQuery(wanted, users), fault);
    }

    void walk_data()
    {
        const Rows<TypedQuery, QString> row("wanted", "found");
        const QString all = u"ABCD"_s;
        row("a day without an archive between two", range(u"03/03/2004"_s, u"05/03/2004"_s), u"1,2,3,4,5,6"_s);
        row("over the end of a month that has fewer days", range(u"29/02/2004"_s, u"31/02/2004"_s), u"0"_s);
        row("to the last year that can be written", range(u"30/12/9999"_s, u"31/12/9999"_s), u"9"_s);
        row("channels", query(u"BC"_s, u"TX,DKS"_s), u"2,3"_s);
        row("enabled", query(all, u"TX,DKS"_s, EventQuery::State::OnlyEnabled), u"1,3,5"_s);
        row("disabled", query(all, u"TX,DKS"_s, EventQuery::State::OnlyDisabled), u"2,4,6"_s);
        row("code", query(all, u"TX,DKS"_s, {}, u"7"_s), u"2,3,5"_s);
        TypedQuery window = range(u"03/03/2004"_s, u"05/03/2004"_s);
        window.from = window.to = u"12:00:00"_s;
        row("the time of day counts on each day", window, u"3,6"_s);
        row("zeros in front", query(all, u"TX"_s, {}, u"007"_s), u"2,5"_s);
        row("zeros alone are not any code", query(all, u"TX"_s, {}, u"000"_s), {});
        row("a person's code before a typed one", query(all, u"TX,DKS"_s, {}, u"1"_s, u"4"_s), u"4"_s);
        row("all together", query(u"AB"_s, u"TX"_s, EventQuery::State::OnlyEnabled, u"7"_s), u"5"_s);
        row("a name is no statement", query(all, u"TX"_s, {}, {}, u"' OR 'a'='a"_s), {});
    }
    void walk()
    {
        QFETCH(TypedQuery, wanted);
        QFETCH(QString, found);
        TestFolder test;
        // No user at all of some codes, one without a surname, and one who has the code with another type.
        test.addUsers({listOf("7,DKS,O'Neil <b>,Ann"), {u"7"_s, u"TX"_s, {}, u"Zo\u00EB"_s}});
        test.addEvents(u"29-02-2004"_s, {{u"0"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s}});
        test.addEvents(u"31-02-2004"_s, {{u"8"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s}});
        test.addEvents(u"31-12-9999"_s, {{u"9"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s}});
        test.addEvents(u"03-03-2004"_s, {{u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"09:00:00"_s},
                                         {u"7"_s, u"TX"_s, u"B"_s, u"X"_s, {}, u"11:59:59"_s},
                                         {u"7"_s, u"DKS"_s, u"C"_s, {}, {}, u"12:00:00"_s},
                                         {u"4"_s, u"DKS"_s, u"D"_s, {}, u"X"_s, u"12:00:01"_s}});
        test.addEvents(u"05-03-2004"_s,
                       {{u"7"_s, u"TX"_s, u"A"_s, {}, {}, u"08:00:00"_s}, listOf("6,TX,D,X,X,12:00:00")});
        const QStringList rows = {u"||TX|A||29-02-2004|10:00:00|"_s,
                                  u"||TX|A||03-03-2004|09:00:00|"_s,
                                  u"|Zo\u00EB|TX|B|X|03-03-2004|11:59:59|"_s,
                                  u"O'Neil <b>|Ann|DKS|C||03-03-2004|12:00:00|"_s,
                                  u"||DKS|D||03-03-2004|12:00:01|X"_s,
                                  u"|Zo\u00EB|TX|A||05-03-2004|08:00:00|"_s,
                                  u"||TX|D|X|05-03-2004|12:00:00|X"_s,
                                  {},
                                  {},
                                  u"||TX|A||31-12-9999|10:00:00|"_s};
        UserDirectory users(test.archives, u"Archivi/AnaCon.zeb"_s);
        QVERIFY(users.open());
        EventSearch search(test.archives, users);
        run(search, wanted);
        QStringList expected;
        for (const QString &number : found.split(u',', Qt::SkipEmptyParts))
            expected.append(rows[number.toInt()]);
        QCOMPARE(allRows(search.results()), expected);
        QVERIFY(search.isComplete());
        qsizetype counted = 0;
        for (const EventCounts::Bar &bar : search.counts().bars(1000)) {
            counted += bar.enabled + bar.disabled;
            const QString day = u'|' + DataFile(bar.from.date()) + u'|';
            const QString time = search.counts().isByHour() ? bar.from.toString(u"HH:"_s) : QString();
            if (bar.firstRow >= 0)
                QVERIFY(search.results().row(bar.firstRow).ok() && expected[bar.firstRow].contains(day + time));
        }
        QCOMPARE(counted, expected.size());
    }

    void counts_data()
    {
        const Rows<QString, QString, int, QString> row("range", "events", "most", "bars");
        // Events: day, hour, and whether enabled.
        row("a day", u"05-05"_s, u"5.08e 5.08d 5.23e"_s, 100, u"05.08>05.08 1+1@0, 05.23>05.23 1+0@2 of 24"_s);
        row("two days", u"05-06"_s, u"5.00d 6.23e"_s, 100, u"05.00>05.00 0+1@0, 06.23>06.23 1+0@1 of 48"_s);
        row("hours that come again", u"05-05"_s, u"5.09e 5.08e 5.09d"_s, 100,
            u"05.08>05.08 1+0@1, 05.09>05.09 1+1@0 of 24"_s);
        row("three days", u"05-07"_s, u"5.08e 5.09d 7.01e"_s, 100, u"05.00>05.00 1+1@0, 07.00>07.00 1+0@2 of 3"_s);
        row("days with nothing around them", u"01-30"_s, u"5.08e 6.08e"_s, 100,
            u"05.00>05.00 1+0@0, 06.00>06.00 1+0@1 of 2"_s);
        row("several hours in a bar", u"05-05"_s, u"5.08e 5.07d 5.23e"_s, 7,
            u"05.04>05.07 0+1@1, 05.08>05.11 1+0@0, 05.20>05.23 1+0@2 of 6"_s);
        row("the last bar is shorter", u"01-30"_s, u"1.00e 2.00e 11.00d"_s, 4,
            u"01.00>03.00 2+0@0, 10.00>11.00 0+1@2 of 4"_s);
        row("nothing", u"05-05"_s, {}, 100, u" of 0"_s);
        row("no room", u"05-05"_s, u"5.08e"_s, 0, u" of 0"_s);
    }
    void counts()
    {
        QFETCH(QString, range);
        QFETCH(QString, events);
        QFETCH(int, most);
        EventCounts counts;
        counts.begin({2004, 3, range.left(2).toInt()}, {2004, 3, range.right(2).toInt()});
        for (const QString &event : events.split(u' ', Qt::SkipEmptyParts))
            counts.add({2004, 3, event.section(u'.', 0, 0).toInt()}, event.section(u'.', 1).left(2).toInt(),
                       event.endsWith(u'e'));
        QTEST(text(counts.bars(most)), "bars");
    }

    void unreadDays()
    {
        TestFolder test;
        test.addUsers({});
        const QStringList one = {u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s};
        for (const char *day : {"01-03-2004", "02-03-2004", "03-03-2004", "04-03-2004"})
            test.addEvents(QString::fromLatin1(day), QList<QStringList>(500, one));
        test.write(u"Archivi/Eventi_02-03-2004.zeb"_s, QByteArray(8192, 'x'));
        test.write(u"Archivi/Eventi_03-03-2004.zeb"_s, {});
        QFile::copy(test.folder.path(u"Archivi/Fascieorg.zeb"_s), test.folder.path(u"Archivi/Eventi_05-03-2004.zeb"_s));
        const Database locked = test.hold(ArchiveName::events(u"04-03-2004"_s));

        UserDirectory users(test.archives, u"Archivi/AnaCon.zeb"_s);
        QVERIFY(users.open());
        EventSearch search(test.archives, users);
        run(search, range(u"01/03/2004"_s, u"06/03/2004"_s));
        QCOMPARE(search.unreadDays(), QList<QDate>({{2004, 3, 2}, {2004, 3, 3}, {2004, 3, 4}, {2004, 3, 5}}));
        QVERIFY(search.step(QDeadlineTimer(0)).ok() && search.incompleteDays().isEmpty() && !search.isComplete());
        QCOMPARE(search.results().count(), 500);
        // What was unread is forgotten by the next search.
        run(search, range(u"01/03/2004"_s, u"01/03/2004"_s));
        QVERIFY(search.isComplete());
        QCOMPARE(search.results().count(), 500);
    }

    /// Pages at random, and what a look at each row by its number still reads.
    void damagedPages()
    {
        QRandomGenerator random(11);
        TestFolder test;
        test.addUsers({});
        const QString name = ArchiveName::events(u"05-03-2004"_s);
        QList<QStringList> events;
        for (int i = 0; i < 2000; ++i) {
            const QString time = QTime(0, 0).addSecs(i).toString(u"HH:mm:ss"_s);
            events.append({QString::number(i), u"TX"_s, QString(QChar(u'A' + i % 4)), {}, {}, time});
        }
        test.addEvents(u"05-03-2004"_s, events);
        const QByteArray sound = test.read(name);
        UserDirectory users(test.archives, u"Archivi/AnaCon.zeb"_s);
        QVERIFY(users.open());
        EventSearch search(test.archives, users);
        QSet<int> kinds; // of day: whole, incomplete, unread
        for (int round = 0; round < 12; ++round) {
            QByteArray torn = sound;
            // The root of the table, the index that no row needs, then any page but that with the names of the tables.
            for (int pages = round < 2 ? 1 : random.bounded(1, 12); pages > 0; --pages)
                torn[round < 2 ? (1 + round) * 4096 : random.bounded(qsizetype{4096}, torn.size())] ^= 1;
            test.write(name, torn);
            const QString channels = round % 2 == 0 ? u"ABCD"_s : u"BD"_s;
            QStringList expected, found;
            int readable = 0;
            {
                Database database = test.hold(name, "SELECT 1");
                Result<Statement> row = database.prepare(u"SELECT Canale, Ora FROM Eventi WHERE ProgEv = ?"_s);
                for (qint64 number = 1; number <= events.size(); ++number, row.value().reset()) {
                    row.value().bind(1, number);
                    const bool isRead = row.value().step().ok();
                    readable += isRead ? 1 : 0;
                    if (isRead && channels.contains(row.value().text(0)))
                        expected.append(row.value().text(1));
                }
            }
            TypedQuery wanted = query(channels, u"TX,DKS"_s);
            wanted.firstDay = wanted.lastDay = u"05/03/2004"_s;
            run(search, wanted);
            for (qsizetype i = 0; i < search.results().count(); ++i)
                found.append(OraTesto(search.results().row(i).value().event.Ora));
            QCOMPARE(found, expected);
            const int kind = readable == events.size() ? 0 : readable > 0 ? 1 : 2;
            kinds.insert(kind);
            QVERIFY(search.isComplete() == (kind == 0) && search.incompleteDays().size() == (kind == 1 ? 1 : 0) &&
                    search.unreadDays().size() == (kind == 2 ? 1 : 0));
        }
        QCOMPARE(kinds.size(), 3);
    }

    void daysSetAside()
    {
        TestFolder test;
        test.addUsers({});
        test.addEvents(u"05-03-2004"_s, {{u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s}});
        for (const char *name :
             {"Eventi_05-03-2004.zeb.guasto10", "EVENTI_05-03-2004.zeb.Guasto", "Eventi_05-03-2004.zeb.guasto2",
              "Eventi_05-03-2004.zeb.guasto2-wal", "Eventi_04-03-2004.zeb.guasto", "Eventi_07-03-2004.zeb.guasto"})
            test.write(u"Archivi/"_s + QString::fromLatin1(name), "set aside");
        const DayFiles files = filesOfDay(test.folder, {2004, 3, 5}).value();
        QCOMPARE(files.archive, u"Archivi/Eventi_05-03-2004.zeb"_s);
        QCOMPARE(files.setAside,
                 QStringList({u"Archivi/EVENTI_05-03-2004.zeb.Guasto"_s, u"Archivi/Eventi_05-03-2004.zeb.guasto2"_s,
                              u"Archivi/Eventi_05-03-2004.zeb.guasto10"_s}));
        // Nor is a day all there while events wait for it.
        QVERIFY(test.archives.create(ArchiveName::Waiting, TableLayout::Waiting, ArchiveName::EventsTemplate));
        test.execute(ArchiveName::Waiting, "INSERT INTO Attesa (Giorno) VALUES ('02-03-2004'), ('02-03-2004')");
        UserDirectory users(test.archives, u"Archivi/AnaCon.zeb"_s);
        QVERIFY(users.open());
        EventSearch search(test.archives, users);
        run(search, range(u"01/03/2004"_s, u"06/03/2004"_s));
        QCOMPARE(search.incompleteDays(), QList<QDate>({{2004, 3, 2}, {2004, 3, 4}, {2004, 3, 5}}));
        QVERIFY(search.unreadDays().isEmpty() && !search.isComplete());
        QCOMPARE(search.results().count(), 1);
        // On another day nothing is missing, unless nobody can tell what waits, or it waits in memory.
        const auto isComplete = [&] {
            run(search, range(u"06/03/2004"_s, u"06/03/2004"_s));
            return search.isComplete();
        };
        QVERIFY(isComplete());
        test.write(QStringView(ArchiveName::Waiting).toString(), "damaged");
        QVERIFY(!isComplete() && search.incompleteDays().isEmpty());
        QVERIFY(test.archives.remove(ArchiveName::Waiting) && isComplete());
        search.setKeptElsewhere([] { return true; });
        QVERIFY(!isComplete());
        QCOMPARE(filesOfDays(BareFolder().folder).fault().code, FaultCode::NotFound);
    }

    void stopAndLeftovers()
    {
        TestFolder test;
        test.addUsers({});
        test.addEvents(u"05-03-2004"_s, QList<QStringList>(50, {u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s}));
        for (const char *left : {"AnaCon.zeb", "Eventitmp.$$$", "Eventitmp.$$$-journal", "Eventitmp.$$$-wal"})
            test.write(u"Archivi/"_s + QString::fromLatin1(left), "left over");
        const QStringList before = test.files(u"Archivi"_s);
        {
            UserDirectory users(test.archives, u"Archivi/AnaCon.zeb"_s);
            QVERIFY(users.open());
            EventSearch search(test.archives, users);
            QVERIFY(search.start(eventQuery(range(u"05/03/2004"_s, u"06/03/2004"_s))));
            for (int i = 0; i < 21; ++i)
                QVERIFY(goesOn(search));
            QVERIFY(search.progress().done == 20 && search.progress().count == 50);
            search.stop();
            QVERIFY(!goesOn(search) && !search.isComplete());
            QCOMPARE(search.results().count(), 20);
            QCOMPARE(allRows(search.results()).last(), u"||TX|A||05-03-2004|10:00:00|"_s);
        }
        for (const QString &name : test.files(u"Archivi"_s))
            QVERIFY2(!name.startsWith(u"Eventitmp.$$$"_s) && name != u"AnaCon.zeb"_s, qPrintable(name));
        QCOMPARE(test.files(u"Archivi"_s).size(), before.size() - 4);
    }

    void resultsThatCannotBeKept()
    {
        RecordingVfs vfs;
        TestFolder test;
        test.addUsers({});
        test.addEvents(u"05-03-2004"_s, QList<QStringList>(5000, {u"1"_s, u"TX"_s, u"A"_s, {}, {}, u"10:00:00"_s}));
        UserDirectory users(test.archives, u"Archivi/AnaCon.zeb"_s);
        QVERIFY(users.open());
        EventSearch search(test.archives, users);
        // The disk is full after some events, and what was found before is there.
        QVERIFY(search.start(eventQuery(range(u"05/03/2004"_s, u"06/03/2004"_s))));
        while (search.progress().done < 3000)
            QVERIFY(goesOn(search));
        vfs.refusal = SQLITE_FULL;
        while (goesOn(search)) {
        }
        QVERIFY(search.step(QDeadlineTimer(0)).fault().code == FaultCode::DiskFull && !search.isComplete());
        QCOMPARE(search.results().count(), 2000);
        QCOMPARE(text(search.counts().bars(48)), u"05.10>05.10 2000+0@0 of 48"_s);
        QVERIFY(search.results().row(1999).ok());
        vfs.refusal = 0;
        // Few events need no disk.
        QVERIFY(search.start(eventQuery(range(u"05/03/2004"_s, u"06/03/2004"_s))));
        vfs.refusal = SQLITE_FULL;
        while (search.progress().done < 1500)
            QVERIFY(goesOn(search));
        search.stop();
        QVERIFY(search.step(QDeadlineTimer(0)).ok() && search.results().row(1499).ok());
        vfs.refusal = 0;
        QFile::remove(test.folder.path(u"Archivi/Eventitmp.zeb"_s));
        QCOMPARE(search.start(eventQuery(range(u"05/03/2004"_s, u"06/03/2004"_s))).fault().code, FaultCode::NotFound);
        QVERIFY(!goesOn(search) && search.results().count() == 0);
    }
};

QTEST_GUILESS_MAIN(TestSearch)
#include "tst_search.moc"
