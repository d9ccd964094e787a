#include "support/Desk.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QRadioButton>

class TestMainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gate()
    {
        Desk desk({"COM=7\r\nLINGUA=2\r\n"}, u"perch\u00E9"_s);
        QVERIFY(!desk.window.close()); // still loading
        desk.comeToLife();
        QTRY_VERIFY(desk.open("frmPassProg"));
        // A press that gets past the disabled menu does nothing either.
        for (const char *name : {"mnuImpCom", "mnuLingua", "mnuAttPass", "mnuUtility", "mnuAbout", "mnuExit"}) {
            QVERIFY2(!desk.entry(name)->isEnabled(), name);
            desk.entry(name)->setEnabled(true);
            desk.entry(name)->trigger();
        }
        QCOMPARE(desk.window.findChildren<ChildWindow *>().size(), 1);
        QVERIFY(desk.window.isVisible() && !desk.window.close());
        desk.pass(3);
        QCOMPARE(desk.asked, QByteArray());
        QCOMPARE(desk.panel(5) + desk.led(), u"Led_G.bmp"_s);
        // A log-out that is called off after all leaves it as it was.
        QVERIFY(desk.window.closeForSession(true) && !desk.window.close());

        ChildWindow *ask = desk.open("frmPassProg");
        QVERIFY(!ask->close());
        auto *box = ask->findChild<QLineEdit *>(u"txtPass"_s);
        QTest::keyClicks(box, u"perche"_s);
        QTest::keyClick(box, Qt::Key_Return);
        QTRY_VERIFY(!desk.messages.shown.isEmpty());
        QCOMPARE(desk.messages.take(), QStringList{u"Critical: Wrong password!"_s});
        box->setText(u"perch\u00E9"_s);
        desk.click(ask, "cmdOk");
        QTRY_COMPARE(desk.panel(5), onLine);
        QVERIFY(desk.entry("mnuFile")->isEnabled() && desk.entry("mnuImpCom")->isEnabled());
        QCOMPARE(desk.entry("mnuAttPass")->text(), u"Disable &Main Password"_s);

        // Removed with the same password, the next start is free.
        desk.entry("mnuAttPass")->trigger();
        QVERIFY(!desk.entry("mnuAnagrafica")->isEnabled());
        // Only its two buttons close the password window, and the end that it refused does not come with it.
        desk.closeInVain();
        ask = desk.open("frmPassProg");
        ask->findChild<QLineEdit *>(u"txtPass"_s)->setText(u"perch\u00E9"_s);
        desk.click(ask, "cmdOk");
        QTRY_VERIFY(desk.entry("mnuAnagrafica")->isEnabled());
        QCOMPARE(desk.entry("mnuAttPass")->text(), u"Enable &Main Password"_s);
        Passwords stored(desk.test.archives);
        QVERIFY(stored.load() == Passwords::Fault::None && !stored.isSet(Passwords::Type::Main));
        QVERIFY(desk.window.isVisible());
    }

    /// Nobody passes before the register can be read.
    void gateOfALockedRegister()
    {
        Desk desk({"COM=7\r\nLINGUA=2\r\n"}, u"apriti"_s);
        Database other = desk.test.hold(ArchiveName::Users);
        desk.comeToLife();
        const auto *remark = control<QLabel>(&desk.window, u"StatusBar1.Remark"_s);
        QTRY_VERIFY(remark->accessibleName().contains(u"is tried again every second"_s));
        QVERIFY(!desk.entry("mnuFile")->isEnabled() && !desk.window.close() && !desk.open("frmPassProg"));
        QVERIFY(other.execute("ROLLBACK"));
        QTRY_VERIFY(desk.open("frmPassProg") && !remark->isVisible());
    }

    void portsThatCannotBeOpened()
    {
        for (const auto &[isTaken, told] :
             {std::pair(true, u"Serial port is already open!\r\nConfigure another serial port!"_s),
              {false,
               u"The serial port COM7 cannot be opened: does not exist\r\nIt is tried again every five seconds."_s}}) {
            Desk desk;
            SerialControl other(desk.program.ports());
            other.setCommPort(7);
            QVERIFY(!isTaken || other.setPortOpen(true).ok());
            if (!isTaken)
                desk.interface.close();
            desk.program.notices().post(Icon::Critical, {OwnText::EventsLost, {u"3"_s}, {}});
            desk.comeToLife();
            QTRY_COMPARE(desk.panel(5) + desk.led(), noPort + u"Led_R.bmp"_s);
            QTRY_COMPARE(desk.messages.shown.size(), 2);
            desk.pass(20);
            QCOMPARE(desk.messages.take(), QStringList({u"Critical: Events lost: 3"_s, u"Critical: "_s + told}));
            QCOMPARE(desk.messages.most, 1);
        }
    }

    void firstPort()
    {
        Desk desk("COM=0\r\nLINGUA=2\r\n");
        desk.comeToLife();
        QTRY_VERIFY(desk.open("frmImpCom"));
        QVERIFY(!desk.entry("mnuStrumenti")->isEnabled() && !desk.window.close());
        QTRY_VERIFY(desk.open("frmImpCom")->isEnabled());
        auto *seven = desk.open("frmImpCom")->findChild<QRadioButton *>(u"Com(6)"_s);
        QVERIFY(seven->toolTip().contains(desk.interface.device()));
        seven->click();
        desk.click(desk.open("frmImpCom"), "cmdOk");
        QTRY_COMPARE(desk.panel(5), onLine);
        QVERIFY(desk.entry("mnuStrumenti")->isEnabled() && desk.test.read(u"Impost.stp"_s).startsWith("COM=7\r\n"));

        // Opened again and cancelled, the link comes back as it was; a second choice of the entry opens no second
        // window.
        desk.test.write(u"Impost.stp"_s, "COM=8\r\n");
        desk.entry("mnuImpCom")->trigger();
        desk.entry("mnuImpCom")->trigger();
        QVERIFY(!desk.program.serial().portOpen());
        QCOMPARE(desk.panel(5) + desk.led(), u"Led_G.bmp"_s);
        QTRY_VERIFY(desk.open("frmImpCom")->isEnabled());
        QVERIFY(!desk.open("frmImpCom")->findChild<QRadioButton *>(u"Com(6)"_s)->isChecked());
        desk.asked.clear();
        desk.click(desk.open("frmImpCom"), "cmdAnnulla");
        QTRY_COMPARE(desk.asked, QByteArray("&IC"));
        QVERIFY(!desk.open("frmImpCom"));
    }

    /// Supervision ends when the operator says so, and without a word when he is not there to be asked.
    void endIsAsked()
    {
        Desk desk;
        desk.goOnLine();
        for (int attempt = 0; attempt < 2; ++attempt)
            desk.entry("mnuExit")->trigger();
        QTRY_COMPARE(desk.messages.standing, 0);
        QVERIFY(desk.messages.take().size() == 1 && desk.window.isVisible());
        desk.close();
        // A log-out that comes to its end, a signal, and a port that is closed.
        Desk session;
        session.goOnLine();
        QVERIFY(session.window.closeForSession(true));
        QEvent quit(QEvent::Quit);
        QCoreApplication::sendEvent(qApp, &quit);
        QVERIFY(!session.window.isVisible());
        Desk other;
        other.goOnLine();
        other.entry("mnuImpCom")->trigger();
        QTRY_VERIFY(other.open("frmImpCom")->isEnabled());
        QVERIFY(other.window.close());
    }

    /// A close that was refused while the register loads must not end the program when another window closes later.
    void refusedCloseIsForgotten()
    {
        Desk desk;
        desk.comeToLife();
        desk.entry("mnuAbout")->trigger();
        desk.entry("mnuUtenti")->trigger();
        ChildWindow *users = desk.open("frmLstUtenti");
        QVERIFY(users && !users->isEnabled());
        desk.closeInVain();
        desk.entry("mnuAbout")->trigger();
        desk.click(desk.open("frmInfo"), "cmdOk");
        QTRY_VERIFY(!desk.open("frmInfo") && users->isEnabled());
        QVERIFY(desk.window.isVisible());
        // With a dialog of its own open it is the dialog that closes first.
        desk.click(users, "cmdNuovo");
        QVERIFY(desk.open("frmInsCodice"));
        // Behind the register that waits for it the dialog would be out of reach.
        desk.entry("mnuUtenti")->trigger();
        const auto *area = desk.window.findChild<QMdiArea *>();
        QTRY_COMPARE(area->activeSubWindow()->widget(), desk.open("frmInsCodice"));
        desk.close();
    }

    /// The backup is offered first, behind the users password; its users count from the save on.
    void restoredRegister()
    {
        Desk desk;
        TestFolder old;
        old.addUsers({{u"2"_s, u"TX"_s, u"Verdi"_s}});
        const QString users = QStringView(ArchiveName::Users).toString();
        const QString backup = QStringView(ArchiveName::UsersBackup).toString();
        QVERIFY(QDir(desk.test.directory.path()).mkpath(u"Archivi/Backup"_s));
        desk.test.write(backup, old.read(users));
        QVERIFY(desk.program.passwords().set(Passwords::Type::Users, u"otra"_s) == Passwords::Fault::None);
        desk.goOnLine();
        const auto receive = [&desk](const char *code) {
            desk.interface.write("R/A-00000000" + QByteArray(code) + "X..\r\n");
        };
        const auto chosen = [&desk] { return desk.window.findChild<QFileDialog *>(u"frmRestore"_s); };
        const auto choose = [&] {
            desk.entry("mnuRestoreUsers")->trigger();
            QVERIFY(desk.open("frmPassProg") && !chosen());
            desk.open("frmPassProg")->findChild<QLineEdit *>(u"txtPass"_s)->setText(u"otra"_s);
            desk.click(desk.open("frmPassProg"), "cmdOk");
            QTRY_VERIFY(chosen() && chosen()->isVisible());
            QTRY_COMPARE(chosen()->selectedFiles(), QStringList{desk.test.folder.path(backup)});
            chosen()->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open)->click();
            QTRY_VERIFY(!chosen());
        };
        choose();
        QTRY_VERIFY(desk.open("frmLstUtenti") && desk.open("frmLstUtenti")->isEnabled());
        ChildWindow *list = desk.open("frmLstUtenti");
        QCOMPARE(list->findChild<QTableView *>()->model()->index(0, 2).data().toString(), u"Verdi"_s);
        const QRegularExpression title(
            u"^User list of ../../.... ..:..:.., restored from 'Archivi/Backup/AnaBack.zeb'$"_s);
        QVERIFY2(title.match(list->windowTitle()).hasMatch(), qPrintable(list->windowTitle()));
        QVERIFY(!desk.entry("mnuRestoreUsers")->isEnabled());
        QCOMPARE(desk.test.rows(ArchiveName::Users, u"SELECT Codice FROM Utenti"_s), QStringList{u"1"_s});
        // Closed without an answer that says so, it is not lost.
        desk.messages.answers = {Messages::Answer::Cancel};
        QVERIFY(!list->close());
        QTRY_COMPARE(desk.messages.standing, 0);
        QCOMPARE(desk.messages.take().size(), 1);
        receive("1");
        receive("2");
        const QString today = ArchiveName::events(u"05-03-2004"_s);
        const auto stored = [&] {
            return desk.test.rows(today, u"SELECT Codice FROM Eventi ORDER BY ProgEv"_s).join(u',');
        };
        QTRY_COMPARE(stored(), u"1"_s);
        desk.click(list, "cmdSalva");
        QTRY_VERIFY(!desk.open("frmLstUtenti") && desk.program.users().isKnown());
        receive("1");
        receive("2");
        QTRY_COMPARE(stored(), u"1,2"_s);
        QCOMPARE(desk.test.rows(ArchiveName::UsersBackup, u"SELECT Cognome FROM Utenti"_s), QStringList{u"Rossi"_s});

        desk.test.write(backup, "noise");
        choose();
        QTRY_VERIFY(!desk.messages.shown.isEmpty());
        QCOMPARE(
            desk.messages.take(),
            QStringList{u"Critical: The user list cannot be restored from '%1': damaged or not the program's own"_s.arg(
                desk.test.folder.path(backup))});
        QVERIFY(!desk.open("frmLstUtenti"));
        desk.close();
    }

    void receptionBehindABox()
    {
        Messages real;
        Desk desk("COM=7\r\nLINGUA=2\r\nCHECK=1\r\n", {}, &real);
        QSignalSpy stored(&desk.program.log(), &EventLog::stored);
        desk.goOnLine();
        desk.program.notices().post(Icon::Critical, {OwnText::EventsLost, {u"<b>3</b>"_s}, {}});
        QTRY_VERIFY(desk.window.findChild<QMessageBox *>());
        auto *box = desk.window.findChild<QMessageBox *>();
        QVERIFY(box->text().endsWith(u"<b>3</b>"_s));
        desk.interface.write("R/A-000000001X..\r\n");
        QTRY_COMPARE(stored.size(), 1);
        box->button(QMessageBox::Ok)->click();
        auto *menu = desk.window.findChild<QMenu *>(u"mnuStrumenti"_s);
        menu->popup({});
        desk.interface.write("R/A-000000001X..\r\n");
        QTRY_COMPARE(stored.size(), 2);
        menu->hide();
        desk.entry("mnuUtility")->trigger();
        desk.interface.write("R/C-000000009X..\r\n");
        QTRY_COMPARE(desk.open("frmUtility")->findChild<QLineEdit *>(u"txtCanale"_s)->text(), u"C - ENABLED"_s);
        // The end closes archive and windows whatever is open.
        QSignalSpy unloaded(&desk.window, &MDIForm1::unloaded);
        QTRY_VERIFY(!desk.window.findChild<QMessageBox *>());
        QVERIFY(!desk.window.close());
        QTRY_VERIFY(desk.window.findChild<QMessageBox *>());
        // Whoever presses Enter unread goes on supervising.
        QTest::keyClick(desk.window.findChild<QMessageBox *>(), Qt::Key_Return);
        QTRY_VERIFY(!desk.window.findChild<QMessageBox *>());
        QVERIFY(desk.window.isVisible() && !desk.window.close());
        desk.window.findChild<QMessageBox *>()->button(QMessageBox::Yes)->click();
        QTRY_COMPARE(unloaded.size(), 1);
        // No bands, not enabled: told as the first thing after opening, and let go at the end.
        QCOMPARE(desk.line->rtsTold, listOf("asserted,released"));
        const QString day = ArchiveName::events(u"05-03-2004"_s);
        QVERIFY(!desk.test.folder.exists(day + u"-wal"_s));
        QCOMPARE(desk.test.rows(day, u"SELECT Codice FROM Eventi"_s).size(), 2);
    }

    void faultsAtTheStart()
    {
        for (const auto &[sql, told] :
             {std::pair(QByteArray("DELETE FROM Password"), u"Critical: Corrupt File Password!"_s),
              {"DROP TABLE Password", u"Critical: Missing or damaged file!\r\nReinstall!"_s}}) {
            Desk desk;
            desk.test.execute(ArchiveName::Users, sql);
            QSignalSpy unloaded(&desk.window, &MDIForm1::unloaded);
            desk.window.findChild<QTimer *>(u"tmrShow"_s)->start(0);
            QTRY_COMPARE(unloaded.size(), 1);
            QCOMPARE(desk.messages.take(), QStringList{told});
            QCOMPARE(desk.asked, QByteArray());
        }
    }
};

QTEST_MAIN(TestMainWindow)
#include "texts/OwnText.h"
#include "tst_gui_main.moc"
