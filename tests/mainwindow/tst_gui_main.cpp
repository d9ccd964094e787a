#include "archives/Tables.h"
#include "mainwindow/MDIForm1.h"
#include "platform/PseudoTerminal.h"
#include "platform/SerialTransport.h"
#include "support/FakeMessages.h"
#include "support/Fixtures.h"
#include "support/RecordingVfs.h"
#include "texts/DateTimeText.h"

#include <QAction>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

#include <sqlite3.h>

namespace {

const QByteArray answer = interfaceBanner() + "\rRS_C CH:1 ENABLE\rVERSIONE 1.4\r";

/// Notes what the device is told about its RTS line.
struct NotingLine : SerialTransport {
    QStringList rtsTold;

    void setEnableLine(bool asserted) override
    {
        rtsTold.append(asserted ? u"asserted"_s : u"released"_s);
        SerialTransport::setEnableLine(asserted);
    }
};

/// The whole program with its window, and an interface that answers as long as it is told to.
struct Desk {
    explicit Desk(const QByteArray &settings = "COM=7\r\nLINGUA=2\r\nCHECK=1\r\n", const QString &password = {},
                  Messages *realMessages = nullptr)
        : used(realMessages ? *realMessages : messages)
    {
        test.addUsers({{u"1"_s, u"TX"_s, u"Rossi"_s, u"Mario"_s}});
        if (!password.isEmpty()) {
            Passwords passwords(test.archives);
            if (passwords.load() != Passwords::Fault::None ||
                passwords.set(Passwords::Type::Main, password) != Passwords::Fault::None)
                qFatal("no password");
        }
        // Of two lines the first counts.
        test.write(u"Impost.stp"_s, settings + "NUMEVOD=25\r\nCHECK=0\r\nPRN=-1\r\n");
        if (!interface.open() || program.prepare(2, {}))
            qFatal("the program cannot be prepared");
        QObject::connect(&interface, &PseudoTerminal::readyRead, [this] {
            asked += interface.read();
            if (answers && asked.endsWith("&IC"))
                interface.write(answer);
        });
        window.load();
    }

    void comeToLife()
    {
        window.findChild<QTimer *>(u"tmrShow"_s)->start(0);
        QTRY_VERIFY(window.isEnabled());
    }
    void pass(int seconds)
    {
        for (int i = 0; i < seconds; ++i) {
            clock.milliseconds += 1000;
            program.link().wake();
            QTest::qWait(1);
        }
    }
    QAction *entry(const char *name) { return window.findChild<QAction *>(QString::fromLatin1(name)); }
    QString panel(int number) { return label(number)->text(); }
    QString led() { return label(6)->property("file").toString(); }
    QLabel *label(int number) { return window.findChild<QLabel *>(u"StatusBar1.Panels(%1)"_s.arg(number)); }
    ChildWindow *open(const char *name) { return window.findChild<ChildWindow *>(QString::fromLatin1(name)); }
    void click(ChildWindow *on, const char *button)
    {
        QTest::mouseClick(on->findChild<QAbstractButton *>(QString::fromLatin1(button)), Qt::LeftButton);
    }
    /// At the keyboard, whatever has it.
    void type(const char *text)
    {
        for (const char *key = text; *key != 0; ++key)
            QTest::keyClick(window.windowHandle(), *key);
    }
    /// The operator closes the window, and agrees that supervision ends.
    void close()
    {
        messages.answers = {Messages::Answer::Yes};
        QVERIFY(!window.close() && window.isVisible());
        QTRY_VERIFY(!window.isVisible());
        QCOMPARE(messages.take(), QStringList{u"Question: "_s + program.texts()[OwnText::AskEndSupervision]});
    }

    TestFolder test;
    FakeClock clock;
    FakePrinters printers;
    FakeMessages messages;
    Messages &used;
    PseudoTerminal interface {
        test.directory.filePath(u"Porte/COM7"_s)
    };
    bool answers = true;
    QByteArray asked;
    NotingLine *line = nullptr;
    Program program{{test.directory.path()}, clock, printers, [this](const SerialPorts &ports) {
                        auto made = std::make_unique<NotingLine>();
                        line = made.get();
                        return std::make_unique<SerialControl>(ports, std::move(made));
                    }};
    MDIForm1 window{program, used};
};

const char *const onLine = "MULTIPROTOCOL INTERFACE ON LINE";
const char *const offLine = "MULTIPROTOCOL INTERFACE NOT ON LINE";
const char *const noPort = "THE CONFIGURED SERIAL PORT IS NOT AVAILABLE";

} // namespace

class TestMainWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gate();
    void alarm();
    void keyboardDuringTheAlarm();
    void portsThatCannotBeOpened_data();
    void portsThatCannotBeOpened();
    void firstPort();
    void endIsAsked();
    void liveView();
    void refusedCloseIsForgotten();
    void savedRegisterThatCannotBeRead();
    void restoredRegister();
    void eventsThatWait_data();
    void eventsThatWait();
    void editorsHoldTheProgramme();
    void receptionBehindABox();
    void faultsAtTheStart_data();
    void faultsAtTheStart();
};

void TestMainWindow::gate()
{
    Desk desk({"COM=7\r\nLINGUA=2\r\n"}, u"perch\u00E9"_s);
    QVERIFY(!desk.window.close()); // still loading
    desk.comeToLife();
    QTRY_VERIFY(desk.open("frmPassProg"));
    for (const char *name : {"mnuFile", "mnuExit", "mnuImpCom", "mnuAttPass", "mnuLingua", "mnuAbout"})
        QVERIFY2(!desk.entry(name)->isEnabled(), name);
    // A press that gets past the disabled menu does nothing either.
    for (const char *name : {"mnuImpCom", "mnuLingua", "mnuAttPass", "mnuUtility", "mnuAbout", "mnuExit"}) {
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
    QTRY_COMPARE(desk.panel(5), QLatin1String(onLine));
    for (const char *name : {"mnuFile", "mnuAnagrafica", "mnuExit", "mnuImpCom"})
        QVERIFY2(desk.entry(name)->isEnabled(), name);
    QCOMPARE(desk.entry("mnuAttPass")->text(), u"Disable &Main Password"_s);

    // Removed with the same password, the next start is free.
    desk.entry("mnuAttPass")->trigger();
    QVERIFY(!desk.entry("mnuAnagrafica")->isEnabled());
    // Only its two buttons close the password window, and the end that it refused does not come with it.
    desk.messages.answers = {Messages::Answer::Yes};
    QVERIFY(!desk.window.close());
    QTRY_COMPARE(desk.messages.standing, 0);
    QCOMPARE(desk.messages.take().size(), 1);
    ask = desk.open("frmPassProg");
    ask->findChild<QLineEdit *>(u"txtPass"_s)->setText(u"perch\u00E9"_s);
    desk.click(ask, "cmdOk");
    QTRY_VERIFY(desk.entry("mnuAnagrafica")->isEnabled());
    QCOMPARE(desk.entry("mnuAttPass")->text(), u"Enable &Main Password"_s);
    Passwords stored(desk.test.archives);
    QVERIFY(stored.load() == Passwords::Fault::None && !stored.isSet(Passwords::Type::Main));
    QVERIFY(desk.window.isVisible());
}

void TestMainWindow::alarm()
{
    Desk desk;
    QCOMPARE(desk.led(), u"Led_G.bmp"_s);
    desk.comeToLife();
    QTRY_COMPARE(desk.panel(5), QLatin1String(onLine));
    QCOMPARE(desk.led(), u"Led_V.bmp"_s);
    desk.answers = false;
    desk.pass(64);
    QTRY_VERIFY(desk.open("frmMessage"));
    QVERIFY(desk.window.findChild<QTimer *>(u"tmrFlash"_s)->isActive());
    // Nothing else is told until the operator has closed it.
    QCOMPARE(desk.panel(5), QLatin1String(onLine));
    QCOMPARE(desk.led(), u"Led_V.bmp"_s);
    desk.click(desk.open("frmMessage"), "cmdOk");
    QTRY_COMPARE(desk.panel(5), QLatin1String(offLine));
    QCOMPARE(desk.led(), u"Led_R.bmp"_s);
    QVERIFY(desk.label(6)->toolTip().contains(u"not on line"_s));
    QVERIFY(!desk.window.findChild<QTimer *>(u"tmrFlash"_s)->isActive());

    desk.answers = true;
    desk.pass(3);
    desk.interface.write(QByteArray("\0", 1));
    QTRY_COMPARE(desk.led(), u"Led_V.bmp"_s);
}

/// The alarm stands in front and flashes, and what the guard types goes on where it went.
void TestMainWindow::keyboardDuringTheAlarm()
{
    Desk desk;
    desk.comeToLife();
    QVERIFY(QTest::qWaitForWindowActive(&desk.window));
    QTRY_COMPARE(desk.panel(5), QLatin1String(onLine));
    const auto alarm = [&desk] {
        desk.interface.close();
        QTRY_VERIFY(desk.open("frmMessage"));
        QCOMPARE(desk.panel(5) + desk.led(), QLatin1String(noPort) + u"Led_R.bmp"_s);
        QCOMPARE(desk.label(6)->accessibleName().toUpper(), desk.panel(5));
        QVERIFY(QMetaObject::invokeMethod(desk.window.findChild<QTimer *>(u"tmrFlash"_s), "timeout"));
    };
    const auto portReturns = [&desk] {
        QVERIFY(desk.interface.open().ok());
        desk.pass(5);
        QTRY_COMPARE(desk.panel(5), QLatin1String(onLine));
        QTRY_VERIFY(!desk.open("frmMessage"));
    };
    const auto turnAndClose = [&desk] {
        QTest::keyClick(desk.window.windowHandle(), Qt::Key_Tab, Qt::ControlModifier);
        desk.type("\r");
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
    QVERIFY(QMetaObject::invokeMethod(desk.window.findChild<QTimer *>(u"tmrFlash"_s), "timeout"));
    desk.type("gelis");
    QCOMPARE(first->text(), u"De Angelis"_s);
    const ChildWindow *message = desk.open("frmMessage");
    QVERIFY(message);
    const QWidget *frame = message->parentWidget();
    QVERIFY(message->isAncestorOf(desk.window.childAt(frame->geometry().center())));
    // A click closes it and leaves the keyboard where it was; by keys it comes back there.
    desk.click(desk.open("frmMessage"), "cmdOk");
    QTRY_VERIFY(!desk.open("frmMessage"));
    QVERIFY(first->hasFocus());
    portReturns();
    alarm();
    // There and back again: the frame shows who has the keyboard.
    QTest::keyClick(desk.window.windowHandle(), Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(desk.open("frmMessage")->parentWidget()->windowState(), Qt::WindowActive);
    first->setFocus();
    QCOMPARE(desk.open("frmMessage")->parentWidget()->windowState(), Qt::WindowNoState);
    turnAndClose();
    QTRY_VERIFY(first->hasFocus());
    // The window that was in front before comes back, not the one that was opened before.
    desk.entry("mnuAbout")->trigger();
    desk.entry("mnuAttPass")->trigger();
    desk.open("frmInsPass")->unload();
    QTRY_COMPARE(desk.window.findChild<QMdiArea *>()->activeSubWindow()->widget(), desk.open("frmInfo"));
}

void TestMainWindow::portsThatCannotBeOpened_data()
{
    const Rows<bool, QString> row("isTaken", "told");
    row("in use", true, u"Serial port is already open!\r\nConfigure another serial port!"_s);
    row("away", false,
        u"The serial port COM7 cannot be opened: does not exist\r\nIt is tried again every five seconds."_s);
}

void TestMainWindow::portsThatCannotBeOpened()
{
    QFETCH(bool, isTaken);
    QFETCH(QString, told);
    Desk desk;
    SerialControl other(desk.program.ports());
    other.setCommPort(7);
    if (isTaken)
        QVERIFY(other.setPortOpen(true).ok());
    else
        desk.interface.close();
    desk.program.notices().post(Icon::Critical, {OwnText::EventsLost, {u"3"_s}, {}});
    desk.comeToLife();
    QTRY_COMPARE(desk.panel(5), QLatin1String(noPort));
    QCOMPARE(desk.led(), u"Led_R.bmp"_s);
    QTRY_COMPARE(desk.messages.shown.size(), 2);
    desk.pass(20);
    QCOMPARE(desk.messages.take(), QStringList({u"Critical: Events lost: 3"_s, u"Critical: "_s + told}));
    QCOMPARE(desk.messages.most, 1);
}

void TestMainWindow::firstPort()
{
    Desk desk("COM=0\r\nLINGUA=2\r\n");
    desk.comeToLife();
    QTRY_VERIFY(desk.open("frmImpCom"));
    QVERIFY(!desk.entry("mnuStrumenti")->isEnabled() && !desk.entry("mnuImpCom")->isEnabled());
    QVERIFY(!desk.window.close());
    QTRY_VERIFY(desk.open("frmImpCom")->isEnabled());
    auto *seven = desk.open("frmImpCom")->findChild<QRadioButton *>(u"Com(6)"_s);
    QVERIFY(seven->toolTip().contains(desk.interface.device()));
    seven->click();
    desk.click(desk.open("frmImpCom"), "cmdOk");
    QTRY_COMPARE(desk.panel(5), QLatin1String(onLine));
    QVERIFY(desk.entry("mnuStrumenti")->isEnabled());
    QVERIFY(desk.test.read(u"Impost.stp"_s).startsWith("COM=7\r\n"));

    // Opened again and cancelled, the link comes back as it was; a second choice of the entry opens no second window.
    desk.entry("mnuImpCom")->trigger();
    desk.entry("mnuImpCom")->trigger();
    QVERIFY(!desk.program.serial().portOpen());
    QCOMPARE(desk.panel(5) + desk.led(), u"Led_G.bmp"_s);
    QTRY_VERIFY(desk.open("frmImpCom")->isEnabled());
    desk.asked.clear();
    desk.click(desk.open("frmImpCom"), "cmdAnnulla");
    QTRY_COMPARE(desk.asked, QByteArray("&IC"));
    QVERIFY(!desk.open("frmImpCom"));
}

/// Supervision ends when the operator says so, and without a word when he is not there to be asked.
void TestMainWindow::endIsAsked()
{
    Desk desk;
    desk.comeToLife();
    QTRY_COMPARE(desk.panel(5), QLatin1String(onLine));
    for (int attempt = 0; attempt < 2; ++attempt)
        desk.entry("mnuExit")->trigger();
    QTRY_COMPARE(desk.messages.standing, 0);
    QCOMPARE(desk.messages.take().size(), 1);
    QVERIFY(desk.window.isVisible());
    desk.close();
    // A log-out that comes to its end, a signal, and a port that is closed.
    Desk session;
    session.comeToLife();
    QTRY_COMPARE(session.panel(5), QLatin1String(onLine));
    QVERIFY(session.window.closeForSession(true));
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(qApp, &quit);
    QVERIFY(!session.window.isVisible());
    Desk other;
    other.comeToLife();
    QTRY_COMPARE(other.panel(5), QLatin1String(onLine));
    other.entry("mnuImpCom")->trigger();
    QTRY_VERIFY(other.open("frmImpCom")->isEnabled());
    QVERIFY(other.window.close());
}

/// From the line to the grid, with the name, while the view is open.
void TestMainWindow::liveView()
{
    Desk desk("COM=7\r\nLINGUA=2\r\nNUMEVOD=25\r\n");
    desk.comeToLife();
    QTRY_COMPARE(desk.panel(5), QString::fromLatin1(onLine));
    QVERIFY(desk.entry("mnuNumEvOdVis")->text().endsWith(u" (25)"_s));
    desk.entry("mnuEventiOdierni")->trigger();
    ChildWindow *view = desk.open("frmEventiOdierni");
    const auto *grid = view->findChild<QTableView *>(u"flxgrdEventi"_s);
    QTRY_COMPARE(grid->model()->rowCount(), 25);
    desk.interface.write("R/A-000000001X..\r\n");
    view->findChild<QTimer *>(u"tmrRefresh"_s)->setInterval(50);
    QTRY_COMPARE(grid->model()->index(0, 2).data().toString(), u"Rossi"_s);
    desk.close();
}

/// A close that was refused while the register loads must not end the program when another window closes later.
void TestMainWindow::refusedCloseIsForgotten()
{
    Desk desk;
    desk.comeToLife();
    desk.entry("mnuAbout")->trigger();
    desk.entry("mnuUtenti")->trigger();
    ChildWindow *users = desk.open("frmLstUtenti");
    QVERIFY(users && !users->isEnabled());
    desk.messages.answers = {Messages::Answer::Yes};
    QVERIFY(!desk.window.close());
    QTRY_COMPARE(desk.messages.standing, 0);
    QCOMPARE(desk.messages.take().size(), 1);
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

/// Nobody is decided about by the users of before; the events wait until the register can be read.
void TestMainWindow::savedRegisterThatCannotBeRead()
{
    Desk desk;
    desk.comeToLife();
    QTRY_COMPARE(desk.panel(5), QString::fromLatin1(onLine));
    desk.test.addUsers({{u"22"_s, u"TX"_s, u"Verdi"_s, u"Bea"_s}});
    Result<Database> other = desk.test.archives.open(ArchiveName::Users, Database::Use::Safe);
    QVERIFY(other && other.value().execute("BEGIN EXCLUSIVE; UPDATE Utenti SET Note='x'"));
    desk.program.reloadUsers();
    desk.interface.write("R/A-000000022X..\r\n");
    QTRY_COMPARE(desk.program.road().undecided(), 1);
    QVERIFY(other.value().execute("ROLLBACK"));
    desk.program.tmrRefresh.start(0);
    QTRY_COMPARE(desk.test.rows(ArchiveName::events(DataFile(desk.clock.date())), u"SELECT Codice FROM Eventi"_s),
                 QStringList{u"22"_s});
    QTRY_COMPARE(desk.messages.shown.size(), 1);
    QVERIFY(desk.messages.take().first().startsWith(u"Critical: The users register"_s));
}

/// The backup is offered first, behind the users password; its users count from the save on.
void TestMainWindow::restoredRegister()
{
    Desk desk;
    TestFolder old;
    old.addUsers({{u"2"_s, u"TX"_s, u"Verdi"_s}});
    const QString users = QStringView(ArchiveName::Users).toString();
    const QString backup = QStringView(ArchiveName::UsersBackup).toString();
    QVERIFY(QDir(desk.test.directory.path()).mkpath(u"Archivi/Backup"_s));
    desk.test.write(backup, old.read(users));
    QVERIFY(desk.program.passwords().set(Passwords::Type::Users, u"otra"_s) == Passwords::Fault::None);
    desk.comeToLife();
    QTRY_COMPARE(desk.panel(5), QLatin1String(onLine));
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
    const QRegularExpression title(u"^User list of ../../.... ..:..:.., restored from 'Archivi/Backup/AnaBack.zeb'$"_s);
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

void TestMainWindow::eventsThatWait_data()
{
    const Rows<bool, QStringList> row("bySystem", "told");
    const QString question = u"Question: Events that cannot be stored and will be lost: 2. Close the program?"_s;
    row("the operator ends the program", false, {question, question, u"Critical: Events lost: 2"_s});
    row("the system ends it", true, {u"Critical: Events lost: 2"_s});
}

/// What only memory holds is not given up unasked, and what is lost is told while there is somebody to read it.
void TestMainWindow::eventsThatWait()
{
    QFETCH(bool, bySystem);
    RecordingVfs vfs;
    Desk desk;
    desk.comeToLife();
    QTRY_COMPARE(desk.panel(5), QLatin1String(onLine));
    if (!bySystem)
        desk.program.link().suspend();
    const auto *remark = desk.window.findChild<QLabel *>(u"StatusBar1.Remark"_s);
    const auto comes = [&desk] { return desk.program.road().RegistraEvento("R/A-000000001X..\r"); };
    QVERIFY(comes() && !remark->isVisible());
    {
        Result<Database> other =
            desk.test.archives.open(ArchiveName::events(DataFile(desk.clock.date())), Database::Use::Safe);
        QVERIFY(other && other.value().execute("BEGIN IMMEDIATE"));
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
        QTRY_COMPARE(desk.messages.answers.size(), 1);
        QTest::qWait(20);
        QVERIFY(desk.window.isVisible() && !desk.window.close());
    }
    QTRY_COMPARE(unloaded.size(), 1);
    QTEST(desk.messages.take(), "told");
    // No light was green beside that.
    QCOMPARE(desk.panel(5) + desk.led(), u"Led_G.bmp"_s);
    vfs.refusal = 0;
}

void TestMainWindow::editorsHoldTheProgramme()
{
    Desk desk;
    desk.comeToLife();
    QTRY_COMPARE(desk.panel(5), QLatin1String(onLine));
    QCOMPARE(desk.label(3)->property("file").toString(), u"Time_Dis.bmp"_s);
    const auto told = [&desk] { return std::exchange(desk.line->rtsTold, {}); };
    QCOMPARE(told(), QStringList{u"asserted"_s});
    // A band for this Friday: it counts as soon as its editor closes, and not before.
    desk.entry("mnuFascieOr")->trigger();
    desk.entry("mnuFascieOr")->trigger();
    QCOMPARE(desk.window.findChildren<ChildWindow *>(u"frmSettimana"_s).size(), 1);
    QCOMPARE(desk.open("frmSettimana")->focusWidget()->objectName(), u"dbgrdSettimana"_s);
    desk.open("frmSettimana")->findChild<QLineEdit *>(u"txtOraIn"_s)->setText(u"07:00"_s);
    desk.open("frmSettimana")->findChild<QLineEdit *>(u"txtOraFine"_s)->setText(u"07:45"_s);
    desk.click(desk.open("frmSettimana"), "cmdAggiungi");
    QVERIFY(QMetaObject::invokeMethod(&desk.program.tmrRefresh, "timeout"));
    QCOMPARE(told(), QStringList());
    desk.click(desk.open("frmSettimana"), "cmdOk");
    QTRY_VERIFY(!desk.open("frmSettimana"));
    QCOMPARE(told(), QStringList{u"released"_s});
    QCOMPARE(desk.label(3)->property("file").toString(), u"Time_En.bmp"_s);
    // The band ends with the tick after its last minute.
    desk.clock.moment = desk.clock.moment.addSecs(59);
    QVERIFY(QMetaObject::invokeMethod(&desk.program.tmrRefresh, "timeout"));
    desk.clock.moment = desk.clock.moment.addSecs(1);
    QVERIFY(QMetaObject::invokeMethod(&desk.program.tmrRefresh, "timeout"));
    QCOMPARE(told(), QStringList({u"released"_s, u"asserted"_s}));
    // Closing the program asks for the changes, after the end of supervision; No keeps it open, Yes lets it close.
    desk.entry("mnuProgFerie")->trigger();
    desk.open("frmFerie")->findChild<QLineEdit *>(u"txtDalGiorno"_s)->setText(u"05/03/2004"_s);
    desk.click(desk.open("frmFerie"), "cmdAggiungi");
    QSignalSpy unloaded(&desk.window, &MDIForm1::unloaded);
    desk.messages.answers = {Messages::Answer::Yes, Messages::Answer::No, Messages::Answer::Yes, Messages::Answer::Yes};
    for (int asked = 1; asked <= 2; ++asked) {
        QVERIFY(!desk.window.close());
        QTRY_COMPARE(int(desk.messages.shown.size()), 2 * asked);
        QTest::qWait(20);
        QCOMPARE(desk.window.isVisible(), asked == 1);
    }
    QTRY_COMPARE(unloaded.size(), 1);
    QCOMPARE(desk.messages.most, 1);
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

void TestMainWindow::receptionBehindABox()
{
    Messages real;
    Desk desk("COM=7\r\nLINGUA=2\r\nCHECK=1\r\n", {}, &real);
    QSignalSpy stored(&desk.program.log(), &EventLog::stored);
    desk.comeToLife();
    QTRY_COMPARE(desk.panel(5), QLatin1String(onLine));
    desk.program.notices().post(Icon::Critical, {OwnText::EventsLost, {u"<b>3</b>"_s}, {}});
    QTRY_VERIFY(desk.window.findChild<QMessageBox *>());
    auto *box = desk.window.findChild<QMessageBox *>();
    QVERIFY(box->text().endsWith(u"<b>3</b>"_s) && box->textFormat() == Qt::PlainText);
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
    box = desk.window.findChild<QMessageBox *>();
    // Whoever presses Enter unread goes on supervising.
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_VERIFY(!desk.window.findChild<QMessageBox *>());
    QVERIFY(desk.window.isVisible() && !desk.window.close());
    desk.window.findChild<QMessageBox *>()->button(QMessageBox::Yes)->click();
    QTRY_COMPARE(unloaded.size(), 1);
    // No bands, not enabled: told as the first thing after opening, and let go at the end.
    QCOMPARE(desk.line->rtsTold, QStringList({u"asserted"_s, u"released"_s}));
    const QString day = ArchiveName::events(u"05-03-2004"_s);
    QVERIFY(!desk.test.folder.exists(day + u"-wal"_s));
    QCOMPARE(desk.test.rows(day, u"SELECT Codice FROM Eventi"_s).size(), 2);
}

void TestMainWindow::faultsAtTheStart_data()
{
    const Rows<QByteArray, QString> row("sql", "told");
    row("no row", "DELETE FROM Password", u"Critical: Corrupt File Password!"_s);
    row("no table", "DROP TABLE Password", u"Critical: Missing or damaged file!\r\nReinstall!"_s);
}

void TestMainWindow::faultsAtTheStart()
{
    QFETCH(QByteArray, sql);
    QFETCH(QString, told);
    Desk desk;
    QVERIFY(desk.test.archives.open(ArchiveName::Users, Database::Use::Safe).value().execute(sql).ok());
    QSignalSpy unloaded(&desk.window, &MDIForm1::unloaded);
    desk.window.findChild<QTimer *>(u"tmrShow"_s)->start(0);
    QTRY_COMPARE(unloaded.size(), 1);
    QCOMPARE(desk.messages.take(), QStringList{told});
    QCOMPARE(desk.asked, QByteArray());
}

QTEST_MAIN(TestMainWindow)
#include "tst_gui_main.moc"
