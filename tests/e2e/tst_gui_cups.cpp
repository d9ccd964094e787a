#include "reports/TextReport.h"
#include "startup/CurrentPrinter.h"
#include "support/FakeMessages.h"
#include "support/Fixtures.h"
#include "support/UnixSocket.h"
#include "widgets/ChildWindow.h"
#include "widgets/Printing.h"

#include <QPdfDocument>
#include <QPdfSelection>
#include <QProcess>
#include <QStandardPaths>

#include <unistd.h>

namespace {

/// A printer that prints what it is given, on A5.
constexpr auto driver = R"PPD(*PPD-Adobe: "4.3"
*NickName: "Paper"
*cupsFilter: "application/pdf 0 -"
*OpenUI *PageSize/Size: PickOne
*DefaultPageSize: A5
*PageSize A5/A5: ""
*CloseUI: *PageSize
*DefaultImageableArea: A5
*ImageableArea A5/A5: "20 30 410 555"
*DefaultPaperDimension: A5
*PaperDimension A5/A5: "420 595"
)PPD";

} // namespace

/// Prints through a print system of its own, whose printer keeps what it is sent in a file.
class TestGuiCups : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// A print that is made while the print system says nothing holds nothing up.
    void silentPrintSystem()
    {
        TestFolder test;
        const UnixSocket silent(test.directory.filePath(u"socket"_s), SOCK_STREAM);
        qputenv("CUPS_SERVER", silent.path());
        FakePrinters printers;
        printers.installed = listOf("laser");
        Settings settings(test.folder, printers);
        Notices notices;
        CurrentPrinter printer(settings, printers, notices);
        QVERIFY(settings.CreaImpostazioni(2).ok() && printer.choose(0).ok());
        Texts texts;
        FakeMessages messages;
        ChildWindow window(u"window"_s);
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        Printing printing(&window, printer, texts, messages);
        const Heartbeat heart;
        printing.findPrinter([&] { printing.print(std::make_unique<TextReport>(QStringList{u"x"_s}), u"title"_s); });
        QTRY_COMPARE(printers.fake.sent().size(), 1);
        QVERIFY2(heart.longest < 1000, QByteArray::number(heart.longest).constData());
    }

    void prints()
    {
        const QString cupsd = QStandardPaths::findExecutable(u"cupsd"_s, {u"/usr/sbin"_s});
        const QString helper = u"/usr/lib/cups/daemon/cups-exec"_s;
        if (cupsd.isEmpty() || !QFile::exists(helper))
            QSKIP("the print system (package cups-daemon) is not installed");
        TestFolder test;
        const QString here = test.directory.path(), paper = here + u"/paper.pdf"_s;
        const QByteArray folder = QFile::encodeName(here);
        // The scheduler gives root's rights up for its filters, and wants to be told for whom.
        const QByteArray user = geteuid() == 0 ? "User lp\nGroup lp\n" : "";
        QByteArray files = user + "ServerBin " + folder + "/cups\n";
        for (const char *key : {"ServerRoot", "CacheDir", "StateDir"})
            files += key + (" " + folder) + "/cups\n";
        for (const char *key : {"RequestRoot", "TempDir"})
            files += key + (" " + folder) + "/spool\n";
        for (const char *key : {"ErrorLog", "AccessLog", "PageLog"})
            files += key + (" " + folder) + "/cups/" + key + "\n";
        for (const QString &part : listOf("cups/backend,cups/daemon,cups/ppd,spool"))
            QDir(here).mkpath(part);
        // With its owner's rights alone, as the document lies in a folder of his own.
        test.write(u"cups/backend/keep"_s, "#!/bin/sh\n[ $# = 0 ] || cp \"$6\" \"${DEVICE_URI#keep:}\"\n");
        QFile::setPermissions(here + u"/cups/backend/keep"_s, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        // A copy: the scheduler removes what it does not know, behind links too.
        QFile::copy(helper, here + u"/cups/daemon/cups-exec"_s);
        test.write(u"cups/files.conf"_s, files);
        test.write(u"cups/cupsd.conf"_s, "Listen " + folder +
                                             "/socket\nBrowsing Off\nWebInterface No\n"
                                             "<Location />\nAllow all\n</Location>\n"
                                             "<Policy default>\n<Limit All>\nAllow all\n</Limit>\n"
                                             "</Policy>\n");
        test.write(u"cups/printers.conf"_s, "<Printer closed>\nDeviceURI keep:/dev/null\nAccepting No\n</Printer>\n"
                                            "<Printer paper>\nState Idle\nAccepting Yes\nDeviceURI keep:" +
                                                QFile::encodeName(paper) + "\n</Printer>\n");
        test.write(u"cups/ppd/paper.ppd"_s, driver);
        qputenv("CUPS_SERVER", folder + "/socket");
        QProcess scheduler;
        scheduler.setProcessChannelMode(QProcess::MergedChannels);
        scheduler.start(cupsd, {u"-f"_s, u"-c"_s, here + u"/cups/cupsd.conf"_s, u"-s"_s, here + u"/cups/files.conf"_s});
        const Printers printers;
        if (!QTest::qWaitFor([&] { return !printers.listAtOnce().names.isEmpty(); }, 10000))
            QFAIL(scheduler.readAll());
        QCOMPARE(printers.listAtOnce().names, listOf("closed,paper"));

        Settings settings(test.folder, printers);
        Notices notices;
        CurrentPrinter printer(settings, printers, notices);
        QVERIFY(settings.CreaImpostazioni(2).ok());
        Texts texts;
        texts.fill(2);
        FakeMessages messages;
        ChildWindow window(u"window"_s);
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        Printing printing(&window, printer, texts, messages);
        const auto print = [&](int index) {
            bool hasEnded = false;
            const auto ended = [&] { hasEnded = true; };
            if (!printer.choose(index))
                return;
            printing.findPrinter(
                [&] { printing.print(std::make_unique<TextReport>(QStringList{u"Perch\u00E9"_s}), u"title"_s, ended); },
                ended);
            QTRY_VERIFY(hasEnded);
        };
        print(1);
        QPdfDocument document;
        QTRY_COMPARE(document.load(paper), QPdfDocument::Error::None);
        QCOMPARE(document.getAllText(0).text().trimmed(), u"Perch\u00E9"_s);
        // The paper of the printer and its margins, which the driver tells in points.
        QCOMPARE(document.pagePointSize(0).toSize(), QSize(420, 595));
        const auto points = [](double millimetres) { return qRound(millimetres / 25.4 * 72); };
        const QMarginsF margins = printers.system()->paper(u"paper"_s).value().margins;
        QCOMPARE(
            QMargins(points(margins.left()), points(margins.top()), points(margins.right()), points(margins.bottom())),
            QMargins(20, 40, 10, 30));
        QCOMPARE(printers.system()->paper(u"closed"_s).value().size, QSizeF(210, 297));
        print(0);
        QTRY_VERIFY(!notices.isEmpty());
        QCOMPARE(takeNotices(notices), QStringList{u"Printing on 'closed' is not possible: access denied"_s});
        scheduler.terminate();
        QVERIFY(scheduler.waitForFinished());
        print(0);
        QVERIFY(!printers.system()->send(u"paper"_s, paper, {}).ok());
        QCOMPARE(messages.take(), QStringList{u"Information: No Printer installed"_s});
    }
};

QTEST_MAIN(TestGuiCups)
#include "tst_gui_cups.moc"
