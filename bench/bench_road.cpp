// The road of an event, each figure beside the bare loop that it is measured against.

#include "Line.h"
#include "Measure.h"

#include "archives/Tables.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>

#include <sqlite3.h>

namespace {

const QString storedDay = QStringLiteral("05-03-2004");

void decoding()
{
    constexpr int records = 40'000;
    const QByteArray all = QByteArray("R/A-000000007X..\r\n").repeated(records);
    QList<double> ours;
    for (int round = 0; round < 7; ++round) {
        Line line(1);
        int accepted = 0;
        QObject::connect(&line.road, &EventRoad::recordReceived, [&accepted] { ++accepted; });
        qsizetype written = 0;
        // All is in the control before the first notification: the pseudo-terminal is not part of the figure.
        while (written < all.size()) {
            written += line.interface.write(QByteArrayView(all).sliced(written));
            QCoreApplication::processEvents();
        }
        for (int i = 0; i < 100; ++i)
            QCoreApplication::processEvents();
        ours.append(microseconds([&] {
            line.serial.setRThreshold(1);
            while (accepted < records)
                QCoreApplication::processEvents();
        }));
    }
    int accepted = 0;
    const double bare = median(7, [&] {
        qsizetype start = 0;
        for (qsizetype end = all.indexOf('\n'); end >= 0; end = all.indexOf('\n', start)) {
            accepted += decodeRecord(QByteArrayView(all).sliced(start, end - start)) ? 1 : 0;
            start = end + 1;
        }
    });
    if (accepted != 7 * records)
        qFatal("the bare loop lost records");
    const auto perSecond = [](double us) { return records / us; };
    print("bytes to accepted records, against decoding alone", perSecond(quantile(ours, 0.5)), perSecond(bare),
          "million records/s");
}

void storing()
{
    constexpr int rows = 2000;
    TestFolder test;
    FakeClock clock;
    Notices notices;
    const Event event = makeEvent(*decodeRecord("R/A-000012345X..\r"), clock.now());
    QList<double> ours;
    QList<double> bare;
    EventLog log(test.archives, clock, notices);
    log.open();
    const QString other = ArchiveName::events(QStringLiteral("06-03-2004"));
    if (!test.archives.copy(ArchiveName::EventsTemplate, other))
        qFatal("no second archive");
    // The same file, journal and flush with nothing but the library.
    sqlite3 *database = nullptr;
    sqlite3_stmt *insert = nullptr;
    sqlite3_open(QFile::encodeName(test.folder.path(other)).constData(), &database);
    sqlite3_key(database, archivePassword().constData(), static_cast<int>(archivePassword().size()));
    sqlite3_exec(database,
                 "PRAGMA cipher_compatibility=3; PRAGMA cipher_page_size=4096; PRAGMA journal_mode=WAL; PRAGMA "
                 "synchronous=FULL;",
                 nullptr, nullptr, nullptr);
    sqlite3_prepare_v2(database,
                       "INSERT INTO Eventi (Codice,Data,Ora,Tipo,Canale,AbCh,KorDis,DataOrd) VALUES (?,?,?,?,?,?,?,?)",
                       -1, &insert, nullptr);
    const char *values[] = {"12345", "05-03-2004", "07:45:00", "TX", "A", "", "", "20040305"};
    // In turns, so that both see the same disk.
    for (int row = 0; row < rows; ++row) {
        ours.append(microseconds([&] {
            if (!log.append(event))
                qFatal("not stored");
        }));
        bare.append(microseconds([&] {
            for (int i = 0; i < 8; ++i)
                sqlite3_bind_text(insert, i + 1, values[i], -1, SQLITE_STATIC);
            if (sqlite3_step(insert) != SQLITE_DONE)
                qFatal("not stored");
            sqlite3_reset(insert);
        }));
    }
    sqlite3_finalize(insert);
    sqlite3_close(database);
    print("storing one event durably, against a bare insert", quantile(ours, 0.5), quantile(bare, 0.5), "us");
}

void opening()
{
    TestFolder test;
    const double known = median(200, [&] {
        if (!test.archives.open(ArchiveName::EventsTemplate, Database::Use::Safe))
            qFatal("not opened");
    });
    const double fresh = median(9, [&] {
        ArchiveStore store(test.folder);
        if (!store.open(ArchiveName::EventsTemplate, Database::Use::Safe))
            qFatal("not opened");
    });
    print("opening an archive with a known salt, against a fresh key", known, fresh, "us");
}

/// Times from the write of a record's LF to the committed row.
QList<double> roadTimes(Line &line)
{
    line.serial.setRThreshold(1);
    QList<double> times;
    for (int i = 0; i < 2000; ++i) {
        QEventLoop loop;
        QElapsedTimer timer;
        QObject::connect(&line.log, &EventLog::stored, &loop, [&] {
            times.append(static_cast<double>(timer.nsecsElapsed()) / 1000);
            loop.quit();
        });
        line.interface.write("R/A-000001001X..\r");
        timer.start();
        line.interface.write("\n");
        loop.exec();
    }
    return times;
}

void wholeRoad()
{
    Line few(10);
    Line many(50'000);
    const QList<double> withFew = roadTimes(few);
    const QList<double> withMany = roadTimes(many);
    print("LF to committed row, 50,000 users against 10: median", quantile(withMany, 0.5), quantile(withFew, 0.5),
          "us");
    print("LF to committed row, 50,000 users against 10: 99 %", quantile(withMany, 0.99), quantile(withFew, 0.99),
          "us");
    const double hit = median(21, [&] {
        for (int i = 0; i < 1000; ++i)
            (void)many.road.UtenteEsiste(QStringLiteral("51000"));
    });
    const double hitFew = median(21, [&] {
        for (int i = 0; i < 1000; ++i)
            (void)few.road.UtenteEsiste(QStringLiteral("1010"));
    });
    print("look-up of a code, 50,000 users against 10", hit, hitFew, "ns");
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QCoreApplication application(argumentCount, arguments);
    std::printf("%-58s %12s %12s\n", "medians", "ours", "bare");
    decoding();
    storing();
    opening();
    wholeRoad();
    return 0;
}
