// The backup of a year beside cp -r of the same folder, a backup with nothing to do, and reception meanwhile.

#include "Measure.h"

#include "backup/Backup.h"
#include "link/EventLog.h"
#include "support/Fixtures.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

namespace {

constexpr int days = 365;
constexpr int eventsOfADay = 2000;

QList<QStringList> someEvents()
{
    QList<QStringList> events;
    for (int i = 0; i < eventsOfADay; ++i)
        events.append({QString::number(1 + i), u"TX"_s, QString(QChar(u'A' + i % 4)), u""_s, u""_s,
                       QTime(0, 0).addSecs(i * 43).toString(u"HH:mm:ss"_s)});
    return events;
}

void flush()
{
    QProcess::execute(u"sync"_s);
}

/// In turns of 20 ms, as a window does it. @return files copied
int backUp(TestFolder &test, const QString &target)
{
    Backup backup(test.archives, target);
    if (!backup.begin())
        qFatal("no backup");
    Result<bool> done = false;
    while (done && !done.value()) {
        done = backup.step(QDeadlineTimer(20));
        QCoreApplication::processEvents();
    }
    if (!done)
        qFatal("the backup failed: %s", qPrintable(done.fault().subject));
    return backup.copied();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    TestFolder test;
    test.addUsers({{u"1"_s, u"TX"_s}});
    const QList<QStringList> events = someEvents();
    for (int day = 0; day < days; ++day)
        test.addEvents(QDate(2003, 1, 1).addDays(day).toString(u"dd-MM-yyyy"_s), events);
    const QTemporaryDir targets;

    for (int round = 0; round < 3; ++round) {
        const QString copy = targets.filePath(u"cp%1"_s.arg(round));
        flush();
        const double bare = microseconds([&] { QProcess::execute(u"cp"_s, {u"-r"_s, test.directory.path(), copy}); });
        flush();
        const double bareFlushed = bare + microseconds(flush);
        const QString target = targets.filePath(u"backup%1"_s.arg(round));
        QDir().mkdir(target);
        int copied = 0;
        const double first = microseconds([&] { copied = backUp(test, target); });
        print("first backup of 365 days, beside cp -r", first / 1000, bare / 1000, "ms");
        print("the same, beside cp -r and sync", first / 1000, bareFlushed / 1000, "ms");
        const double second = microseconds([&] { copied = backUp(test, target); });
        std::printf("second backup, %d files copied: %.1f ms\n", copied, second / 1000);
    }

    FakeClock clock;
    Notices notices;
    EventLog log(test.archives, clock, notices);
    log.open();
    int stored = 0;
    QTimer each;
    QObject::connect(&each, &QTimer::timeout, [&] {
        EventRecord record;
        record.code = QString::number(++stored);
        log.append(makeEvent(record, clock.moment));
    });
    each.start(20);
    const QString target = targets.filePath(u"meanwhile"_s);
    QDir().mkdir(target);
    const Heartbeat heart;
    backUp(test, target);
    const double gap = heart.longest();
    std::printf("while 50 events a second are stored (%d, %d wait): longest gap of a heartbeat %.1f ms\n", stored,
                int(log.waiting()), gap);
}
