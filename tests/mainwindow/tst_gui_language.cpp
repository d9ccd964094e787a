#include "support/Desk.h"

#include <QAbstractItemModel>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QHeaderView>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>

namespace {

/// A manual stays at its page, while one that is opened begins with the section of the language.
const QRegularExpression pageNumber(u"\\d+ /"_s);

/// All that a window shows and a screen reader says of it, a line for each control.
QStringList wordsOf(const QWidget *window)
{
    QStringList all;
    for (const QWidget *part : QList<const QWidget *>{window} + window->findChildren<const QWidget *>()) {
        QStringList words = {part->windowTitle(), part->toolTip(), part->accessibleName(),
                             part->accessibleDescription()};
        if (const auto *label = qobject_cast<const QLabel *>(part))
            words.append(QString(label->text()).remove(pageNumber));
        else if (const auto *button = qobject_cast<const QAbstractButton *>(part))
            words.append(button->text());
        else if (const auto *group = qobject_cast<const QGroupBox *>(part))
            words.append(group->title());
        else if (const auto *edit = qobject_cast<const QLineEdit *>(part))
            words.append(edit->text());
        else if (const auto *combo = qobject_cast<const QComboBox *>(part))
            for (int i = 0; i < combo->count(); ++i)
                words.append(combo->itemText(i));
        else if (const auto *grid = qobject_cast<const QTableView *>(part))
            for (int column = 0; column < grid->model()->columnCount(); ++column)
                for (const int role : {int(Qt::DisplayRole), int(Qt::AccessibleTextRole)}) {
                    words.append(grid->model()->headerData(column, Qt::Horizontal, role).toString());
                    words.append(grid->model()->index(0, column).data(role).toString());
                }
        words.removeAll(QString());
        if (!words.isEmpty())
            all.append(part->objectName() + u": "_s + words.join(u'|'));
    }
    return all;
}

/// The whole program with what its windows show.
struct Tower : Desk {
    Tower() : Desk("COM=7\r\nLINGUA=2\r\nCHECK=0\r\n")
    {
        test.addEvents(u"05-03-2004"_s, {{u"1"_s, u"TX"_s, u"A"_s, u"X"_s, {}, u"07:00:00"_s}});
        test.execute(ArchiveName::Bands, "INSERT INTO Fascie VALUES ('X','X',' ',' ',' ',' ',' ','08:00','18:00')");
        test.execute(ArchiveName::Holidays,
                     "INSERT INTO Giorni VALUES ('06/03/2004','07/03/2004','20040306','20040307')");
        QDir(test.directory.path()).mkdir(u"Istruzioni"_s);
        QFile::copy(qEnvironmentVariable("KOR_PROGRAMS") + u"/Istruzioni/mansw.pdf"_s,
                    test.directory.filePath(u"Istruzioni/man731.pdf"_s));
        goOnLine();
    }
    ~Tower()
    {
        window.end();
        messages.take();
    }

    ChildWindow *latest()
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return window.findChildren<ChildWindow *>().value(window.findChildren<ChildWindow *>().size() - 1);
    }
    /// "entry button button …": the window that they lead to.
    ChildWindow *open(const QString &way)
    {
        const QStringList steps = way.split(u' ');
        entry(steps.first().toLatin1())->trigger();
        for (const QString &button : steps.mid(1)) {
            // Lists are read, a search ends.
            const auto isThere = [&] { return isReady() && latest()->findChild<QAbstractButton *>(button); };
            if (!QTest::qWaitFor(isThere))
                qFatal("no button %s", qPrintable(button));
            control(latest(), button)->click();
        }
        (void)QTest::qWaitFor([this] { return isReady(); });
        return latest();
    }
    bool isReady() { return latest() && latest()->isEnabled(); }
    void speak(int language)
    {
        entry("mnuLingua")->trigger();
        ChildWindow *choice = Desk::open("frmLingua");
        control(choice, u"optLingua(%1)"_s.arg(language - 1))->click();
        control(choice, u"cmdOk"_s)->click();
        QTRY_VERIFY(!Desk::open("frmLingua"));
    }
    QStringList words(QWidget *shown)
    {
        return wordsOf(shown) + wordsOf(window.statusBar()) + QStringList{window.windowTitle()};
    }
};

} // namespace

class TestLanguage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void openWindows_data()
    {
        QTest::addColumn<QString>("way");
        for (const char *way : {"mnuUtenti",
                                "mnuUtenti cmdNuovo",
                                "mnuUtenti cmdPrecod cmdOK",
                                "mnuFascieOr",
                                "mnuProgFerie",
                                "mnuEventi",
                                "mnuEventi cmdRicerca cmdIstogramma",
                                "mnuEventiOdierni",
                                "mnuPrnLastEv",
                                "mnuNumEvOdVis",
                                "mnuImpCom",
                                "mnuLetConfInt",
                                "mnuUtility",
                                "mnuImpContKor",
                                "mnuAttPass",
                                "mnuIstrKOR",
                                "mnuAbout",
                                "mnuImpPrn",
                                "mnuBackup",
                                "mnuBackup cmdStop"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    /// A window that was open when the language was chosen says the same as one that is opened then.
    void openWindows()
    {
        QFETCH(QString, way);
        Tower desk;
        QPointer<ChildWindow> shown = desk.open(way);
        const QStringList before = desk.words(shown);
        for (const int language : {1, 3, 4}) {
            desk.speak(language);
            QVERIFY(desk.words(shown) != before);
            QCoreApplication::processEvents();
            for (const QScrollArea *scrolled : shown->findChildren<QScrollArea *>())
                QVERIFY(!scrolled->horizontalScrollBar()->isVisible());
        }
        const QString changed = desk.words(shown).join(u'\n');
        while (ChildWindow *last = desk.latest())
            last->unload();
        shown = desk.open(way);
        QTRY_COMPARE(desk.words(shown).join(u'\n'), changed);
    }

    /// Contents, what is marked, and where the keyboard is, stay.
    void contentsStay()
    {
        Tower desk;
        ChildWindow *editor = desk.open(u"mnuFascieOr"_s);
        auto *grid = control<QTableView>(editor, u"dbgrdSettimana"_s);
        control<QLineEdit>(editor, u"txtOraIn"_s)->setText(u"06:00"_s);
        control<QLineEdit>(editor, u"txtOraFine"_s)->setText(u"07:00"_s);
        desk.click(editor, "cmdAggiungi");
        grid->setCurrentIndex(grid->model()->index(1, 3));
        grid->setFocus();
        desk.speak(4);
        QCOMPARE(cells(grid, 0), u"X|X|X|X|X| | |06:00|07:00"_s);
        QVERIFY(grid->currentIndex() == grid->model()->index(1, 3) && editor->focusWidget() == grid);
        QCOMPARE(control<QLineEdit>(editor, u"txtOraIn"_s)->text(), u"06:00"_s);
        desk.messages.answers = {Messages::Answer::Yes};
    }

    /// Windows that the menu does not lead to: the alarm, a question for a password.
    void others()
    {
        Tower desk;
        QCOMPARE(desk.program.passwords().set(Passwords::Type::Users, u"1234"_s), Passwords::Fault::None);
        desk.entry("mnuUtenti")->trigger();
        Q_EMIT desk.program.link().alarmRaised();
        desk.program.reloadTimeProgramme(TimeProgramme::Part::Bands);
        auto *alarm = control<ChildWindow>(&desk.window, u"frmMessage"_s);
        auto *question = control<ChildWindow>(&desk.window, u"frmPassProg"_s);
        desk.speak(4);
        QCOMPARE(question->windowTitle(), desk.program.texts()[Text::PasswordUtenti]);
        QCOMPARE(control<QLabel>(alarm, u"lblMessage"_s)->text(), desk.program.texts()[Text::InterfacciaNonCollegata]);
        QVERIFY(desk.label(3)->toolTip().endsWith(u"Gesperrt bis Montag 08:00"_s));
    }
};

QTEST_MAIN(TestLanguage)
#include "tst_gui_language.moc"
