#include "archives/Tables.h"
#include "support/Fixtures.h"
#include "texts/DateTimeText.h"
#include "timeprog/TimeProgramme.h"

#include <QMetaEnum>
#include <QRandomGenerator>
#include <QTest>

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

void execute(TestFolder &test, const char16_t *archive, const char *sql)
{
    Result<Database> database = test.archives.open(archive, Database::Use::Safe);
    if (!database || !database.value().execute(sql))
        qFatal("%s", sql);
}

} // namespace

class TestTimeProgramme : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void evaluation_data();
    void evaluation();
    void agreesWithAPlainModel();
    void linesAndCauses();
    void unreadableArchives_data();
    void unreadableArchives();
};

void TestTimeProgramme::evaluation_data()
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
    row("2004-03-02T10:00:00", work, TimeState::OutsideBands);
    row("2004-02-29T00:00:00", always, TimeState::InBand);
    row("2004-12-23T23:59:59", always, TimeState::InBand);
    row("2004-12-24T00:00:00", always, TimeState::OnHoliday);
    row("2004-12-25T12:00:00", always, TimeState::OnHoliday);
    row("2004-12-26T23:59:59", always, TimeState::OnHoliday);
    row("2004-12-27T00:00:00", always, TimeState::InBand);
    row("2005-01-06T12:00:00", always, TimeState::OnHoliday);
    row("2004-12-27T12:00:00", {band(monday, "08:00", "09:00")}, TimeState::OutsideBands, "holidays are not looked at");
    row("2004-03-06T10:00:00", {band("     X ", "10:00", "10:00")}, TimeState::InBand, "Saturday");
    row("2004-03-07T10:00:00", {band("      X", "10:00", "10:00")}, TimeState::InBand, "Sunday");
    row("2004-03-07T10:00:00", {band("XXXXXX ", "10:00", "10:00")}, TimeState::OutsideBands, "not Sunday");
    row("2004-03-01T09:00:00", {band("       ", "08:00", "12:00"), band(monday, "08:00", "10:00")}, TimeState::InBand,
        "same start, the second is marked");
    row("2004-03-01T09:00:00", {band(monday, "07:00", "08:00"), band("x      ", "08:00", "12:00")},
        TimeState::OutsideBands, "another mark");
    row("2004-03-01T09:00:00", {}, TimeState::OutsideBands, "no bands");
}

void TestTimeProgramme::evaluation()
{
    QFETCH(QList<Band>, bands);
    QFETCH(QString, moment);
    const QList<Holiday> holidays = {{{2004, 12, 24}, {2004, 12, 26}}, {{2005, 1, 6}, {2005, 1, 6}}};
    QTEST(evaluate(bands, holidays, QDateTime::fromString(moment, Qt::ISODate)), "state");
}

/// A thousand random programmes, each over every minute of a day, against a table of minutes and a set of days.
void TestTimeProgramme::agreesWithAPlainModel()
{
    QRandomGenerator random(20041231);
    const QTimeZone rome("Europe/Rome");
    const QList<QDate> edges = {{2004, 2, 28}, {2004, 2, 29},  {2004, 3, 1},   {2004, 3, 28},  {2004, 4, 30},
                                {2004, 5, 1},  {2004, 10, 31}, {2004, 12, 31}, {2005, 1, 1},   {2005, 2, 28},
                                {2005, 3, 1},  {2100, 2, 28},  {2100, 3, 1},   {2004, 12, 24}, {2004, 12, 27}};
    const auto time = [](int minute) { return QTime(minute / 60, minute % 60); };
    for (int programme = 0; programme < 1000; ++programme) {
        const QDate day = edges[programme % edges.size()];
        QList<Band> bands;
        std::array<std::array<bool, 1440>, 7> marked{};
        for (int count = random.bounded(6); count > 0; --count) {
            const int from = random.bounded(1440);
            const int to = random.bounded(from, 1440);
            Band band{{}, time(from), time(to)};
            for (size_t weekday = 0; weekday < 7; ++weekday) {
                const bool counts = random.bounded(2) == 1;
                band.marks.at(weekday) = counts;
                for (int minute = from; counts && minute <= to; ++minute)
                    marked.at(weekday).at(static_cast<size_t>(minute)) = true;
            }
            bands.append(band);
        }
        std::sort(bands.begin(), bands.end(), [](const Band &a, const Band &b) { return a.Da < b.Da; });
        QList<Holiday> holidays;
        QSet<QDate> free;
        for (int count = random.bounded(3); count > 0; --count) {
            const QDate first = day.addDays(random.bounded(5) - 3);
            const QDate last = first.addDays(random.bounded(3));
            holidays.append({first, last});
            for (QDate one = first; one <= last; one = one.addDays(1))
                free.insert(one);
        }
        std::sort(holidays.begin(), holidays.end(),
                  [](const Holiday &a, const Holiday &b) { return a.DalGiorno < b.DalGiorno; });
        // By the seconds of the world, so that the hour that comes twice and the one that does not come are there.
        QDateTime moment = QDateTime(day, QTime(0, 0, random.bounded(60)), rome);
        for (; moment.date() == day; moment = moment.addSecs(60)) {
            const auto minute = static_cast<size_t>(moment.time().hour() * 60 + moment.time().minute());
            const bool inBand = marked.at(static_cast<size_t>(day.dayOfWeek() - 1)).at(minute);
            const bool expected = inBand && !free.contains(day);
            if ((evaluate(bands, holidays, moment) == TimeState::InBand) != expected)
                QFAIL(qPrintable(QStringLiteral("programme %1, %2").arg(programme).arg(moment.toString(Qt::ISODate))));
        }
    }
}

void TestTimeProgramme::linesAndCauses()
{
    TestFolder test;
    QVERIFY(test.archives.copy(ArchiveName::BandsTemplate, ArchiveName::Bands).ok());
    QVERIFY(test.archives.copy(ArchiveName::HolidaysTemplate, ArchiveName::Holidays).ok());
    execute(test, ArchiveName::Bands,
            "INSERT INTO Fascie VALUES ('X','X','X','X','X','X','X','20:00','21:00');"
            "INSERT INTO Fascie VALUES ('X','X','X','X','X','X','X','08:00','17:30')");
    execute(test, ArchiveName::Holidays, "INSERT INTO Giorni VALUES ('06/03/2004','06/03/2004','20040306','20040306')");
    FakeClock clock;
    TimeProgramme programme(test.archives, clock);
    QStringList told;
    int applied = 0;
    connect(&programme, &TimeProgramme::applied, this, [&applied] { ++applied; });
    connect(&programme, &TimeProgramme::lineChanged, this, [&told](bool asserted, TimeProgramme::Cause cause) {
        told.append((asserted ? u"asserted "_s : u"released "_s) +
                    QString::fromLatin1(QMetaEnum::fromType<TimeProgramme::Cause>().valueToKey(int(cause))));
    });
    QVERIFY(programme.reload(TimeProgramme::Part::Bands).ok());
    QVERIFY(programme.reload(TimeProgramme::Part::Holidays).ok());
    const auto at = [&](const char *moment) {
        clock.moment = QDateTime::fromString(QString::fromLatin1(moment), Qt::ISODate);
        programme.run();
        return std::exchange(told, {}).join(QLatin1Char(','));
    };
    QCOMPARE(at("2004-03-05T07:45:00"), u"asserted Start"_s);
    QCOMPARE(at("2004-03-05T07:59:59"), QString());
    QCOMPARE(at("2004-03-05T08:00:00"), u"released Band"_s);
    QCOMPARE(at("2004-03-05T17:31:00"), u"asserted Band"_s);
    QCOMPARE(at("2004-03-05T20:30:00"), u"released Band"_s);
    QCOMPARE(at("2004-03-06T20:30:00"), u"asserted Holiday"_s);
    QCOMPARE(at("2004-03-07T20:30:00"), u"released Holiday"_s);
    QCOMPARE(applied, 7);
    // While an editor has the bands the state stays; closing it reads them anew.
    programme.suspend(TimeProgramme::Part::Bands);
    programme.suspend(TimeProgramme::Part::Holidays);
    QVERIFY(programme.reload(TimeProgramme::Part::Holidays).ok());
    QVERIFY(programme.isSuspended());
    execute(test, ArchiveName::Bands, "DELETE FROM Fascie");
    QVERIFY(programme.reload(TimeProgramme::Part::Bands).ok());
    QVERIFY(!programme.isSuspended());
    QCOMPARE(at("2004-03-07T20:30:00"), u"asserted Band"_s);
    programme.end();
    QCOMPARE(told, QStringList{u"released End"_s});
}

void TestTimeProgramme::unreadableArchives_data()
{
    QTest::addColumn<bool>("bandsAreThere");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("bands damaged") << false << false;
    QTest::newRow("holidays damaged") << true << true;
}

void TestTimeProgramme::unreadableArchives()
{
    QFETCH(bool, bandsAreThere);
    TestFolder test;
    QVERIFY(test.archives.copy(ArchiveName::BandsTemplate, ArchiveName::Bands).ok());
    execute(test, ArchiveName::Bands, "INSERT INTO Fascie VALUES ('X','X','X','X','X','X','X','00:00','23:59')");
    if (!bandsAreThere)
        test.write(u"Archivi/Fascie.zeb"_s, "damaged");
    test.write(u"Archivi/Ferie.zeb"_s, QByteArray(8192, 'x'));
    FakeClock clock;
    TimeProgramme programme(test.archives, clock);
    QCOMPARE(programme.reload(TimeProgramme::Part::Bands).ok(), bandsAreThere);
    QCOMPARE(programme.reload(TimeProgramme::Part::Holidays).fault().code, FaultCode::Damaged);
    programme.run();
    QTEST(programme.isEnabled(), "enabled");
}

QTEST_GUILESS_MAIN(TestTimeProgramme)
#include "tst_timeprog.moc"
