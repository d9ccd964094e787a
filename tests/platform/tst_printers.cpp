#include "platform/PrintJob.h"
#include "platform/Printers.h"
#include "support/Fixtures.h"
#include "support/UnixSocket.h"

namespace {

constexpr std::chrono::hours never(1);

} // namespace

class TestPrinters : public QObject
{
    Q_OBJECT

private:
    static PrintDocument makeDocument()
    {
        PrintDocument document{std::make_unique<QTemporaryDir>(), u"laser"_s, u"title"_s};
        QFile file(document.path());
        if (!file.open(QIODevice::WriteOnly) || file.write("paper") != 5)
            qFatal("the document cannot be written");
        return document;
    }

private Q_SLOTS:
    void job_data()
    {
        const Rows<bool, int> row("late", "says");
        row("taken", false, int(FaultCode::NotOpen));
        row("refused", false, int(FaultCode::AccessDenied));
        row("taken late", true, int(FaultCode::NotOpen));
        row("refused late", true, int(FaultCode::NotFound));
    }
    void job()
    {
        QFETCH(bool, late);
        QFETCH(int, says);
        const auto system = std::make_shared<FakePrintSystem>();
        system->says = FaultCode(says);
        if (late)
            system->allow(0);
        PrintDocument document = makeDocument();
        const QString folder = document.folder->path(), file = document.path();
        const Heartbeat heart;
        PrintJob job(system, std::move(document), late ? std::chrono::milliseconds(1) : never);
        int waits = 0;
        QList<FaultCode> answers;
        connect(&job, &PrintJob::waits, this, [&] { ++waits; });
        connect(&job, &PrintJob::answered, this, [&](const Result<void> &answer) {
            answers.append(answer ? FaultCode::NotOpen : answer.fault().code);
            QVERIFY(!QFile::exists(folder));
        });
        if (late) {
            // The loop goes on, and what is told meanwhile is no refusal.
            QTRY_VERIFY(waits == 1 && system->sent().size() == 1);
            QTRY_VERIFY(heart.beats > 50);
            QVERIFY(answers.isEmpty() && job.isUnderWay() && QFile::exists(file));
            system->allow(1);
        }
        QTRY_COMPARE(answers, QList{FaultCode(says)});
        const auto sent = system->sent();
        QCOMPARE(sent[0].printer + sent[0].title + sent[0].file, u"lasertitle"_s + file);
        QVERIFY(sent[0].document == "paper" && waits == (late ? 1 : 0) && !job.isUnderWay());
    }

    /// The library of the print system, and a socket where somebody listens and nobody answers.
    void silentPrintSystem()
    {
        const QTemporaryDir here;
        auto socket = std::make_unique<UnixSocket>(here.filePath(u"socket"_s), SOCK_STREAM);
        qputenv("CUPS_SERVER", socket->path());

        const Printers printers(std::make_shared<PrintSystem>(), std::chrono::milliseconds(200));
        QStringList answers;
        const Heartbeat heart;
        const auto list = printers.list([&](const Result<PrinterList> &answer) {
            answers.append(answer ? u"list"_s : u"silent"_s);
            QVERIFY(heart.beats > 0);
        });
        const auto paper = printers.paper(
            u"laser"_s, [&](const Result<Paper> &answer) { answers.append(answer ? u"paper"_s : u"silent"_s); });
        QTRY_COMPARE(answers, listOf("silent,silent"));
        QCOMPARE(printers.listAtOnce().defaultIndex(), -1);

        PrintDocument document = makeDocument();
        const QString file = document.path();
        PrintJob job(printers.system(), std::move(document));
        connect(&job, &PrintJob::answered, this,
                [&](const Result<void> &answer) { answers.append(answer ? u"taken"_s : u"refused"_s); });
        const int before = heart.beats;
        QTRY_VERIFY(heart.beats > before + 50);
        QVERIFY(QFile::exists(file));
        // The print system goes: now it is known that nothing is printed.
        socket.reset();
        QTRY_COMPARE(answers, listOf("silent,silent,refused"));
        QVERIFY(!QFile::exists(file));
    }
};

QTEST_GUILESS_MAIN(TestPrinters)
#include "tst_printers.moc"
