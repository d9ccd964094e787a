#include "archive/FollowCommand.h"
#include "support/DayLog.h"
#include "support/ToolRun.h"

#include <QJsonDocument>

using namespace tool;

namespace {

/// The log of the day at work, and somebody who follows it.
struct Followed {
    Followed() { restart(); }

    void restart()
    {
        const LineForm form{Format::Json, ',', 0, true};
        command = std::make_unique<FollowCommand>(run.site(), cursorOf(cursor), form, run);
        if (cursor.isEmpty())
            look();
    }
    void look()
    {
        run.clock.moment = day.clock.moment;
        for (int i = 0; i < 6; ++i)
            QVERIFY(command->step(QDeadlineTimer(1000)));
        for (const QByteArray &line : run.lines()) {
            const QJsonDocument event = QJsonDocument::fromJson(line);
            codes.append(event[u"code"].toString());
            cursor = event[u"cursor"].toString();
        }
        run.output.clear();
    }
    QString today() const { return ArchiveName::events(day.clock.date()); }
    void reopen(const std::function<void()> &meanwhile)
    {
        day.log.close();
        meanwhile();
        day.log.open();
        // What can be read of a damaged day is brought over.
        if (!test.files(u"Archivi"_s).filter(u".guasto"_s).isEmpty())
            QTRY_VERIFY(isRescued(test.archives, today()));
    }
    void midnight()
    {
        day.clock.moment = QDateTime(day.clock.date().addDays(1), QTime(0, 0, 1));
        day.log.changeDayIfNeeded();
    }
    /// Lets nothing be stored. @param noFile  so that what comes waits in memory
    void hinder(bool noFile)
    {
        lock = day.lock(DataFile(day.clock.date()));
        QVERIFY(!noFile || QDir().mkdir(test.folder.path(QStringView(ArchiveName::Waiting).toString())));
    }
    void unlock()
    {
        lock.reset();
        QDir().rmdir(test.folder.path(QStringView(ArchiveName::Waiting).toString()));
        QVERIFY(day.storeAll());
    }
    /// Nothing has been written for a while.
    void age()
    {
        for (const QString &name : test.files(u"Archivi"_s)) {
            QFile file(test.folder.path(u"Archivi/"_s + name));
            QVERIFY(file.open(QIODevice::ReadWrite) &&
                    file.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime));
        }
    }
    void act(const QString &what)
    {
        if (what == u"look"_s)
            look();
        else if (what == u"restart"_s)
            restart();
        else if (what == u"midnight"_s)
            midnight();
        else if (what == u"damage"_s)
            reopen([this] { test.damage(today()); });
        else if (what == u"delete"_s)
            reopen([this] { QVERIFY(test.archives.remove(today())); });
        else if (what == u"lock"_s || what == u"memory"_s)
            hinder(what == u"memory"_s);
        else if (what == u"age"_s)
            age();
        else if (what == u"first"_s)
            cursor.clear(), restart();
        else if (what[0] == u'<')
            test.addEvents(::today, {listOf(qPrintable(what.mid(1) + u",TX,A,,,08:00:00"_s))});
        else if (what == u"unlock"_s)
            unlock();
        else
            day.append(what.toInt());
    }

    TestFolder test;
    Day day{test};
    ToolRun run{test};
    std::optional<Database> lock;
    std::unique_ptr<FollowCommand> command;
    QString cursor;
    QStringList codes;
};

} // namespace

class TestFollow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachOnce_data()
    {
        const Rows<QString> row("acts");
        row("as they come", u"1 look 2 3 look"_s);
        row("equal ones are several", u"1 1 look restart 1 look"_s);
        row("midnight", u"1 look 2 midnight 3 look 4 look"_s);
        row("restarts", u"1 look restart 2 look restart midnight restart 3 look"_s);
        row("stored while nobody followed", u"1 look 2 midnight 3 midnight midnight 4 restart look"_s);
        row("late, for the day before", u"1 look lock 2 midnight 3 look restart unlock look restart look"_s);
        row("late, out of memory", u"1 look memory 2 midnight midnight midnight 3 look unlock look restart 4 look"_s);
        row("late, of a day that rests",
            u"1 midnight midnight midnight 2 look age look <3 look 4 look age look <5 restart look"_s);
        row("late, before anybody followed", u"midnight midnight midnight age first <1 look age look <2 look"_s);
        row("many days ago", u"1 look midnight 2 midnight 3 midnight 4 midnight 5 midnight 6 age restart look"_s);
        row("set aside", u"1 2 look damage 3 look restart 4 look"_s);
        row("set aside before it was looked at", u"1 look 2 damage 3 restart look restart 4 look"_s);
        row("set aside twice", u"1 look damage 2 damage 3 look restart look"_s);
        row("begun anew", u"1 2 look delete 3 look restart 4 look"_s);
        row("begun anew while nobody followed", u"1 2 look delete 3 restart look 4 look"_s);
    }
    void eachOnce()
    {
        QFETCH(QString, acts);
        Followed followed;
        QStringList stored;
        for (const QString &act : acts.split(u' ')) {
            if (act.back().isDigit())
                stored.append(act.back());
            followed.act(act);
        }
        // One that waited comes behind those that did not.
        if (acts.contains(u"unlock"))
            std::sort(followed.codes.begin(), followed.codes.end());
        QCOMPARE(followed.codes, stored);
    }

    void cursors()
    {
        for (const char *text : {"", "20040305", "20040305.0.1", "20040335.0.1.a", "20040305.0.-1.a", "20040305.0.1.g"})
            QVERIFY2(!cursorOf(QString::fromLatin1(text)), text);
        const QByteArray two = "20040304.0.2000.9f3a1234~20040305.1.12.77bc0abc";
        QCOMPARE(cursorText(*cursorOf(QString::fromLatin1(two))), two);
    }
};

QTEST_GUILESS_MAIN(TestFollow)
#include "tst_follow.moc"
