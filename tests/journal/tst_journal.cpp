// The service journal on disk: what is written when, and what becomes of it when the disk or somebody does harm to it.

#include "journal/Journal.h"
#include "journal/JournalReading.h"
#include "link/EventLog.h"
#include "support/Fixtures.h"
#include "support/RecordingVfs.h"

#include <QSignalSpy>

#include <sqlite3.h>

namespace {

const QString thisYear = ArchiveName::journal(2004);
constexpr int minute = 60'000;

/// A program folder with a journal, and the log of events that must not suffer by it.
struct Site : TestFolder {
    Site()
    {
        QObject::connect(this->start(), &Journal::stateWanted, [this] { ++wanted; });
    }

    Journal *start()
    {
        journal = std::make_unique<Journal>(archives, clock, notices);
        journal->begin(u"1.03"_s);
        return journal.get();
    }
    void pass(int milliseconds)
    {
        clock.milliseconds += milliseconds;
        clock.moment = clock.moment.addMSecs(milliseconds);
        journal->wake();
    }
    /// "number kind first" of the rows of a year's file.
    QStringList told(const QString &name = thisYear)
    {
        return rows(name, u"SELECT Num, Tipo, Dato1 FROM Giornale ORDER BY Num"_s);
    }
    /// The same without the numbers, with blanks between, of all years.
    QString kinds(int first = 2004, int last = 2004)
    {
        JournalReading reading(archives, first, last);
        if (!finish(reading))
            qFatal("nothing is read");
        QStringList all;
        for (const JournalRow &row : reading.content().rows)
            all += QString::number(static_cast<int>(row.kind));
        return all.join(u' ');
    }

    FakeClock clock;
    Notices notices;
    std::unique_ptr<Journal> journal;
    int wanted = 0; ///< times that the state is wanted of the first journal
};

} // namespace

class TestJournal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsAreToldApart()
    {
        Site site;
        site.journal->wake();
        site.pass(minute);
        site.journal->end(5000);
        site.start();
        site.pass(minute);
        site.pass(minute);
        // Killed: the object goes without end().
        site.clock.moment = site.clock.moment.addSecs(3600);
        site.start()->wake();
        const QString offset = momentText(momentOf(site.clock.moment)).mid(19);
        QCOMPARE(site.told(), (QStringList{u"20040000000|1|1.03"_s, u"20040000001|2|"_s, u"20040000002|1|1.03"_s,
                                           u"20040000003|3|2004-03-05T07:48:00"_s + offset, u"20040000004|1|1.03"_s}));
        QCOMPARE(site.rows(thisYear, u"SELECT Ora FROM Giornale WHERE Tipo = 2"_s), QStringList{u"07:45:55"_s});
        QCOMPARE(takeNotices(site.notices), QStringList());
    }

    void oneFlushAMinute()
    {
        Site site;
        site.journal->wake();
        RecordingVfs vfs;
        site.start()->wake();
        vfs.steps.clear();
        site.pass(minute);
        QCOMPARE(vfs.steps.filter(u"flush"_s), QStringList{u"flush Giornale_2004.zeb-wal"_s});
        vfs.steps.clear();
        for (int i = 0; i < 100; ++i)
            site.journal->note(JournalKind::InterfaceSwitchedOn);
        QCOMPARE(vfs.steps, QStringList());
        QTRY_VERIFY(!vfs.steps.isEmpty());
        QCOMPARE(vfs.steps.filter(u"flush"_s), QStringList{u"flush Giornale_2004.zeb-wal"_s});
        site.journal->end();
    }

    void harm_data()
    {
        const Rows<QString, QByteArray, QString, int> row("harm", "notice", "kinds", "wanted");
        // Rows of the kinds 25 before it, 26 while it lasts, 80 behind it.
        row("none", {}, {}, u"1 25 26 80"_s, 0);
        row("removed", u"remove"_s, {}, u"26 80"_s, 1);
        row("replaced", u"replace"_s, {}, u"26 80"_s, 1);
        row("damaged", u"damage"_s, "was damaged: it has been set aside as 'Archivi/Giornale_2004.zeb.guasto'",
            u"26 80"_s, 1);
        row("locked", u"lock"_s, {}, u"1 25 26 80"_s, 0);
        row("locked for long", u"lock long"_s, "cannot be written: events are stored all the same", u"1 25 26 80"_s, 0);
        row("disk nearly full", u"reserve"_s, "cannot be written: events are stored all the same", u"1 25 26 80"_s, 0);
        row("disk full", u"full"_s, "cannot be written: events are stored all the same", u"1 25 26 80"_s, 0);
    }
    /// Events are stored whatever happens to the journal, and it goes on by itself.
    void harm()
    {
        QFETCH(QString, harm);
        QFETCH(QByteArray, notice);
        QFETCH(QString, kinds);
        QFETCH(int, wanted);
        RecordingVfs vfs;
        Site site;
        EventLog log(site.archives, site.clock, site.notices);
        log.open();
        const Event event = makeEvent(*decodeRecord("R/A-000012345X..\r"), site.clock.now());
        site.journal->note(JournalKind::InterfaceAnswers);
        site.journal->wake();

        const QString path = site.folder.path(thisYear);
        std::optional<Database> other;
        if (harm == u"remove" || harm == u"replace")
            QVERIFY(QFile::remove(path));
        if (harm == u"replace")
            QVERIFY(site.archives.create(thisYear, TableLayout::Journal, ArchiveName::EventsTemplate).ok());
        if (harm == u"damage") {
            QVERIFY(QFile::remove(path));
            site.write(thisYear, QByteArray(8192, 'x'));
        }
        if (harm.startsWith(u"lock")) {
            other = std::move(site.archives.open(thisYear, Database::Use::Log).value());
            QVERIFY(other->execute("BEGIN IMMEDIATE").ok());
        }
        if (harm == u"reserve")
            site.journal->spaceLeft = [] { return Journal::Reserve - 1; };
        if (harm == u"full")
            vfs.refusal = SQLITE_FULL;
        site.journal->note(JournalKind::InterfaceSilent);
        for (int i = 0; i < (notice.isEmpty() || harm == u"damage" ? 3 : 10); ++i)
            site.pass(10'000);
        QCOMPARE(log.append(event), harm != u"full");
        const QStringList notices = takeNotices(site.notices).filter(u"journal"_s);
        QCOMPARE(notices.size(), notice.isEmpty() ? 0 : 1);
        QVERIFY2(notices.join(u' ').contains(QString::fromLatin1(notice)), qPrintable(notices.join(u' ')));

        other.reset();
        vfs.refusal = 0;
        site.journal->spaceLeft = [] { return Journal::Reserve; };
        log.retry();
        site.journal->note(JournalKind::StoringFails);
        site.pass(10'000);
        QCOMPARE(site.kinds(), kinds);
        QCOMPARE(site.wanted, wanted);
        QCOMPARE(site.rows(ArchiveName::events(u"05-03-2004"_s), u"SELECT count(*) FROM Eventi"_s),
                 QStringList{u"1"_s});
        log.close();
        QVERIFY(takeNotices(site.notices).filter(u"journal"_s).isEmpty());
    }

    void damageAtTheStartLeavesANumberOut()
    {
        Site site;
        site.journal->wake();
        site.journal->end();
        site.clock.moment = QDateTime(QDate(2005, 1, 10), QTime(8, 0));
        site.start()->wake();
        site.journal.reset();
        site.write(ArchiveName::journal(2005), "no archive");
        site.start()->wake();
        // Behind 2 of the year before: what stood in the damaged file is missing.
        QCOMPARE(site.told(ArchiveName::journal(2005)), QStringList{u"20040000003|1|1.03"_s});
    }

    void moreThanCanWait()
    {
        Site site;
        site.journal->spaceLeft = [] { return 0; };
        for (qsizetype i = 0; i < Journal::QueueLimit + 9; ++i)
            site.journal->note(JournalKind::InterfaceSwitchedOn);
        site.journal->spaceLeft = [] { return Journal::Reserve; };
        site.journal->wake();
        QCOMPARE(site.told().constFirst(), u"20040000010|27|"_s);
        QCOMPARE(site.told().size(), Journal::QueueLimit);
        QCOMPARE(site.wanted, 1);
    }

    /// Each year has its file, and the running numbers tell the order, even when the clock is set back over New Year.
    void newYear()
    {
        Site site;
        site.clock.moment = QDateTime(QDate(2004, 12, 31), QTime(23, 59, 50));
        site.journal = nullptr;
        QObject::connect(site.start(), &Journal::stateWanted, [&site] { ++site.wanted; });
        site.journal->wake();
        site.pass(20'000);
        QCOMPARE(site.wanted, 1);
        site.journal->note(JournalKind::InterfaceAnswers);
        site.journal->wake();
        site.clock.moment = site.clock.moment.addSecs(-3600);
        site.journal->note(JournalKind::InterfaceSilent);
        site.journal->wake();
        QCOMPARE(site.told(),
                 (QStringList{u"20040000000|1|1.03"_s, u"20040000001|4|"_s,
                              u"20040000004|5|"_s +
                                  site.rows(thisYear, u"SELECT Dato1 FROM Giornale WHERE Tipo = 5"_s).value(0),
                              u"20040000005|26|"_s}));
        QCOMPARE(site.told(ArchiveName::journal(2005)), (QStringList{u"20040000002|25|"_s, u"20040000003|4|"_s}));
        QCOMPARE(site.kinds(2005, 2005), u"1 4 25 4 5 26"_s);
        // The run goes on where its last row stands, and what a later start finds is that one.
        site.start()->wake();
        QCOMPARE(site.kinds(), u"1 4 25 4 5 26 3 1"_s);
    }

    void clockMoves()
    {
        Site site;
        site.journal->wake();
        site.clock.moment = site.clock.moment.addSecs(59);
        site.pass(minute);
        site.clock.slept += 3'600'000;
        site.clock.moment = site.clock.moment.addSecs(3600);
        site.pass(minute);
        QCOMPARE(site.kinds(), u"1"_s);
        site.clock.moment = site.clock.moment.addSecs(-62);
        site.journal->note(JournalKind::InterfaceAnswers);
        site.journal->wake();
        QCOMPARE(site.kinds(), u"1 5 25"_s);
        QCOMPARE(
            site.rows(thisYear, u"SELECT substr(Dato1, 12, 8), substr(Dato2, 12, 8) FROM Giornale WHERE Tipo = 5"_s),
            QStringList{u"08:47:59|08:46:57"_s});
    }
};

QTEST_GUILESS_MAIN(TestJournal)
#include "tst_journal.moc"
