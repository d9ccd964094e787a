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
constexpr int rounds = 7;

QList<QStringList> someEvents()
{
    QList<QStringList> events;
    for (int i = 0; i < eventsOfADay; ++i)
        events.append({QString::number(1 + i), u"TX"_s, QString(QChar(u'A' + i % 4)), u""_s, u""_s,
                       QTime(0, 0).addSecs(i * 43).toString(u"HH:mm:ss"_s)});
    return events;
}

/// A year of days that nobody has written to for long. All are copies of one: to make each would leave thousands of
/// deleted journals, which the file system then looks through for every file that is made.
void addYear(TestFolder &test)
{
    const auto path = [&test](int day) {
        return test.folder.path(ArchiveName::events(QDate(2003, 1, 1).addDays(day)));
    };
    test.addEvents(u"01-01-2003"_s, someEvents());
    for (int day = 0; day < days; ++day) {
        if (day > 0)
            QFile::copy(path(0), path(day));
        QFile file(path(day));
        if (!file.open(QFile::ReadWrite) ||
            !file.setFileTime(QDateTime(QDate(2004, 1, 1), QTime()), QFile::FileModificationTime))
            qFatal("no year");
    }
}

/// Memory that the machine has not had yet costs whoever uses it first: nobody is to pay for it here.
void warmMemory()
{
    const QByteArray touched(1 << 30, 'x');
    asm volatile("" : : "r"(touched.constData()) : "memory");
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
    addYear(test);
    warmMemory();
    const QTemporaryDir targets;
    QList<double> bare, flushed, first, second;
    int copied = 0;
    for (int round = 0; round < rounds; ++round) {
        const QString copy = targets.filePath(u"cp%1"_s.arg(round));
        flush();
        bare.append(microseconds([&] { QProcess::execute(u"cp"_s, {u"-r"_s, test.directory.path(), copy}); }) / 1000);
        flushed.append(bare.last() + microseconds(flush) / 1000);
        const QString target = targets.filePath(u"backup%1"_s.arg(round));
        QDir().mkdir(target);
        first.append(microseconds([&] { (void)backUp(test, target); }) / 1000);
        second.append(microseconds([&] { copied = backUp(test, target); }) / 1000);
    }
    print("first backup of 365 days, beside cp -r (medians)", quantile(first, 0.5), quantile(bare, 0.5), "ms");
    print("the same, beside cp -r and sync", quantile(first, 0.5), quantile(flushed, 0.5), "ms");
    std::printf("second backup, %d files copied: %.1f ms\n", copied, quantile(second, 0.5));

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
                int(waiting(log)), gap);
}
