#include "archive/PruneCommand.h"
#include "journal/Journal.h"
#include "journal/JournalReading.h"
#include "support/ToolRun.h"

using namespace tool;

namespace {

using Consent = PruneCommand::Consent;

/// Today is 05-03-2004.
struct Pruned : TestFolder {
    explicit Pruned(QDate before, Consent consent, const QString &answer = {})
    {
        for (const char *day : {"31-12-2002", "03-02-2004", "04-02-2004", "05-03-2004"})
            addEvents(QString::fromLatin1(day), {});
        write(u"Archivi/Eventi_03-02-2004.zeb.guasto"_s, "damaged");
        for (const int year : {2002, 2003})
            (void)archives.create(ArchiveName::journal(year), TableLayout::Journal, ArchiveName::EventsTemplate);
        PruneCommand command(run.site(), before, consent, run);
        Result<bool> done = false;
        for (int i = 0; i < 50 && done && !done.value(); ++i) {
            done = command.step(QDeadlineTimer(100));
            if (command.pause() > 0)
                command.answer(answer);
        }
        refused = done ? QString() : run.texts.sentence(command.words(done.fault()));
    }
    QStringList left() { return files(u"Archivi"_s).filter(QRegularExpression(u"Eventi_|Giornale_200[23]"_s)); }

    ToolRun run{*this};
    QString refused;
};

} // namespace

class TestPrune : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsDeleted_data()
    {
        const Rows<QDate, Consent, QString, int, QString> row("before", "consent", "answer", "left", "refused");
        const QString young = u"Days of the last 30 days"_s;
        row("sure", QDate(2004, 2, 4), Consent::Given, {}, 2, {});
        row("said yes", QDate(2004, 2, 4), Consent::ToBeAsked, u"Y\n"_s, 2, {});
        row("said no", QDate(2004, 2, 4), Consent::ToBeAsked, u"n"_s, 7, {});
        row("said nothing", QDate(2004, 2, 4), Consent::ToBeAsked, {}, 7, {});
        row("nobody to be asked", QDate(2004, 2, 4), Consent::Impossible, {}, 7, u"Without a terminal"_s);
        row("a day too young", QDate(2004, 2, 5), Consent::Given, {}, 7, young);
        row("no date", QDate(), Consent::Given, {}, 7, young);
        row("a year and its journal", QDate(2003, 1, 1), Consent::Given, {}, 5, {});
        row("nothing so old", QDate(2002, 12, 31), Consent::Given, {}, 7, {});
    }
    void whatIsDeleted()
    {
        QFETCH(QDate, before);
        QFETCH(Consent, consent);
        QFETCH(QString, answer);
        QFETCH(int, left);
        QFETCH(QString, refused);
        Pruned pruned(before, consent, answer);
        QVERIFY2(pruned.refused.startsWith(refused) && pruned.refused.isEmpty() == refused.isEmpty(),
                 qPrintable(pruned.refused));
        QCOMPARE(pruned.left().size(), left);
        QStringList noted;
        if (left < 7)
            noted = QStringList{u"73|%1|%2"_s.arg(before.toString(Qt::ISODate)).arg(7 - left)};
        if (pruned.archives.exists(ArchiveName::journal(2004)))
            QCOMPARE(pruned.rows(ArchiveName::journal(2004), u"SELECT Tipo, Dato1, Dato2 FROM Giornale"_s), noted);
        else
            QVERIFY(noted.isEmpty());
    }

    /// The supervisor is at work, or was cut off: neither its numbers nor what is said of it suffer.
    void besideTheSupervisor()
    {
        TestFolder test;
        ToolRun run(test);
        Notices notices;
        const auto prune = [&run] {
            ArchiveStore ofTool(run.test.folder);
            return JournalFile::append(ofTool, {0, momentOf(run.clock.now()), JournalKind::Pruned, {}, {}});
        };
        const qint64 from = run.clock.now().toSecsSinceEpoch();
        const auto pass = [&run](int seconds) {
            run.clock.moment = run.clock.moment.addSecs(seconds);
            run.clock.milliseconds += seconds * 1000;
        };
        {
            Journal journal(test.archives, run.clock, notices);
            journal.begin(u"1"_s);
            journal.note(JournalKind::PortOpened, u"5"_s);
            journal.wake();
            QVERIFY(prune());
            pass(60);
            journal.note(JournalKind::InterfaceAnswers);
            journal.wake();
            QVERIFY(prune() && prune());
            pass(60);
            journal.wake();
        } // cut off
        pass(600);
        QVERIFY(prune());
        Journal again(test.archives, run.clock, notices);
        again.begin(u"1"_s);
        again.note(JournalKind::PortOpened, u"5"_s);
        again.wake();
        QVERIFY(notices.isEmpty());
        const QString name = ArchiveName::journal(2004);
        QCOMPARE(test.rows(name, u"SELECT Tipo FROM Giornale ORDER BY Num"_s).join(u' '),
                 u"1 20 73 25 73 73 73 3 1 20"_s);
        QCOMPARE(test.rows(name, u"SELECT max(Num) - min(Num) FROM Giornale"_s), QStringList{u"9"_s});
        JournalReading reading(test.archives, 2004, 2004);
        QVERIFY(finish(reading));
        const QList<CoveredSpan> spans = coverage(reading.content(), from, from + 720);
        QCOMPARE(spans, (QList<CoveredSpan>{{from, from + 120, Listening::Listened},
                                            {from + 120, from + 720, Listening::NotRunning}}));
    }
};

QTEST_GUILESS_MAIN(TestPrune)
#include "tst_prune.moc"
