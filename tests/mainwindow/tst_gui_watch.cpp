#include "support/Desk.h"
#include "support/RecordingVfs.h"

class TestWatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The alarm stands in front and flashes, and what the guard types goes on where it went.
    void keyboardDuringTheAlarm()
    {
        Desk desk;
        desk.comeToLife();
        QVERIFY(QTest::qWaitForWindowActive(&desk.window));
        QTRY_COMPARE(desk.panel(5), onLine);
        const auto flash = [&desk] {
            (void)QMetaObject::invokeMethod(control<QTimer>(&desk.window, u"tmrFlash"_s), "timeout");
        };
        const auto alarm = [&desk] {
            desk.interface.close();
            QTRY_VERIFY(desk.open("frmMessage"));
            QCOMPARE(desk.panel(5) + desk.led(), noPort + u"Led_R.bmp"_s);
        };
        const auto portReturns = [&desk] {
            QVERIFY(desk.interface.open().ok());
            desk.pass(5);
            QTRY_COMPARE(desk.panel(5), onLine);
            QTRY_VERIFY(!desk.open("frmMessage"));
        };
        // With nothing else open a stray key closes nothing; an interface that answers again does.
        alarm();
        desk.type(" \r");
        QVERIFY(desk.open("frmMessage"));
        portReturns();

        desk.entry("mnuAttPass")->trigger();
        auto *first = desk.open("frmInsPass")->findChild<QLineEdit *>(u"txtPass"_s);
        desk.entry("mnuImpContKor")->trigger();
        desk.entry("mnuAttPass")->trigger();
        QTRY_VERIFY(first->hasFocus());
        desk.type("De");
        alarm();
        desk.type(" An");
        flash();
        desk.type("gelis");
        QCOMPARE(first->text(), u"De Angelis"_s);
        const ChildWindow *message = desk.open("frmMessage");
        QVERIFY(message->isAncestorOf(desk.window.childAt(message->parentWidget()->geometry().center())));
        // A click closes it and leaves the keyboard where it was; by keys it comes back there.
        desk.click(desk.open("frmMessage"), "cmdOk");
        QTRY_VERIFY(!desk.open("frmMessage"));
        QVERIFY(first->hasFocus());
        portReturns();
        alarm();
        QTest::keyClick(desk.window.windowHandle(), Qt::Key_Tab, Qt::ControlModifier);
        desk.type("\r");
        QTRY_VERIFY(!desk.open("frmMessage"));
        QTRY_VERIFY(first->hasFocus());
        // The window that was in front before comes back, not the one that was opened before.
        desk.entry("mnuAbout")->trigger();
        desk.entry("mnuAttPass")->trigger();
        desk.open("frmInsPass")->unload();
        QTRY_COMPARE(desk.window.findChild<QMdiArea *>()->activeSubWindow()->widget(), desk.open("frmInfo"));
    }

    /// What the operator does stands in the journal, and a search leads there.
    void operatorInTheJournal()
    {
        Desk desk;
        desk.goOnLine();
        desk.entry("mnuEventi")->trigger();
        ChildWindow *search = desk.open("frmEventi");
        control<QLineEdit>(search, u"txtDataOrig"_s)->setText(u"01/03/2004"_s);
        control<QLineEdit>(search, u"txtOraIn"_s)->setText(u"07:00:00"_s);
        desk.click(search, "cmdRicerca");
        QTRY_COMPARE(desk.messages.shown.size(), 1);
        QCOMPARE(desk.messages.take(), QStringList{u"Information: No events found!"_s});
        desk.click(search, "cmdCoverage");
        const auto *from = control<QLineEdit>(desk.open("frmJournal"), u"txtFrom"_s);
        QCOMPARE(from->text(), u"01/03/2004"_s);
        control<QLineEdit>(search, u"txtDataOrig"_s)->setText(u"05/03/2004"_s);
        desk.click(search, "cmdRicerca");
        QTRY_COMPARE(desk.messages.shown.size(), 1);
        desk.messages.take();
        desk.click(search, "cmdCoverage");
        QCOMPARE(from->text(), u"05/03/2004"_s);

        QCOMPARE(desk.entry("mnuNumEvOdVis")->text(), u"&Number of daily events to display"_s);
        for (int i = 0; i < 2; ++i) {
            desk.entry("mnuNumEvOdVis")->trigger();
            control<QLineEdit>(desk.open("frmNumEvOd"), u"txtNumEv"_s)->setText(u"40"_s);
            desk.click(desk.open("frmNumEvOd"), "cmdOk");
            QTRY_VERIFY(!desk.open("frmNumEvOd"));
            QCOMPARE(desk.entry("mnuNumEvOdVis")->text(), u"&Number of daily events to display (40)"_s);
        }
        desk.entry("mnuUtenti")->trigger();
        ChildWindow *list = desk.open("frmLstUtenti");
        QTRY_VERIFY(list->isEnabled() && control(list, u"cmdElimina"_s)->isEnabled());
        desk.messages.answers = {Messages::Answer::Yes};
        desk.click(list, "cmdElimina");
        QTRY_VERIFY(desk.messages.answers.isEmpty() && desk.messages.standing == 0);
        desk.messages.take();
        desk.click(list, "cmdSalva");
        QTRY_VERIFY(!desk.open("frmLstUtenti"));
        desk.program.journal().wake();
        QCOMPARE(
            desk.test.rows(ArchiveName::journal(2004),
                           u"SELECT Tipo, Dato1, Dato2 FROM Giornale WHERE Tipo BETWEEN 60 AND 79 ORDER BY Num"_s),
            (QStringList{u"67|01/03/2004 - 05/03/2004, 07:00:00 - 23:59:59|0"_s,
                         u"67|05/03/2004 - 05/03/2004, 07:00:00 - 23:59:59|0"_s, u"63|NUMEVOD|40"_s, u"60|0,0,1|"_s}));
    }

    /// Nobody is decided about by the users of before; the events wait until the register can be read.
    void savedRegisterThatCannotBeRead()
    {
        Desk desk;
        desk.goOnLine();
        desk.test.addUsers({listOf("22,TX,Verdi,Bea")});
        Database other = desk.test.hold(ArchiveName::Users, "BEGIN EXCLUSIVE; UPDATE Utenti SET Note='x'");
        desk.program.reloadUsers();
        desk.interface.write("R/A-000000022X..\r\n");
        QTRY_COMPARE(waiting(desk.program.log()), 1);
        QVERIFY(other.execute("ROLLBACK"));
        desk.program.tmrRefresh.start(0);
        QTRY_COMPARE(desk.test.rows(ArchiveName::events(u"05-03-2004"_s), u"SELECT Codice FROM Eventi"_s),
                     QStringList{u"22"_s});
        QTRY_COMPARE(desk.messages.shown.size(), 1);
        QVERIFY(desk.messages.take().first().startsWith(u"Critical: The users register"_s));
    }

    void eventsThatWait_data()
    {
        const Rows<bool, QStringList> row("bySystem", "told");
        const QString question = u"Question: Events that cannot be stored and will be lost: 2. Close the program?"_s;
        row("the operator ends the program", false, {question, question, u"Critical: Events lost: 2"_s});
        row("the system ends it", true, {u"Critical: Events lost: 2"_s});
    }
    /// What only memory holds is not given up unasked, and what is lost is told while there is somebody to read it.
    void eventsThatWait()
    {
        QFETCH(bool, bySystem);
        RecordingVfs vfs;
        Desk desk;
        desk.goOnLine();
        if (!bySystem)
            desk.program.link().suspend();
        const auto *remark = desk.window.findChild<QLabel *>(u"StatusBar1.Remark"_s);
        const auto comes = [&desk] { return desk.program.road().RegistraEvento("R/A-000000001X..\r"); };
        QVERIFY(comes() && !remark->isVisible());
        {
            const Database other = desk.test.hold(ArchiveName::events(u"05-03-2004"_s));
            QVERIFY(!comes() && remark->isVisible());
            QCOMPARE(remark->accessibleName(), u"Events waiting on disk: 1"_s);
        }
        QTRY_VERIFY(!remark->isVisible());
        QTRY_COMPARE(desk.messages.shown.size(), 2);
        desk.messages.take();
        vfs.refusal = SQLITE_FULL;
        QVERIFY(!comes() && !comes());
        QCOMPARE(remark->text(), u"Nothing is stored: events wait in memory (2)"_s);
        QTRY_COMPARE(desk.messages.shown.size(), 1);
        desk.messages.take();

        QSignalSpy unloaded(&desk.window, &MDIForm1::unloaded);
        if (bySystem) {
            desk.window.end();
        } else {
            desk.messages.answers = {Messages::Answer::No, Messages::Answer::Yes};
            QVERIFY(!desk.window.close());
            QTRY_VERIFY(desk.messages.answers.size() == 1 && desk.messages.standing == 0);
            QVERIFY(desk.window.isVisible() && !desk.window.close());
        }
        QTRY_COMPARE(unloaded.size(), 1);
        QTEST(desk.messages.take(), "told");
        // No light was green beside that.
        QCOMPARE(desk.panel(5) + desk.led(), u"Led_G.bmp"_s);
        vfs.refusal = 0;
    }

    void editorsHoldTheProgramme()
    {
        Desk desk;
        desk.goOnLine();
        QCOMPARE(desk.label(3)->property("file").toString(), u"Time_Dis.bmp"_s);
        const auto told = [&desk] { return std::exchange(desk.line->rtsTold, {}); };
        QCOMPARE(told(), QStringList{u"asserted"_s});
        // A band for this Friday: it counts as soon as its editor closes, and not before.
        desk.entry("mnuFascieOr")->trigger();
        desk.entry("mnuFascieOr")->trigger();
        QCOMPARE(desk.window.findChildren<ChildWindow *>(u"frmSettimana"_s).size(), 1);
        QCOMPARE(desk.open("frmSettimana")->focusWidget()->objectName(), u"dbgrdSettimana"_s);
        control<QLineEdit>(desk.open("frmSettimana"), u"txtOraIn"_s)->setText(u"07:00"_s);
        control<QLineEdit>(desk.open("frmSettimana"), u"txtOraFine"_s)->setText(u"07:45"_s);
        desk.click(desk.open("frmSettimana"), "cmdAggiungi");
        QVERIFY(QMetaObject::invokeMethod(&desk.program.tmrRefresh, "timeout"));
        QCOMPARE(told(), QStringList());
        desk.click(desk.open("frmSettimana"), "cmdOk");
        QTRY_VERIFY(!desk.open("frmSettimana"));
        QCOMPARE(told(), QStringList{u"released"_s});
        QCOMPARE(desk.label(3)->property("file").toString(), u"Time_En.bmp"_s);
        // Closing the program asks for the changes, after the end of supervision; No keeps it open, Yes lets it close.
        desk.entry("mnuProgFerie")->trigger();
        desk.open("frmFerie")->findChild<QLineEdit *>(u"txtDalGiorno"_s)->setText(u"05/03/2004"_s);
        desk.click(desk.open("frmFerie"), "cmdAggiungi");
        QSignalSpy unloaded(&desk.window, &MDIForm1::unloaded);
        desk.messages.answers = {Messages::Answer::Yes, Messages::Answer::No, Messages::Answer::Yes,
                                 Messages::Answer::Yes};
        for (int asked = 1; asked <= 2; ++asked) {
            QVERIFY(!desk.window.close());
            QTRY_COMPARE(int(desk.messages.shown.size()), 2 * asked);
            QTRY_COMPARE(desk.messages.standing, 0);
            QTRY_COMPARE(desk.window.isVisible(), asked == 1);
        }
        QVERIFY(unloaded.size() == 1 && desk.messages.most == 1);
        QVERIFY(desk.messages.take().constLast().startsWith(u"Question: Attention: all changes will be cancelled!"_s));
        // An archive that cannot be opened is told, and its window is not seen.
        Desk damaged;
        damaged.comeToLife();
        damaged.test.write(u"Archivi/Fascie.zeb"_s, "damaged");
        damaged.entry("mnuFascieOr")->trigger();
        QVERIFY(!damaged.open("frmSettimana"));
        QTRY_VERIFY(damaged.messages.shown.size() >= 2);
        QVERIFY(damaged.messages.take().constFirst().contains(u"Fascie.zeb"_s));
    }
};

QTEST_MAIN(TestWatch)
#include "tst_gui_watch.moc"
