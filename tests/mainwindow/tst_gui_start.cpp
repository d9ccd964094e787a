#include "archives/Tables.h"
#include "mainwindow/MDIForm1.h"
#include "platform/PseudoTerminal.h"
#include "support/FakeMessages.h"
#include "support/Fixtures.h"
#include "texts/DateTimeText.h"

#include <QAction>
#include <QLabel>

/// How the main window comes to life where another program holds the register.
class TestStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registerIsLocked_data()
    {
        const Rows<QString> row("password");
        row("free", {});
        row("with a password", u"apriti"_s);
    }
    /// Nobody passes before it can be read, and nothing that comes meanwhile is lost.
    void registerIsLocked()
    {
        QFETCH(QString, password);
        TestFolder test;
        test.addUsers({{u"1"_s, u"TX"_s, u"Rossi"_s, u"Mario"_s}});
        test.write(u"Impost.stp"_s, "COM=7\r\nLINGUA=2\r\nNUMEVOD=25\r\nCHECK=0\r\nPRN=-1\r\n");
        Passwords passwords(test.archives);
        QVERIFY(passwords.load() == Passwords::Fault::None &&
                passwords.set(Passwords::Type::Main, password) == Passwords::Fault::None);
        PseudoTerminal interface(test.directory.filePath(u"Porte/COM7"_s));
        QVERIFY(interface.open().ok());
        Result<Database> other = test.archives.open(ArchiveName::Users, Database::Use::Safe);
        QVERIFY(other.value().execute("BEGIN EXCLUSIVE; UPDATE Utenti SET Note='x'"));

        const FakeClock clock;
        const FakePrinters printers;
        FakeMessages messages;
        Program program({test.directory.path()}, clock, printers);
        QVERIFY(!program.prepare(2, {}));
        MDIForm1 window(program, messages);
        window.load();
        window.findChild<QTimer *>(u"tmrShow"_s)->start(0);
        const auto *remark = window.findChild<QLabel *>(u"StatusBar1.Remark"_s);
        QTRY_VERIFY(remark->isVisible());
        QVERIFY(remark->accessibleName().contains(u"is tried again every second"_s));
        interface.write("R/A-000000001X..\r\n");
        QTRY_COMPARE(waiting(program.log()), 1);
        QVERIFY(!window.findChild<QAction *>(u"mnuFile"_s)->isEnabled() && !window.close());
        QVERIFY(!window.findChild<ChildWindow *>());

        QVERIFY(other.value().execute("ROLLBACK"));
        QTRY_VERIFY(!remark->isVisible());
        QCOMPARE(test.rows(ArchiveName::events(clock.date()), u"SELECT Codice FROM Eventi"_s), QStringList{u"1"_s});
        QCOMPARE(window.findChild<QAction *>(u"mnuFile"_s)->isEnabled(), password.isEmpty());
        QCOMPARE(window.findChild<ChildWindow *>(u"frmPassProg"_s) != nullptr, !password.isEmpty());
        QTRY_COMPARE(messages.shown.size(), 1);
        window.end();
        QCOMPARE(messages.take().constFirst(), u"Information: The waiting events (1) have been stored."_s);
    }
};

QTEST_MAIN(TestStart)
#include "tst_gui_start.moc"
