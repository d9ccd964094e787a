// What the service journal costs the road of an event, and what it takes to say whether the program listened.

#include "Line.h"
#include "Measure.h"

#include "journal/Journal.h"
#include "journal/JournalReading.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <array>
#include <numeric>

namespace {

constexpr int rowsADay = 200;
constexpr qint64 day = 86'400;

/// A line whose events are stored as they come, and a journal.
struct JournalledLine : Line {
    JournalledLine() : Line(1) { serial.setRThreshold(1); }
    /// Microseconds from the write of a record's LF to the committed row.
    double store()
    {
        QEventLoop loop;
        QElapsedTimer timer;
        double took = 0;
        const auto stored = QObject::connect(&log, &EventLog::stored, &loop, [&] {
            took = static_cast<double>(timer.nsecsElapsed()) / 1000;
            loop.quit();
        });
        interface.write("R/A-000001001X..\r");
        timer.start();
        interface.write("\n");
        loop.exec();
        QObject::disconnect(stored);
        return took;
    }

    Journal journal{test.archives, clock, notices};
};

void road()
{
    constexpr int events = 4000;
    constexpr int eventsBetweenRows = 19;
    JournalledLine with;
    JournalledLine without;
    with.journal.begin(QStringLiteral("bench"));
    with.journal.wake();
    QList<double> on;
    QList<double> off;
    // In turns, so that both see the same disk.
    for (int i = 0; i < events; ++i) {
        // Noted right before the line end comes: the worst moment there is.
        if (i % eventsBetweenRows == 0)
            with.journal.note(JournalKind::InterfaceSwitchedOn);
        // Neither is always the first.
        if (i % 2 == 0)
            off.append(without.store());
        on.append(with.store());
        if (i % 2 != 0)
            off.append(without.store());
    }
    print("LF to committed row, journal on against off: median", quantile(on, 0.5), quantile(off, 0.5), "us");
    print("the same: mean, a row of the journal for 19 events", std::accumulate(on.begin(), on.end(), 0.0) / events,
          std::accumulate(off.begin(), off.end(), 0.0) / events, "us");
    print("the same: 99 %", quantile(on, 0.99), quantile(off, 0.99), "us");
}

/// A year of a busy journal: every row changes something.
QList<JournalRow> busyYear(qint64 begin)
{
    constexpr std::array kinds = {JournalKind::Started,         JournalKind::PortOpened,
                                  JournalKind::InterfaceSilent, JournalKind::InterfaceAnswers,
                                  JournalKind::PortLost,        JournalKind::PortBack,
                                  JournalKind::StoringFails,    JournalKind::EventsLost,
                                  JournalKind::StoringResumes,  JournalKind::Ended};
    QList<JournalRow> rows;
    for (int i = 0; i < 365 * rowsADay; ++i)
        rows.append({i + 1, {begin + i * day / rowsADay, 60}, kinds.at(static_cast<size_t>(i) % kinds.size()), {}, {}});
    return rows;
}

void year()
{
    const qint64 begin = QDateTime(QDate(2004, 1, 1), QTime(1, 0), Qt::UTC).toSecsSinceEpoch();
    const JournalContent content = {busyYear(begin), Moment{begin + 365 * day, 60}};
    qsizetype spans = 0;
    const double took = median(21, [&] { spans = coverage(content, begin, begin + 365 * day).size(); });
    std::printf("%-58s %12.2f ms, %lld spans\n", "coverage of a year, 200 rows a day", took / 1000, qint64(spans));

    TestFolder test;
    {
        Result<std::unique_ptr<JournalFile>> file = JournalFile::open(test.archives, 2004);
        if (!file || !file.value()->write(content.rows, *content.alive))
            qFatal("no journal");
    }
    const double read = median(5, [&] {
        JournalReading reading(test.archives, 2004, 2004);
        if (!finish(reading) || reading.content().rows.size() != content.rows.size())
            qFatal("not read");
    });
    double longest = 0;
    JournalReading reading(test.archives, 2004, 2004);
    for (bool isDone = false; !isDone;)
        longest = std::max(longest, microseconds([&] { isDone = reading.step(QDeadlineTimer(15)).value(); }));
    std::printf("%-58s %12.2f ms, longest turn of 15 ms: %.2f ms\n", "reading its rows from the disk", read / 1000,
                longest / 1000);
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QCoreApplication application(argumentCount, arguments);
    road();
    year();
    return 0;
}
