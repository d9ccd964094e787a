#include "support/Fixtures.h"
#include "texts/DateTimeText.h"
#include "timeprog/TimeProgramme.h"

#include <QMetaEnum>

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
        row("2004-03-07T10:00:00", {band("XXXXXX ", "10:00", "10:00")}, TimeState::OutsideBands, "not Sunday");
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
        QCOMPARE(at("2004-03-05T07:45:00"), u"asserted Start"_s);
        QCOMPARE(at("2004-03-05T08:00:00"), u"released Band"_s);
        QCOMPARE(at("2004-03-05T17:31:00"), u"asserted Band"_s);
        QCOMPARE(at("2004-03-05T20:30:00"), u"released Band"_s);
        QCOMPARE(at("2004-03-06T20:30:00"), u"asserted Holiday"_s);
        QCOMPARE(at("2004-03-07T20:30:00"), u"released Holiday"_s);
        QCOMPARE(applied, 6);
        // While an editor has the bands the state stays; closing it reads them anew.
        programme.suspend(TimeProgramme::Part::Bands);
        programme.suspend(TimeProgramme::Part::Holidays);
        QVERIFY(programme.reload(TimeProgramme::Part::Holidays).ok() && programme.isSuspended());
        test.execute(ArchiveName::Bands, "DELETE FROM Fascie");
        QVERIFY(programme.reload(TimeProgramme::Part::Bands).ok() && !programme.isSuspended());
        QCOMPARE(at("2004-03-07T20:30:00"), u"asserted Band"_s);
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
