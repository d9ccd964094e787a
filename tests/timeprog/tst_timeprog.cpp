#include "support/Fixtures.h"
#include "texts/DateTimeText.h"
#include "timeprog/NextChange.h"
#include "timeprog/Strips.h"
#include "timeprog/TimeProgramme.h"

#include <QMetaEnum>

#include <ctime>

namespace {

Band band(const char *marks, const char *from, const char *to)
{
    Band made{{}, shortTimeOf(QString::fromLatin1(from)), shortTimeOf(QString::fromLatin1(to))};
    for (size_t day = 0; day < made.marks.size(); ++day)
        made.marks.at(day) = marks[day] == 'X';
    return made;
}

const char *const everyDay = "XXXXXXX";
const char *const monday = "X      ";

/// "caption first-last", what is marked behind "*", the present moment behind "|".
QString text(const Strips::Strip &strip)
{
    QString text = strip.caption;
    const auto add = [&text](const char *before, const QList<Strips::Span> &spans) {
        for (const Strips::Span &span : spans)
            text += u"%1%2-%3"_s.arg(QLatin1String(before)).arg(span.first).arg(span.last);
    };
    add(" ", strip.spans);
    add(" *", strip.marked);
    return strip.now ? text + u" |%1"_s.arg(*strip.now) : text;
}

} // namespace

class TestTimeProgramme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void evaluation_data()
    {
        QTest::addColumn<QList<Band>>("bands");
        QTest::addColumn<QString>("moment");
        QTest::addColumn<TimeState>("state");
        const QList<Band> work = {band(monday, "08:00", "17:30")};
        const QList<Band> always = {band(everyDay, "00:00", "23:59")};
        const auto row = [](const char *moment, const QList<Band> &bands, TimeState state, const char *name = "") {
            QTest::addRow("%s %s", moment, name) << bands << QString::fromLatin1(moment) << state;
        };
        // 1 March 2004 is a Monday; holidays are 24 to 26 December 2004 and 6 January 2005.
        row("2004-03-01T07:59:59", work, TimeState::OutsideBands);
        row("2004-03-01T08:00:00", work, TimeState::InBand);
        row("2004-03-01T17:30:59", work, TimeState::InBand);
        row("2004-03-01T17:31:00", work, TimeState::OutsideBands);
        row("2004-02-29T00:00:00", always, TimeState::InBand);
        row("2004-12-23T23:59:59", always, TimeState::InBand);
        row("2004-12-24T00:00:00", always, TimeState::OnHoliday);
        row("2004-12-26T23:59:59", always, TimeState::OnHoliday);
        row("2004-12-27T00:00:00", always, TimeState::InBand);
        row("2004-12-27T12:00:00", {band(monday, "08:00", "09:00")}, TimeState::OutsideBands,
            "holidays are not looked at");
        row("2004-03-07T10:00:00", {band("      X", "10:00", "10:00")}, TimeState::InBand, "Sunday");
        row("2004-03-01T09:00:00", {band("       ", "08:00", "12:00"), band(monday, "08:00", "10:00")},
            TimeState::InBand, "same start, the second is marked");
        row("2004-03-01T09:00:00", {band(monday, "07:00", "08:00"), band("x      ", "08:00", "12:00")},
            TimeState::OutsideBands, "another mark");
        row("2004-03-01T09:00:00", {}, TimeState::OutsideBands, "no bands");
    }
    void evaluation()
    {
        QFETCH(QList<Band>, bands);
        QFETCH(QString, moment);
        const QList<Holiday> holidays = {{{2004, 12, 24}, {2004, 12, 26}}, {{2005, 1, 6}, {2005, 1, 6}}};
        QTEST(evaluate(bands, holidays, QDateTime::fromString(moment, Qt::ISODate)), "state");
    }

    /// In a zone that puts its clocks from 02:00 to 03:00 on 28 March 2004, and back on 31 October.
    void nextChanges_data()
    {
        QTest::addColumn<QList<Band>>("bands");
        QTest::addColumn<QString>("moment");
        QTest::addColumn<QString>("next");
        QTest::addColumn<QString>("sentence");
        const QList<Band> work = {band("XXXXX  ", "07:30", "12:00"), band("XXXXX  ", "11:00", "17:59")};
        const QList<Band> always = {band(everyDay, "00:00", "23:59")};
        const QList<Band> night = {band(everyDay, "00:00", "02:29"), band(everyDay, "02:45", "02:49")};
        const auto row = [](const char *name, const QList<Band> &bands, const char *moment, const char *next,
                            const char *sentence) {
            QTest::newRow(name) << bands << QString::fromLatin1(moment) << QString::fromLatin1(next)
                                << QString::fromLatin1(sentence);
        };
        row("bands that overlap", work, "2004-03-01T08:00:00", "2004-03-01T18:00:00", "Enabled until 17:59");
        row("last second", work, "2004-03-01T17:59:59", "2004-03-01T18:00:00", "Enabled until 17:59");
        row("over the week-end", work, "2004-03-05T20:00:00", "2004-03-08T07:30:00", "Disabled until Monday 07:30");
        row("once a week", {band(monday, "07:30", "07:30")}, "2004-03-01T07:31:00", "2004-03-08T07:30:00",
            "Disabled until 08/03/2004 07:30");
        row("before holidays", work, "2004-12-23T18:00:00", "2004-12-27T07:30:00",
            "Disabled until Monday 07:30 (holiday)");
        row("holidays begin", always, "2004-12-23T12:00:00", "2004-12-24T00:00:00", "Enabled until 23:59 (holiday)");
        row("holidays end", always, "2004-12-24T12:00:00", "2004-12-27T00:00:00",
            "Disabled until Monday 00:00 (holiday)");
        row("holidays far away", {band(monday, "08:00", "09:00")}, "2004-12-21T00:00:00", "2004-12-27T08:00:00",
            "Disabled until Monday 08:00");
        row("a year of holidays but a day", work, "2005-12-05T00:00:00", "2006-12-04T07:30:00",
            "Disabled until 04/12/2006 07:30 (holiday)");
        row("more than a year of holidays", work, "2005-12-02T23:00:00", "", "Disabled, no change in a year");
        row("always", always, "2003-03-01T08:00:00", "", "Enabled, no change in a year");
        row("over midnight", {band(" X     ", "00:00", "06:00"), band(monday, "22:00", "23:59")}, "2004-03-01T22:00:00",
            "2004-03-02T06:01:00", "");
        row("the end is left out", night, "2004-03-28T01:00:00", "2004-03-28T03:00:00", "Enabled until 01:59");
        row("all of it is left out", {band("      X", "02:00", "02:59")}, "2004-03-27T00:00:00", "2004-04-04T02:00:00",
            "");
        row("twice, the first end", night, "2004-10-31T01:59:00", "2004-10-31T02:30:00", "Enabled until 02:29");
        row("twice, the second start", {band("      X", "02:00", "02:29")}, "2004-10-31T02:59:59",
            "2004-10-31T02:00:00", "");
    }
    void nextChanges()
    {
        QFETCH(QList<Band>, bands);
        QFETCH(QString, moment);
        QFETCH(QString, next);
        qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
        tzset();
        const QList<Holiday> holidays = {{{2004, 12, 24}, {2004, 12, 26}}, {{2005, 12, 3}, {2006, 12, 3}}};
        const QDateTime now = QDateTime::fromString(moment, Qt::ISODate);
        const std::optional<NextChange> found = nextChange(bands, holidays, now);
        QCOMPARE(found ? found->moment.toString(Qt::ISODate) : QString(), next);
        // The plain way to find it.
        const auto isEnabled = [&](const QDateTime &at) { return evaluate(bands, holidays, at) == TimeState::InBand; };
        const qint64 minute = now.toSecsSinceEpoch() / 60;
        const qint64 end = found ? found->moment.toSecsSinceEpoch() / 60 : minute + 365 * 1440;
        for (qint64 at = minute + 1; at < end; ++at)
            QCOMPARE(isEnabled(QDateTime::fromSecsSinceEpoch(60 * at)), isEnabled(now));
        QVERIFY(!found || isEnabled(found->moment) != isEnabled(now));
        QFETCH(QString, sentence);
        if (!sentence.isEmpty())
            QCOMPARE(untilSentence(isEnabled(now), found, now.date(), textsIn()), sentence);
    }

    void pictures_data()
    {
        QTest::addColumn<QList<Band>>("bands");
        QTest::addColumn<QList<Holiday>>("holidays");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<QString>("words");
        const auto week = [](const char *name, const QList<Band> &bands, const QStringList &days, const char *words) {
            QTest::newRow(name) << bands << QList<Holiday>() << days << QString::fromLatin1(words);
        };
        // It is Friday, 5 March 2004, 08:01, and the second row is marked.
        week("apart", {band(monday, "00:00", "00:00"), band(monday, "00:02", "23:59")},
             {u"Mon 0-0 2-1439 *2-1439"_s, u"Fri |481"_s},
             "Monday: 00:00 - 00:00, 00:02 - 23:59; Tuesday: no time band");
        week("touching", {band(monday, "08:00", "08:59"), band(monday, "09:00", "10:00")}, {u"Mon 480-600 *540-600"_s},
             "Monday: 08:00 - 10:00;");
        week("one inside the other", {band("X   X  ", "08:00", "12:00"), band("    X  ", "09:00", "10:00")},
             {u"Mon 480-720"_s, u"Fri 480-720 *540-600 |481"_s}, "Monday: 08:00 - 12:00;");
        week("no times", {{{true}, {}, {12, 0}}, {{true}, {12, 0}, {11, 0}}}, {u"Mon"_s}, "Monday: no time band;");
        const auto year = [](const char *name, const QList<Holiday> &holidays, const QStringList &months,
                             const char *words) {
            QTest::newRow(name) << QList<Band>() << holidays << months << QString::fromLatin1(words);
        };
        year("over a month's end", {{{2004, 4, 29}, {2004, 4, 30}}, {{2004, 5, 1}, {2004, 6, 1}}},
             {u"03/2004 |5"_s, u"04/2004 29-30"_s, u"05/2004 1-31 *1-31"_s, u"06/2004 1-1 *1-1"_s},
             "29/04/2004 - 01/06/2004");
        year("past and far away",
             {{{2004, 3, 1}, {2004, 3, 5}}, {{2005, 3, 4}, {2005, 3, 31}}, {{2006, 1, 1}, {2006, 1, 2}}},
             {u"03/2004 5-5 |5"_s, u"03/2005 4-4 *4-4"_s}, "05/03/2004, 04/03/2005");
        year("none", {{{}, {2005, 1, 1}}}, {u"03/2004 |5"_s}, "no holidays");
    }
    void pictures()
    {
        QFETCH(QList<Band>, bands);
        QFETCH(QList<Holiday>, holidays);
        QFETCH(QStringList, expected);
        QFETCH(QString, words);
        const Texts texts = textsIn();
        const FakeClock clock;
        const Strips strips = holidays.isEmpty() ? weekStrips(bands, 1, clock.moment.addSecs(16 * 60), texts)
                                                 : holidayStrips(holidays, 1, clock.date(), texts);
        QCOMPARE(strips.strips.size(), holidays.isEmpty() ? 7 : 13);
        QCOMPARE(strips.strips.last().there, holidays.isEmpty() ? strips.scale : (Strips::Span{1, 4}));
        QStringList shown;
        for (const Strips::Strip &strip : strips.strips)
            shown.append(text(strip));
        for (const QString &one : expected)
            QVERIFY2(shown.contains(one), qPrintable(shown.join(u',')));
        QVERIFY2(strips.words.startsWith(words), qPrintable(strips.words));
    }

    void linesAndCauses()
    {
        TestFolder test;
        QVERIFY(test.archives.copy(ArchiveName::BandsTemplate, ArchiveName::Bands).ok());
        QVERIFY(test.archives.copy(ArchiveName::HolidaysTemplate, ArchiveName::Holidays).ok());
        test.execute(ArchiveName::Bands, "INSERT INTO Fascie VALUES ('X','X','X','X','X','X','X','20:00','21:00');"
                                         "INSERT INTO Fascie VALUES ('X','X','X','X','X','X','X','08:00','17:30')");
        test.execute(ArchiveName::Holidays,
                     "INSERT INTO Giorni VALUES ('06/03/2004','06/03/2004','20040306','20040306')");
        FakeClock clock;
        TimeProgramme programme(test.archives, clock);
        QStringList told;
        int applied = 0;
        connect(&programme, &TimeProgramme::applied, this, [&applied] { ++applied; });
        connect(&programme, &TimeProgramme::lineChanged, this, [&told](bool asserted, TimeProgramme::Cause cause) {
            told.append((asserted ? u"asserted "_s : u"released "_s) +
                        QString::fromLatin1(QMetaEnum::fromType<TimeProgramme::Cause>().valueToKey(int(cause))));
        });
        QVERIFY(programme.reload(TimeProgramme::Part::Bands) && programme.reload(TimeProgramme::Part::Holidays));
        const auto at = [&](const char *moment) {
            clock.moment = QDateTime::fromString(QString::fromLatin1(moment), Qt::ISODate);
            programme.run();
            return std::exchange(told, {}).join(QLatin1Char(','));
        };
        Texts texts;
        QVERIFY(programme.untilWhen(texts).isEmpty());
        QCOMPARE(at("2004-03-05T07:45:00"), u"asserted Start"_s);
        QCOMPARE(programme.untilWhen(texts), u"Disabilitata fino alle 08:00"_s);
        QCOMPARE(at("2004-03-05T08:00:00"), u"released Band"_s);
        QCOMPARE(at("2004-03-05T17:31:00"), u"asserted Band"_s);
        QCOMPARE(at("2004-03-05T20:30:00"), u"released Band"_s);
        QCOMPARE(programme.untilWhen(texts), u"Abilitata fino alle 21:00"_s);
        QCOMPARE(at("2004-03-06T20:30:00"), u"asserted Holiday"_s);
        QCOMPARE(at("2004-03-07T20:30:00"), u"released Holiday"_s);
        QCOMPARE(applied, 6);
        // While an editor has the bands the state stays; closing it reads them anew.
        programme.suspend(TimeProgramme::Part::Bands);
        programme.suspend(TimeProgramme::Part::Holidays);
        QVERIFY(programme.reload(TimeProgramme::Part::Holidays).ok() && programme.isSuspended());
        QCOMPARE(programme.untilWhen(texts), u"Abilitata finché il programma orario è in modifica"_s);
        test.execute(ArchiveName::Bands, "DELETE FROM Fascie");
        QVERIFY(programme.reload(TimeProgramme::Part::Bands).ok() && !programme.isSuspended());
        QCOMPARE(at("2004-03-07T20:30:00"), u"asserted Band"_s);
        QCOMPARE(programme.untilWhen(texts), u"Disabilitata, nessun cambiamento entro un anno"_s);
        programme.end();
        QCOMPARE(told, QStringList{u"released End"_s});
    }

    /// Without its bands the interface stays disabled, without its holidays they count as none.
    void unreadableArchives()
    {
        for (const bool bandsAreThere : {false, true}) {
            TestFolder test;
            QVERIFY(test.archives.copy(ArchiveName::BandsTemplate, ArchiveName::Bands).ok());
            test.execute(ArchiveName::Bands, "INSERT INTO Fascie VALUES ('X','X','X','X','X','X','X','00:00','23:59')");
            if (!bandsAreThere)
                test.write(u"Archivi/Fascie.zeb"_s, "damaged");
            test.write(u"Archivi/Ferie.zeb"_s, QByteArray(8192, 'x'));
            FakeClock clock;
            TimeProgramme programme(test.archives, clock);
            QCOMPARE(programme.reload(TimeProgramme::Part::Bands).ok(), bandsAreThere);
            QCOMPARE(programme.reload(TimeProgramme::Part::Holidays).fault().code, FaultCode::Damaged);
            programme.run();
            QCOMPARE(programme.isEnabled(), bandsAreThere);
        }
    }
};

QTEST_GUILESS_MAIN(TestTimeProgramme)
#include "tst_timeprog.moc"
