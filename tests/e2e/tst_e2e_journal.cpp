// The built program is cut off, and loses its port: what its journal says of it the next time.

#include "e2e/Programs.h"
#include "journal/CoverageReading.h"
#include "journal/CoverageWords.h"

#include <QFileInfo>
#include <QRandomGenerator>

namespace {

qint64 now()
{
    return QDateTime::currentSecsSinceEpoch();
}

/// What the journal of @p site says from @p from until now, the parts that are not listened to.
QList<CoveredSpan> gaps(Site &site, qint64 from)
{
    const int year = QDate::currentDate().year();
    JournalReading reading(site.archives, year, year);
    if (!finish(reading) || reading.unread())
        qFatal("the journal cannot be read");
    QList<CoveredSpan> spans = coverage(reading.content(), from, now());
    spans.removeIf([](const CoveredSpan &span) { return span.state == Listening::Listened; });
    return spans;
}

qint64 lengthOf(const QList<CoveredSpan> &spans, Listening state)
{
    qint64 seconds = 0;
    for (const CoveredSpan &span : spans)
        seconds += span.state == state ? span.to - span.from : 0;
    return seconds;
}

} // namespace

class TestJournalEndToEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cutOffAtAnyMoment()
    {
        Site site;
        site.addUsers({listOf("12345,TX,Bianchi,Anna")});
        Running interface("kor-simulator", site.interface(listOf("--fast")));
        QVERIFY(interface.tells("Porte/COM7"));
        const auto start = [&site] {
            return std::make_unique<Running>("kor-supervisor", site.console(listOf("--port,7")));
        };
        std::unique_ptr<Running> supervisor = start();
        QVERIFY(supervisor->tells("ON LINE"));
        for (int round = 0; round < 10; ++round) {
            // In the middle of its work, which may be the journal's own.
            interface.say("tx 12345 A\nrepower");
            QTest::qWait(QRandomGenerator::global()->bounded(1500));
            const qint64 killed = now();
            QCOMPARE(supervisor->end(SIGKILL), -1);
            QTest::qWait(2200);
            supervisor = start();
            QVERIFY(supervisor->tells("ON LINE"));
            const qint64 listens = now();
            QTest::qWait(200);
            const QList<CoveredSpan> told = gaps(site, killed - 180);
            const auto holds = [&](const CoveredSpan &span) {
                // The program listened again at most a second after its row, since its clock has whole ones.
                return span.state == Listening::NotRunning && span.from <= killed + 1 && span.to >= killed + 2 &&
                       span.from >= killed - 120 && span.to <= listens;
            };
            QVERIFY2(std::any_of(told.begin(), told.end(), holds), qPrintable(QString::number(round)));
        }

        const qint64 unplugged = now();
        interface.say("unplug");
        QVERIFY(supervisor->tells("COM7 was unplugged"));
        QTest::qWait(2000);
        interface.say("plug");
        QVERIFY(supervisor->tells("ON LINE", 2));
        const qint64 back = now();
        QTest::qWait(2000);
        QCOMPARE(supervisor->end(), 0);
        QTest::qWait(2000);
        const QList<CoveredSpan> told = gaps(site, unplugged);
        const qint64 lost = lengthOf(told, Listening::PortLost);
        QVERIFY2(lost >= 2 && lost <= back - unplugged + 1, qPrintable(QString::number(lost)));
        QVERIFY(lengthOf(told, Listening::NotRunning) >= 1);
        QCOMPARE(lengthOf(told, Listening::NotKnown), 0);
        const QDateTime since = QDateTime::fromSecsSinceEpoch(unplugged);
        CoverageReading search(site.archives, {since.date(), QDate::currentDate(), since.time()}, now());
        QVERIFY(finish(search).ok());
        const QString words = coverageWords(missingOf(search.spans()), textsIn());
        QVERIFY2(words.startsWith(u"Not listening: 2 times, "_s) && !words.contains(u"Not known"_s), qPrintable(words));
        const QString journal = ArchiveName::journal(QDate::currentDate().year());
        QCOMPARE(site.files(u"Archivi"_s).filter(u"Giornale"_s), QStringList{QFileInfo(journal).fileName()});
        const QStringList kinds = site.rows(journal, u"SELECT Tipo FROM Giornale GROUP BY Tipo"_s);
        for (const QString &kind : listOf("1,2,3,20,22,23,25,27,41"))
            QVERIFY2(kinds.contains(kind), qPrintable(kinds.join(u' ')));
        QVERIFY(!site.rows(Site::day(), u"SELECT count(*) FROM Eventi"_s).contains(u"0"_s));
    }

    /// Somebody sets the clock two hours ahead, and back.
    void clockIsSet()
    {
        const QString library = QStringLiteral(KOR_FAKETIME);
        if (!QFileInfo::exists(library))
            QSKIP("libfaketime is not installed, or cannot be used with the sanitizers");
        Site site;
        site.addUsers({listOf("12345,TX,Bianchi,Anna")});
        site.write(u"time"_s, "+0");
        Running interface("kor-simulator", site.interface());
        QVERIFY(interface.tells("Porte/COM7"));
        Running supervisor("kor-supervisor", site.console(listOf("--port,7")),
                           {u"LD_PRELOAD="_s + library, u"FAKETIME_NO_CACHE=1"_s, u"FAKETIME_DONT_FAKE_MONOTONIC=1"_s,
                            u"FAKETIME_TIMESTAMP_FILE="_s + site.directory.filePath(u"time"_s)});
        QVERIFY(supervisor.tells("ON LINE"));
        const qint64 start = now();
        QTest::qWait(4000);
        // What is noted next looks at the clock.
        const auto set = [&](const QByteArray &offset) {
            site.write(u"time"_s, offset);
            interface.say("unplug");
            const int times = static_cast<int>(supervisor.output.count("ON LINE")) + 1;
            QTest::qWait(1500);
            interface.say("plug");
            QVERIFY(supervisor.tells("ON LINE", times));
            QTest::qWait(1500);
        };
        const qint64 wrong = now();
        set("+7200");
        const qint64 right = now();
        set("+0");
        QCOMPARE(supervisor.end(), 0);
        const qint64 end = now();

        const int year = QDate::currentDate().year();
        JournalReading reading(site.archives, year, year);
        QVERIFY(finish(reading).ok());
        QList<qint64> moves;
        for (const JournalRow &row : reading.content().rows) {
            if (row.kind == JournalKind::ClockMoved)
                moves += momentOfText(row.second)->seconds - momentOfText(row.first)->seconds;
        }
        QCOMPARE(moves.size(), 2);
        QVERIFY2(qAbs(moves[0] - 7200) <= 1 && qAbs(moves[1] + 7200) <= 1, qPrintable(QString::number(moves[1])));
        // While the clock was wrong nobody knows what it should have shown.
        const QList<CoveredSpan> spans = coverage(reading.content(), start + 1, end);
        QCOMPARE(spans.value(0).state, Listening::Listened);
        QCOMPARE(spans.value(1).state, Listening::NotKnown);
        QVERIFY(spans[0].to >= start + 3 && spans[0].to <= wrong + 3 && spans[1].to >= right &&
                spans[1].to <= right + 3);
        QVERIFY(lengthOf(spans, Listening::PortLost) >= 1);
    }
};

QTEST_GUILESS_MAIN(TestJournalEndToEnd)
#include "tst_e2e_journal.moc"
