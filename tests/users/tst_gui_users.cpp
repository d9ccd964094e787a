#include "support/RecordingVfs.h"
#include "support/Windows.h"
#include "users/frmLstUtenti.h"
#include "widgets/UserCombo.h"

namespace {

const QString lost = u"Question: Attention: all changes will be cancelled!\r\nContinue ?"_s;
const QString toSave = u"Question: Save the changes  to the user list?"_s;

/// The register of three users, two of whom have the same code, with English texts.
struct Desk : Office {
    explicit Desk(int protocol = 3, const QList<QStringList> &users = {listOf("5,TX,Rossi,Ada"),
                                                                       {u"5"_s, u"DKS"_s, u"Neri"_s},
                                                                       listOf("70005,TX,Verdi,Bea")})
    {
        test.addUsers(users);
        open(protocol);
        if (!QTest::qWaitFor([this] { return window->isEnabled(); }))
            qFatal("the users do not come");
        window->activateWindow(); // the notice has gone
    }
    void open(int protocol)
    {
        window = new frmLstUtenti(texts, messages, test.archives, {[protocol] { return Protocol{protocol}; }, false});
        grid = window->findChild<QTableView *>();
        QObject::connect(window.data(), &frmLstUtenti::Chiudi, [this](frmLstUtenti::Esito outcome) {
            closed =
                QString::number(static_cast<int>(outcome)) + test.files(u"Archivi"_s).filter(u"$"_s).join(QString());
        });
        QObject::connect(window.data(), &frmLstUtenti::openChild, [this](ChildWindow *opened) {
            child = opened;
            opened->show();
        });
        window->show();
        if (!window->open())
            qFatal("the register does not open");
    }
    ~Desk() { delete window; }

    /// What the operator does: "name" clicks a button of the child window or else of the register, "name=text" fills a
    /// box, "@row,column" goes to a cell, "@=text" types into it, "R5" and "K5" are codes that the line delivers,
    /// "Yes", "No" and "Cancel" answer the next question, "X" closes by the frame, "unload" is the program's own wish.
    void enter(const QString &input)
    {
        for (const QString &one : input.split(u' ', Qt::SkipEmptyParts)) {
            QWidget *on = top();
            static const QStringList answers = {u"Yes"_s, u"No"_s, u"Cancel"_s};
            if (answers.contains(one))
                messages.answers.append(static_cast<Messages::Answer>(answers.indexOf(one)));
            else if (one.startsWith(u"@="))
                type(one.mid(2));
            else if (one.startsWith(u'@'))
                grid->setCurrentIndex(grid->model()->index(one.mid(1, 1).toInt(), one.mid(3).toInt()));
            else if (one[0] == u'R' || one[0] == u'K')
                receive(one.mid(1), one[0] == u'R' ? u"TX"_s : u"DKS"_s);
            else if (one == u"Esc")
                QTest::keyClick(grid->viewport()->findChild<QLineEdit *>(), Qt::Key_Escape);
            else if (one == u"unload")
                window->unload();
            else if (one == u"X")
                on->close();
            else if (auto *box = on->findChild<QLineEdit *>(one.section(u'=', 0, 0)))
                (box->clear(), QTest::keyClicks(box, one.section(u'=', 1)));
            else if (auto *combo = on->findChild<UserCombo *>(one.section(u'=', 0, 0)))
                (combo->setFocus(), combo->lineEdit()->selectAll(),
                 QTest::keyClicks(combo->lineEdit(), one.section(u'=', 1)));
            else
                on->findChild<QAbstractButton *>(one)->click();
            settle();
        }
    }
    /// The first key opens the cell, which takes the others.
    void type(const QString &text)
    {
        QTest::keyClick(grid, text[0].toLatin1());
        if (auto *editor = grid->viewport()->findChild<QLineEdit *>())
            QTest::keyClicks(editor, text.mid(1));
    }
    void receive(const QString &code, const QString &type)
    {
        window->recordReceived({code, type == u"TX" ? CodeType::Transmitter : CodeType::Keypad, {}});
        const auto *box = top()->findChild<QLineEdit *>(u"txtCodice"_s);
        (void)QTest::qWaitFor([&] { return box && box->text() == code; }, 300);
    }
    /// Until answers have come, and tasks and the windows that are closing have ended.
    void settle()
    {
        QCoreApplication::processEvents();
        (void)QTest::qWaitFor([this] { return !window || window->isEnabled() || (child && child->isEnabled()); }, 2000);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    /// "row,column" of the current cell, its user, texts of the boxes and of the message line.
    QString state() const
    {
        const QModelIndex cell = grid->currentIndex();
        QStringList state = {u"%1,%2"_s.arg(cell.row()).arg(cell.column())};
        for (int column = 0; column < cell.model()->columnCount(); ++column)
            state.append(cell.siblingAtColumn(column).data().toString());
        for (const auto *box : window->findChildren<UserCombo *>())
            state.append(box->currentText());
        return state.join(u'|') + top()->findChild<QLabel *>(u"lblMessage"_s)->text();
    }
    QWidget *top() const { return child ? static_cast<QWidget *>(child) : window; }
    QString stored(QStringView archive = ArchiveName::Users)
    {
        return test.rows(archive, u"SELECT Codice, Tipo, Cognome FROM Utenti ORDER BY Codice"_s).join(u',');
    }

    QString closed;
    QPointer<frmLstUtenti> window;
    QPointer<ChildWindow> child;
    QTableView *grid = nullptr;
};

} // namespace

class TestGuiUsers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void work_data();
    void work();
    void ends_data();
    void ends();
    void recognitionEnds();
    void faults();
    void cutOff();
};

void TestGuiUsers::work_data()
{
    const Rows<QString, QString, QString> row("input", "state", "messages");
    const QString first = u"0,0|5|TX|Rossi|Ada|||"_s, exists = u"Information: Code already exists!"_s;
    const QString invalid = u"Exclamation: Invalid code!"_s;
    row("opened", {}, first + u'|', {});
    row("cell", u"@1,2 @=Bianchi cmdStampa"_s, u"1,2|5|DKS|Bianchi|||||"_s, {});
    row("code is locked", u"@2,5 @=1"_s, u"2,5|70005|TX|Verdi|Bea||0005||"_s, {});
    row("same code, the other user", u"@1,0 cmdModifica txtCodice=6 optTipo(1) cmdOk"_s, u"1,0|6|DKS|Neri|||||"_s, {});
    row("own code", u"@1,0 cmdModifica txtCodice=5 optTipo(1) cmdOk cmdAnnulla"_s, u"1,0|5|DKS|Neri|||||"_s, exists);
    row("new, typed", u"cmdNuovo txtCodice=0a09 cmdOk"_s, u"3,0|9|TX||||||"_s, {});
    row("new, transmitter, then another", u"cmdNuovo R70006 K7 cmdOk"_s, u"3,0|70006|TX||||0006||"_s, {});
    row("new, keypad", u"cmdNuovo K70005 cmdOk"_s, u"3,0|70005|DKS||||0005||"_s, {});
    row("zeros", u"cmdNuovo txtCodice=000 cmdOk X"_s, first + u'|', invalid);
    row("too high", u"cmdNuovo txtCodice=251658240 cmdOk optTipo(1) txtCodice=1000000 cmdOk cmdAnnulla"_s, first + u'|',
        u"Information:  The code cannot exceed 251'658'239|Information: The keyboard code cannot exceed 999'999"_s);
    row("run", u"cmdPrecod txtNumTrasm=3x txtCodPart=4 cmdOK"_s, u"0,0|4|TX||||||"_s,
        u"Exclamation: Not all requested codes have been added!"_s);
    row("run, number first", u"cmdPrecod txtCodPart=4"_s, first + u"|INSERT THE NUMBER OF TRANSMITTERS!"_s, {});
    row("run, start above 0", u"cmdPrecod txtNumTrasm=1 cmdOK"_s,
        first + u"|The number of codes must be greater than 0!"_s, {});
    row("run, too high", u"cmdPrecod txtNumTrasm=9 txtCodPart=251658231"_s,
        first + u"|MAXIMUM NUMBER OF CODES EXCEEDED 251658239!"_s, {});
    row("run, cancelled", u"cmdPrecod txtCodPart=4 cmdAnnulla"_s, first + u'|', {});
    row("deleted", u"@2,0 Yes cmdElimina"_s, u"1,0|5|DKS|Neri|||||"_s, u"Question: Delete user Verdi Bea ?"_s);
    row("found by surname", u"dbcmbCognome=Verdi"_s, u"2,0|70005|TX|Verdi|Bea||0005|Verdi|Bea"_s, {});
    row("found by a new name", u"@1,3 @=Zoe dbcmbNome=Zoe"_s, u"1,3|5|DKS|Neri|Zoe|||Neri|Zoe"_s, {});
    row("recognised, the current one", u"@1,2 cmdRicTx R5"_s, u"1,0|5|DKS|Neri|||||"_s, {});
    row("not recognised", u"@1,1 cmdRicTx K8"_s, u"1,0|5|DKS|Neri|||||"_s,
        u"Information: The code DKS 8 is still not in the data list!"_s);
    row("no duplicates", u"cmdDoppioni"_s, first + u'|', u"Information: No doubles found!"_s);
    row("duplicates", u"cmdNuovo txtCodice=80005 cmdOk @2,0 cmdDoppioni cmdOk"_s, u"2,0|70005|TX|Verdi|Bea||0005||"_s,
        {});
}

void TestGuiUsers::work()
{
    QFETCH(QString, input);
    Desk desk;
    desk.enter(input);
    if (input.contains(u"@2,5"))
        QVERIFY(!desk.grid->viewport()->findChild<QLineEdit *>());
    QTEST(desk.messages.take().join(u'|'), "messages");
    QTEST(desk.state(), "state");
}

/// Each way out, first with nothing changed and then with a cell that is still being edited.
void TestGuiUsers::ends_data()
{
    const Rows<QString, QString, QString> row("way", "closed", "question");
    row("close box", u"X"_s, u"2"_s, {});
    row("cancel", u"cmdChiudi"_s, u"2"_s, {});
    row("close box, No", u"@0,2 @=Gialli No X"_s, u"2"_s, toSave);
    row("close box, Cancel", u"@0,2 @=Gialli Cancel X"_s, {}, toSave);
    row("close box, Yes", u"@0,2 @=Gialli Yes X"_s, u"1"_s, toSave);
    row("cancel, No", u"@0,2 @=Gialli No cmdChiudi"_s, {}, lost);
    row("cancel, Yes", u"@0,2 @=Gialli Yes cmdChiudi"_s, u"2"_s, lost);
    row("save", u"@0,2 @=Gialli cmdSalva"_s, u"1"_s, {});
    row("typed and taken back", u"@0,2 @=G Esc No X"_s, u"2"_s, toSave);
    row("by the program", u"@0,2 @=Gialli unload"_s, u"2"_s, {});
    row("after a run of nothing", u"cmdPrecod txtNumTrasm=1 txtCodPart=5 cmdOK No X"_s, u"2"_s,
        u"Exclamation: Not all requested codes have been added!|"_s + toSave);
}

void TestGuiUsers::ends()
{
    QFETCH(QString, closed);
    QFETCH(QString, way);
    Desk desk;
    QSignalSpy refused(desk.window, &ChildWindow::closeRefused);
    desk.enter(way);
    QTEST(desk.messages.take().join(u'|'), "question");
    QCOMPARE(desk.closed, closed);
    QCOMPARE(desk.window.isNull(), !closed.isEmpty());
    QCOMPARE(refused.count(), closed.isEmpty() && way.endsWith(u'X') ? 1 : 0);
    const QString old = u"5|TX|Rossi,5|DKS|Neri,70005|TX|Verdi"_s;
    QCOMPARE(desk.stored(), closed == u"1" ? u"5|TX|Gialli,5|DKS|Neri,70005|TX|Verdi"_s : old);
    QCOMPARE(desk.stored(ArchiveName::UsersBackup), closed == u"1" ? old : u"FAULT 0"_s);
}

void TestGuiUsers::recognitionEnds()
{
    Desk desk;
    const auto *button = control(desk.window, u"cmdRicTx"_s);
    desk.enter(u"cmdRicTx"_s);
    QVERIFY(!button->isEnabled());
    control<QTimer>(desk.window, u"tmrRicOn"_s)->setInterval(0);
    QTRY_VERIFY(button->isEnabled());
    // The code is the dialog's, which has taken over.
    desk.enter(u"cmdRicTx cmdNuovo R9"_s);
    QCOMPARE(control<QLineEdit>(desk.child, u"txtCodice"_s)->text(), u"9"_s);
    Desk empty(0, {});
    empty.enter(u"cmdModifica cmdElimina cmdRicTx cmdStampa"_s);
    QCOMPARE(empty.messages.take(), QStringList(4, u"Information: No registered users!"_s));
}

/// What cannot be stored is told, and the work stays.
void TestGuiUsers::faults()
{
    RecordingVfs vfs;
    Desk desk(15);
    vfs.refusal = SQLITE_FULL;
    desk.enter(u"@0,2 @=Gialli cmdSalva cmdPrecod txtNumTrasm=2 txtCodPart=7 cmdOK X"_s);
    vfs.refusal = 0;
    QCOMPARE(
        desk.messages.take(),
        QStringList(2, u"Critical: The change to the archive 'Archivi/Anagrafico.zeb' cannot be made: disk full"_s));
    QCOMPARE(desk.state().section(u'|', 0, 3), u"0,2|5|TX|Rossi"_s);
    desk.enter(u"@0,2 @=Gialli"_s);
    desk.test.disk.stopAt = 0;
    desk.enter(u"cmdDoppioni Yes X cmdSalva"_s);
    const QString notSaved =
        u"Critical: The changes to the archive 'Archivi/Anagrafico.zeb' cannot be saved: read or write error"_s;
    QCOMPARE(desk.messages.take(),
             (QStringList{u"Critical: The file 'RepDoppioni.txt' cannot be written: read or write error"_s, toSave,
                          notSaved, notSaved}));
    desk.test.disk.stopAt = -1;
    desk.enter(u"cmdSalva"_s);
    QCOMPARE(desk.closed + desk.stored(), u"15|TX|Gialli,5|DKS|Neri,70005|TX|Verdi"_s);
}

/// The window goes in the middle of each of its tasks, and with a window of its own open.
void TestGuiUsers::cutOff()
{
    QList<QStringList> many;
    for (int i = 1; i <= 8'000; ++i)
        many.append({QString::number(i), u"TX"_s});
    for (const char *task : {"", "cmdDoppioni", "cmdNuovo", "cmdPrecod"}) {
        for (const bool isUnloaded : {true, false}) {
            Desk desk(15, many);
            if (*task == '\0') {
                desk.window->unload();
                desk.settle();
                desk.open(15);
                while (!desk.window->findChild<QWidget *>(u"frmRicercapr"_s))
                    QCoreApplication::processEvents();
            } else {
                control(desk.window, QLatin1String(task))->click();
            }
            if (QLatin1String(task) == u"cmdPrecod"_s) {
                control<QLineEdit>(desk.child, u"txtNumTrasm"_s)->setText(u"9999"_s);
                control<QLineEdit>(desk.child, u"txtCodPart"_s)->setText(u"30000"_s);
                control(desk.child, u"cmdOK"_s)->click();
            }
            QVERIFY2(!desk.window->isEnabled() && (desk.window->close(), desk.window), task);
            isUnloaded ? desk.window->unload() : delete desk.window;
            QTRY_VERIFY(!desk.window && !desk.child);
            QCOMPARE(desk.test.files(u"Archivi"_s).filter(QRegularExpression(u"[$]|-"_s)), QStringList());
        }
    }
}

QTEST_MAIN(TestGuiUsers)
#include "tst_gui_users.moc"
