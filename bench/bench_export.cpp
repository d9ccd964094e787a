// Export of 65,535 and 730,000 events into a spreadsheet, beside a bare loop that writes the same strings as lines with
// commas; the memory that it takes, and the longest gap of a 5 ms heartbeat meanwhile.

#include "Measure.h"

#include "events/EventExport.h"
#include "support/Fixtures.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

namespace {

/// Two years of traffic: 5,000 users, no second like another.
QStringList event(qsizetype index)
{
    const QDateTime moment = QDateTime(QDate(2004, 1, 1), QTime(6, 0)).addSecs(index * 86);
    const QString user = QString::number(index * 7919 % 5000);
    return {u"Cognòme "_s + user,
            u"Nome"_s + user,
            u"TX"_s,
            QString::number(index % 4),
            u"•"_s,
            moment.toString(u"dd/MM/yyyy"_s),
            moment.toString(u"hh:mm:ss"_s),
            {}};
}

void writeLines(const QString &path, const QList<QStringList> &rows)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no file for the lines");
    for (const QStringList &row : rows)
        file.write(row.join(u',').toUtf8() + '\n');
}

void measure(const QString &folder, qsizetype count)
{
    QList<QStringList> rows;
    for (qsizetype index = 0; index < count; ++index)
        rows.append(event(index));
    const double bare = microseconds([&] { writeLines(folder + u"/lines.csv"_s, rows); }) / 1000;

    const QStringList captions{u"Cognome"_s, u"Nome"_s, u"Tipo"_s, u"CH"_s,
                               u"CH DIS"_s,  u"Data"_s, u"Ora"_s,  u"KOR DIS"_s};
    Disk disk;
    EventExport work(disk, folder + u"/events.xls"_s,
                     {u"Eventi"_s, captions, count, [&](qsizetype index) { return rows[index]; }});
    const qint64 before = residentPages();
    qint64 most = before;
    double longestTurn = 0;
    QTimer beat;
    beat.setTimerType(Qt::PreciseTimer);
    QElapsedTimer sinceLast;
    QList<double> gaps;
    QObject::connect(&beat, &QTimer::timeout, [&] {
        gaps.append(static_cast<double>(sinceLast.nsecsElapsed()) / 1e6);
        sinceLast.start();
    });
    QEventLoop loop;
    QTimer turn;
    QObject::connect(&turn, &QTimer::timeout, [&] {
        Result<bool> done = false;
        longestTurn = qMax(longestTurn, microseconds([&] { done = work.step(QDeadlineTimer(20)); }) / 1000);
        if (!done)
            qFatal("the export failed");
        most = qMax(most, residentPages());
        if (done.value())
            loop.quit();
    });
    sinceLast.start();
    beat.start(5);
    turn.start(0);
    const double ours = microseconds([&] { loop.exec(); }) / 1000;
    std::printf("%lld rows\n", static_cast<long long>(count));
    print("  export, stepped by 20 ms, beside lines with commas", ours, bare, "ms");
    std::printf("  longest gap of a 5 ms heartbeat %.1f ms, longest turn %.1f ms; memory %lld KiB at most\n",
                quantile(gaps, 1), longestTurn, static_cast<long long>((most - before) * 4));
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QCoreApplication application(argumentCount, arguments);
    const QTemporaryDir folder;
    for (const qsizetype count : {65'535, 730'000})
        measure(folder.path(), count);
    return 0;
}
