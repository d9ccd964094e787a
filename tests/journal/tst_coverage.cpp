// What the rows of the service journal say about a range of time.

#include "journal/CoverageReading.h"
#include "journal/JournalFile.h"
#include "support/Fixtures.h"

namespace {

constexpr qint64 minute = 60;
/// New Year's Eve, so that midnight and the year end lie 60 minutes behind it.
constexpr qint64 base = 1'767'222'000;

qint64 at(const QString &minutes)
{
    return base + minutes.toLongLong() * minute;
}

QString moment(const QString &minutes)
{
    return minutes.isEmpty() ? QString() : momentText({at(minutes), 60});
}

/// @param rows  "minute word[:minute[:minute]]" with commas between; "missing" leaves a number out
JournalContent content(const QString &rows, int alive)
{
    static const QHash<QString, JournalKind> kinds = {{u"start"_s, JournalKind::Started},
                                                      {u"end"_s, JournalKind::Ended},
                                                      {u"cut"_s, JournalKind::FoundCutOff},
                                                      {u"turn"_s, JournalKind::YearTurned},
                                                      {u"clock"_s, JournalKind::ClockMoved},
                                                      {u"slept"_s, JournalKind::Slept},
                                                      {u"woke"_s, JournalKind::Woke},
                                                      {u"open"_s, JournalKind::PortOpened},
                                                      {u"lent"_s, JournalKind::PortLent},
                                                      {u"lost"_s, JournalKind::PortLost},
                                                      {u"back"_s, JournalKind::PortBack},
                                                      {u"none"_s, JournalKind::PortNotAvailable},
                                                      {u"answers"_s, JournalKind::InterfaceAnswers},
                                                      {u"silent"_s, JournalKind::InterfaceSilent},
                                                      {u"fails"_s, JournalKind::StoringFails},
                                                      {u"resumes"_s, JournalKind::StoringResumes},
                                                      {u"gone"_s, JournalKind::EventsLost},
                                                      {u"later"_s, JournalKind(999)}};
    JournalContent content;
    qint64 number = 7;
    for (const QString &row : rows.split(u',', Qt::SkipEmptyParts)) {
        ++number;
        const QStringList words = row.section(u' ', 1).split(u':');
        if (words[0] == u"missing")
            continue;
        if (!kinds.contains(words[0]))
            qFatal("no such row: %s", qPrintable(row));
        // Every other row as if summer time ended again and again: only UTC counts.
        content.rows.append({number,
                             {at(row.section(u' ', 0, 0)), number % 2 == 0 ? 60 : 120},
                             kinds[words[0]],
                             moment(words.value(1)),
                             moment(words.value(2))});
    }
    if (alive >= 0)
        content.alive = Moment{base + alive * minute, 60};
    return content;
}

/// "from-to letter" with commas between, in minutes.
QString inShort(const QList<CoveredSpan> &spans)
{
    QStringList all;
    for (const CoveredSpan &span : spans)
        all += u"%1-%2 %3"_s.arg((span.from - base) / minute)
                   .arg((span.to - base) / minute)
                   .arg(u"RPXSENL"_s[static_cast<int>(span.state)]);
    return all.join(u',');
}

} // namespace

class TestCoverage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void spans_data()
    {
        const Rows<QString, int, QString> row("rows", "alive", "spans");
        const QString runs = u"0 start,0 open"_s;
        row("no journal", {}, -1, u"0-100 N"_s);
        row("before it begins, over midnight and New Year", u"20 start,21 open"_s, 100, u"0-20 N,20-21 P,21-100 L"_s);
        row("began before the range", u"-9000 start,-9000 open,-60 turn"_s, 100, u"0-100 L"_s);
        row("ended and started again", runs + u",40 end,50 start,51 open"_s, 100, u"0-40 L,40-50 R,50-51 P,51-100 L"_s);
        row("ended for good", runs + u",40 end"_s, 40, u"0-40 L,40-100 R"_s);
        row("cut off", runs + u",10 answers,50 cut:30,50 start,51 open"_s, 100, u"0-30 L,30-50 R,50-51 P,51-100 L"_s);
        row("cut off, no sign of life", runs + u",10 answers,50 cut,50 start,50 open"_s, 100,
            u"0-10 L,10-50 R,50-100 L"_s);
        row("cut off last, not told yet", runs, 30, u"0-30 L,30-100 N"_s);
        row("port", u"0 start,10 none,20 open,30 lent,40 open,50 lost,60 back"_s, 100,
            u"0-20 P,20-30 L,30-40 P,40-50 L,50-60 X,60-100 L"_s);
        row("interface, heard of before", runs + u",30 silent:20,40 answers,50 silent,60 end"_s, 60,
            u"0-20 L,20-40 S,40-50 L,50-60 S,60-100 R"_s);
        row("port lost while silent", runs + u",10 silent,20 lost,30 back"_s, 100,
            u"0-10 L,10-20 S,20-30 X,30-100 L"_s);
        row("events waited and were stored", runs + u",10 fails,20 resumes"_s, 100, u"0-100 L"_s);
        row("of those that waited some were lost", runs + u",10 fails,15 gone,20 resumes"_s, 100,
            u"0-10 L,10-20 E,20-100 L"_s);
        row("they wait still", runs + u",10 fails"_s, 100, u"0-10 L,10-100 E"_s);
        row("cut off while they waited", runs + u",10 fails,40 cut:30,40 start,40 open"_s, 100,
            u"0-10 L,10-30 E,30-40 R,40-100 L"_s);
        row("events lost that did not wait", u"0 start,5 open,30 gone"_s, 100, u"0-5 P,5-30 E,30-100 L"_s);
        row("slept", runs + u",40 answers,30 slept,50 woke"_s, 100, u"0-30 L,30-50 R,50-100 L"_s);
        row("clock set forward", runs + u",40 clock:20:40"_s, 100, u"0-20 L,20-40 N,40-100 L"_s);
        row("clock set back, listening", runs + u",20 clock:60:20"_s, 100, u"0-100 L"_s);
        row("clock set back over a gap", runs + u",40 lost,50 back,20 clock:60:20"_s, 100,
            u"0-40 L,40-50 X,50-100 L"_s);
        row("a gap after it was set back", runs + u",20 clock:60:20,30 lost,40 back"_s, 100,
            u"0-30 L,30-40 X,40-100 L"_s);
        row("set back and forth", runs + u",20 clock:60:20,70 clock:30:70"_s, 100, u"0-60 L,60-70 N,70-100 L"_s);
        row("clock moved while events waited", runs + u",50 fails,20 clock:60:20,25 gone,30 resumes"_s, 100,
            u"0-20 L,20-30 E,30-50 L,50-60 E,60-100 L"_s);
        row("set back between two runs", u"0 start,0 open,60 end,20 start,20 open,40 lost"_s, 80,
            u"0-40 L,40-80 X,80-100 N"_s);
        row("rows are missing", runs + u",30 answers,35 missing,40 answers,50 open"_s, 100,
            u"0-30 L,30-50 N,50-100 L"_s);
        row("a start is missing", runs + u",30 end,31 missing,40 open"_s, 100, u"0-30 L,30-40 N,40-100 L"_s);
        row("started twice", runs + u",30 start,31 open"_s, 100, u"0-30 R,30-31 P,31-100 L"_s);
        row("kinds of later", runs + u",20 later,30 later"_s, 100, u"0-100 L"_s);
    }
    void spans()
    {
        QFETCH(QString, rows);
        QFETCH(int, alive);
        QFETCH(QString, spans);
        QCOMPARE(inShort(coverage(content(rows, alive), base, base + 100 * minute)), spans);
    }

    void touchingGapsAreOneTime()
    {
        const JournalContent journal = content(u"0 start,0 open,40 end,50 start,52 open,70 lost,80 back"_s, 100);
        QCOMPARE(missingOf(coverage(journal, base, base + 100 * minute)), (Missing{{2, 22 * minute}, {}}));
        QVERIFY(coverage(journal, base, base).isEmpty());
    }

    void hourThatComesTwice()
    {
        const QByteArray zone = qgetenv("TZ");
        qputenv("TZ", "Europe/Rome");
        ::tzset();
        const auto range = [](const char *first, const char *last) {
            const SecondsRange meant = secondsOf(QDateTime::fromString(QLatin1String(first), Qt::ISODate),
                                                 QDateTime::fromString(QLatin1String(last), Qt::ISODate));
            return meant.to - meant.from;
        };
        QCOMPARE(range("2026-10-25T02:10:00", "2026-10-25T02:19:59"), 70 * minute);
        QCOMPARE(range("2026-10-25T00:00:00", "2026-10-25T23:59:59"), 25 * 60 * minute);
        QCOMPARE(range("2026-03-29T00:00:00", "2026-03-29T23:59:59"), 23 * 60 * minute);
        QCOMPARE(range("2026-10-25T03:00:00", "2026-10-25T03:59:59"), 60 * minute);
        // What is written in that hour is told apart by the offset.
        const QString day = u"25-10-2026"_s, time = u"02:30:00"_s;
        QCOMPARE(momentOf(day, time, 60)->seconds - momentOf(day, time, 120)->seconds, 60 * minute);
        QCOMPARE(momentOfText(momentText(*momentOf(day, time, 120))), momentOf(day, time, 120));
        QVERIFY(!momentOf(day, u"2:30"_s, 60) && !momentOf(u"31-02-2026"_s, time, 60) && !momentOf(day, time, 1500));
        zone.isNull() ? qunsetenv("TZ") : qputenv("TZ", zone);
        ::tzset();
    }

    void searched_data()
    {
        const Rows<QString, QString, QString, QString, QString> row("days", "from", "to", "until", "spans");
        const QString first = u"00:00:00"_s, last = u"23:59:59"_s;
        // The program listened from 12:00 of the 1st, but from 17:30 of the 2nd to 08:30 of the 3rd.
        row("whole days are one range", u"1-3"_s, first, last, u"4 00:00"_s,
            u"1 00:00-12:00 N,1 12:00-17:30 L,2 17:30-08:30 R,3 08:30-00:00 L"_s);
        row("up to now", u"3-3"_s, first, last, u"3 08:40"_s, u"3 00:00-08:30 R,3 08:30-08:40 L"_s);
        row("days ahead", u"3-9999"_s, first, last, u"3 08:31"_s, u"3 00:00-08:30 R,3 08:30-08:31 L"_s);
        row("all ahead", u"5-6"_s, first, last, u"4 00:00"_s, {});
        row("hours ahead", u"3-3"_s, u"10:00:00"_s, u"11:00:00"_s, u"3 09:00"_s, {});
        row("hours of each day", u"1-3"_s, u"08:00:00"_s, u"17:59:59"_s, u"3 09:00"_s,
            u"1 08:00-12:00 N,1 12:00-18:00 L,2 08:00-17:30 L,2 17:30-18:00 R,3 08:00-08:30 R,3 08:30-09:00 L"_s);
        row("hours without the gap", u"2-2"_s, u"09:00:00"_s, u"09:59:59"_s, u"4 00:00"_s, u"2 09:00-10:00 L"_s);
        row("hours the wrong way round", u"1-3"_s, u"10:00:00"_s, u"09:00:00"_s, u"4 00:00"_s, {});
    }
    void searched()
    {
        QFETCH(QString, days);
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, until);
        QFETCH(QString, spans);
        const auto moment = [](int day, const QString &time) {
            return momentOf(QDateTime(QDate(2026, 6, 1), QTime::fromString(time)).addDays(day - 1));
        };
        TestFolder test;
        Result<std::unique_ptr<JournalFile>> file = JournalFile::open(test.archives, 2026);
        const QList<JournalRow> rows = {{1, moment(1, u"12:00"_s), JournalKind::Started, {}, {}},
                                        {2, moment(1, u"12:00"_s), JournalKind::PortOpened, {}, {}},
                                        {3, moment(2, u"17:30"_s), JournalKind::Ended, {}, {}},
                                        {4, moment(3, u"08:30"_s), JournalKind::Started, {}, {}},
                                        {5, moment(3, u"08:30"_s), JournalKind::PortOpened, {}, {}}};
        QVERIFY(file && file.value()->write(rows, moment(3, u"08:30"_s)).ok());
        const QDate begin(2026, 6, days.section(u'-', 0, 0).toInt());
        const DailyHours hours = {begin, QDate(2026, 5, 31).addDays(days.section(u'-', 1).toInt()),
                                  QTime::fromString(from), QTime::fromString(to)};
        CoverageReading reading(test.archives, hours,
                                moment(until.section(u' ', 0, 0).toInt(), until.section(u' ', 1)).seconds,
                                moment(4, u"00:00"_s));
        int steps = 1;
        while (!reading.step(QDeadlineTimer(0)).value())
            ++steps;
        QVERIFY(steps > 2 || spans.isEmpty());
        QStringList told;
        for (const CoveredSpan &span : reading.spans()) {
            const QDateTime start = QDateTime::fromSecsSinceEpoch(span.from);
            const QDateTime end = QDateTime::fromSecsSinceEpoch(span.to);
            told += u"%1 %2-%3 %4"_s.arg(start.date().day())
                        .arg(start.toString(u"HH:mm"_s), end.toString(u"HH:mm"_s))
                        .arg(u"RPXSENL"_s[static_cast<int>(span.state)]);
        }
        QCOMPARE(told.join(u','), spans);
        QCOMPARE(reading.rows().size(), rows.size());
    }

    void timesThatDoNotTouch()
    {
        using enum Listening;
        const QList<CoveredSpan> spans = {{0, 10, NotRunning},  {10, 20, PortLost}, {20, 30, NotKnown},
                                          {30, 40, NotRunning}, {90, 95, PortLost}, {95, 99, Listened}};
        QCOMPARE(missingOf(spans), (Missing{{3, 35}, {1, 10}}));
    }
};

QTEST_GUILESS_MAIN(TestCoverage)
#include "tst_coverage.moc"
