#include "backup/DailyBackup.h"
#include "startup/Settings.h"
#include "support/Fixtures.h"

#include <QDir>
#include <QSignalSpy>

namespace {

QDateTime at(const QString &text)
{
    return QDateTime::fromString(text, u"dd/MM HH:mm"_s);
}

/// A program folder, a place for its copy, and what the operator is told.
struct Site : TestFolder {
    Site()
    {
        addUsers({{u"1"_s, u"TX"_s}});
        if (!settings.CreaImpostazioni(2))
            qFatal("no settings");
        QObject::connect(&backup, &DailyBackup::toTell, [this](const Message &message) {
            told.append(english(message).replace(target.path(), u"*"_s).remove(directory.path()));
        });
    }
    /// A look, and what it begins.
    void look(int seconds = 0)
    {
        clock.moment = clock.moment.addSecs(seconds);
        backup.look();
        QTRY_VERIFY(!backup.isRunning());
    }
    int copies() const { return static_cast<int>(ended.count()); }

    QTemporaryDir target;
    FakePrinters printers;
    FakeClock clock; // 05/03/2004 07:45
    Settings settings{folder, printers};
    DailyBackup backup{archives, settings, clock};
    QSignalSpy ended{&backup, &DailyBackup::ended};
    QStringList told;
};

constexpr int hour = 3600;

} // namespace

class TestDailyBackup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void needs_data()
    {
        const Rows<QString, QString, QString, QByteArray> row("now", "success", "trial", "need");
        row("never yet", u"05/03 01:00"_s, {}, {}, "due");
        row("before its time", u"05/03 01:59"_s, u"04/03 02:00"_s, {}, "");
        row("at its time", u"05/03 02:00"_s, u"04/03 02:00"_s, {}, "due");
        row("done today", u"05/03 23:59"_s, u"05/03 02:00"_s, {}, "");
        row("off at its time", u"05/03 18:00"_s, u"04/03 02:00"_s, {}, "due");
        row("off over midnight", u"06/03 01:00"_s, u"05/03 01:59"_s, {}, "due");
        row("asked for since", u"05/03 18:00"_s, u"05/03 03:00"_s, {}, "");
        row("failed just now", u"05/03 02:59"_s, u"04/03 02:00"_s, u"05/03 02:00"_s, "");
        row("failed an hour ago", u"05/03 03:00"_s, u"04/03 02:00"_s, u"05/03 02:00"_s, "due");
        row("three days old", u"07/03 01:59"_s, u"04/03 01:59"_s, u"07/03 01:30"_s, "");
        row("more than three days", u"07/03 02:01"_s, u"04/03 02:00"_s, u"07/03 01:30"_s, "overdue");
        row("both", u"07/03 02:01"_s, u"04/03 02:00"_s, {}, "due overdue");
        row("clock was set back", u"05/03 02:00"_s, u"05/03 20:00"_s, u"05/03 20:00"_s, "due");
    }
    void needs()
    {
        QFETCH(QString, now);
        QFETCH(QString, success);
        QFETCH(QString, trial);
        BackupPlan plan{u"/copy"_s, true, QTime(2, 0), at(success)};
        const BackupNeed need = backupNeed(plan, at(now), at(trial));
        const QByteArray words = QByteArray(need.isDue ? "due " : "") + (need.isOverdue ? "overdue" : "");
        QTEST(words.trimmed(), "need");
        plan.isDaily = false;
        QVERIFY(!backupNeed(plan, at(now), at(trial)).isDue && !backupNeed(plan, at(now), at(trial)).isOverdue);
    }

    void settingsKeepAnyFolderApartFromOtherKeys()
    {
        Site site;
        QVERIFY(!BackupPlan::from(site.settings).isDaily);
        const QString folder = u"/m\u00E9dia/COM=7 PRN=1/\u65E5 "_s;
        QVERIFY(site.backup.setPlan(folder, true, QTime(23, 5)).ok());
        QVERIFY(site.settings.save(u"COM"_s, 3).ok() && site.settings.save(u"PRN"_s, 2).ok());
        const BackupPlan plan = BackupPlan::from(site.settings);
        QCOMPARE(plan.folder, folder);
        QCOMPARE(plan.at, QTime(23, 5));
        QVERIFY(plan.isDaily && !plan.lastSuccess.isValid());
        QCOMPARE(site.settings.LeggiImpostazione(u"COM"_s), u"3"_s);
    }

    void oncePerDayAndToldOnce()
    {
        Site site;
        QVERIFY(site.backup.setPlan(site.target.path(), true, QTime(2, 0)).ok());
        site.look();
        site.look(10);
        QCOMPARE(site.copies(), 1);
        QVERIFY(QFile::exists(site.target.filePath(u"Archivi/Anagrafico.zeb"_s)));
        QCOMPARE(BackupPlan::from(site.settings).lastSuccess, QDateTime(QDate(2004, 3, 5), QTime(7, 45)));
        // The stick is pulled for days.
        QVERIFY(QDir(site.target.path()).removeRecursively());
        const QString failed =
            u"The daily backup copy in '*' was not made and is tried again every hour: does not exist"_s;
        for (int day = 0; day < 2; ++day) {
            site.look(24 * hour);
            site.look(10);
            site.look(hour);
        }
        QCOMPARE(site.copies(), 5);
        QCOMPARE(site.told, QStringList({failed, failed}));
        site.look(47 * hour);
        site.look(10);
        QCOMPARE(site.told.size(), 3);
        QVERIFY(QDir().mkpath(site.target.path()));
        site.look(hour);
        QVERIFY(site.ended.last()[0].value<Result<void>>().ok());
        QCOMPARE(site.told.size(), 3);
    }

    void whatTheCopyLacksIsTold()
    {
        Site site;
        QVERIFY(site.backup.setPlan(site.target.path(), true, QTime(2, 0)).ok());
        site.write(u"Archivi/Eventi_01-03-2004.zeb"_s, "no archive");
        site.look();
        site.write(u"Archivi/Eventi_02-03-2004.zeb"_s, "no archive");
        site.look(24 * hour);
        QVERIFY(site.told.value(0).startsWith(
            u"The backup copy has everything but '/Archivi/Eventi_01-03-2004.zeb': damaged"));
        QVERIFY(site.told.value(1).startsWith(u"The backup copy has everything but 2 files, among them '/Archivi/Eve"));
    }

    void oneAtATimeAndDroppedAtTheEnd()
    {
        Site site;
        QVERIFY(site.backup.setPlan(site.target.path(), true, QTime(2, 0)).ok());
        QVERIFY(site.backup.copyNow().ok() && site.backup.isRunning());
        site.backup.look();
        QVERIFY(!site.backup.isDaily());
        QVERIFY(site.backup.copyNow().ok());
        site.backup.stop();
        QCoreApplication::processEvents();
        QCOMPARE(site.copies(), 0);
        QVERIFY(QDir(site.target.path()).entryList({u".kor-*"_s}, QDir::Files | QDir::Hidden).isEmpty());
        QVERIFY(!site.backup.plan().lastSuccess.isValid());
    }
};

QTEST_GUILESS_MAIN(TestDailyBackup)
#include "tst_daily_backup.moc"
