#include "platform/Printers.h"
#include "support/Fixtures.h"

#include <QDir>
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

/// A print system of its own, whose printer keeps what it is sent in a file.
class TestCups : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void prints()
    {
        const QString cupsd = QStandardPaths::findExecutable(u"cupsd"_s, {u"/usr/sbin"_s});
        const QString helper = u"/usr/lib/cups/daemon/cups-exec"_s;
        if (cupsd.isEmpty() || !QFile::exists(helper))
            QSKIP("the print system (package cups-daemon) is not installed");
        const BareFolder test;
        const QString here = test.directory.path();
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
        test.write(u"cups/cupsd.conf"_s,
                   "Listen " + folder +
                       "/socket\nBrowsing Off\nWebInterface No\n<Location />\nAllow all\n</Location>\n"
                       "<Policy default>\n<Limit All>\nAllow all\n</Limit>\n</Policy>\n");
        test.write(u"cups/printers.conf"_s, "<Printer closed>\nDeviceURI keep:/dev/null\nAccepting No\n</Printer>\n"
                                            "<Printer paper>\nState Idle\nAccepting Yes\nDeviceURI keep:" +
                                                folder + "/paper.pdf\n</Printer>\n");
        test.write(u"cups/ppd/paper.ppd"_s, driver);
        qputenv("CUPS_SERVER", folder + "/socket");
        QProcess scheduler;
        scheduler.setProcessChannelMode(QProcess::MergedChannels);
        scheduler.start(cupsd, {u"-f"_s, u"-c"_s, here + u"/cups/cupsd.conf"_s, u"-s"_s, here + u"/cups/files.conf"_s});
        const Printers printers;
        if (!QTest::qWaitFor([&] { return !printers.listAtOnce().names.isEmpty(); }, 10000))
            QFAIL(scheduler.readAll());
        QCOMPARE(printers.listAtOnce().names, listOf("closed,paper"));

        const PrintSystem &system = *printers.system();
        test.write(u"document"_s, "%PDF-1.4 Perch\xE9");
        const auto send = [&](const QString &printer) {
            return codeOf(system.send(printer, test.folder.path(u"document"_s), u"title"_s));
        };
        QCOMPARE(send(u"paper"_s), -1);
        QTRY_COMPARE(test.read(u"paper.pdf"_s), test.read(u"document"_s));
        // The paper of the printer and its margins, which the driver tells in points.
        const auto points = [](double millimetres) { return qRound(millimetres / 25.4 * 72); };
        const Paper a5 = system.paper(u"paper"_s).value();
        QCOMPARE(QSize(points(a5.size.width()), points(a5.size.height())), QSize(420, 595));
        QCOMPARE(QMargins(points(a5.margins.left()), points(a5.margins.top()), points(a5.margins.right()),
                          points(a5.margins.bottom())),
                 QMargins(20, 40, 10, 30));
        QCOMPARE(system.paper(u"closed"_s).value().size, QSizeF(210, 297));
        QCOMPARE(send(u"closed"_s), int(FaultCode::AccessDenied));
        QCOMPARE(send(u"none"_s), int(FaultCode::NotFound));
        scheduler.terminate();
        QVERIFY(scheduler.waitForFinished() && printers.listAtOnce().names.isEmpty() && send(u"paper"_s) >= 0);
    }
};

QTEST_GUILESS_MAIN(TestCups)
#include "tst_cups.moc"
