#include "mainwindow/MDIForm1.h"
#include "platform/PseudoTerminal.h"
#include "support/FakeMessages.h"
#include "support/Fixtures.h"
#include "widgets/Accessibility.h"
#include "widgets/ClientArea.h"
#include "widgets/DesktopStyle.h"
#include "widgets/frmRicercapr.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QGroupBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPdfPageNavigator>
#include <QPdfView>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableView>

namespace {

/// The program with its window, on a screen of its own.
struct Desk {
    explicit Desk(QSize size = {1366, 768}, int language = 2, const QByteArray &port = "COM=7")
    {
        test.addUsers({});
        test.addEvents(u"05-03-2004"_s, {{u"1"_s, u"TX"_s, u"A"_s, u"X"_s, {}, u"07:00:00"_s}});
        test.write(u"Impost.stp"_s,
                   port + "\r\nNUMEVOD=25\r\nCHECK=0\r\nPRN=-1\r\nLINGUA=" + QByteArray::number(language) + "\r\n");
        QDir(test.directory.path()).mkdir(u"Istruzioni"_s);
        QFile::copy(qEnvironmentVariable("KOR_PROGRAMS") + u"/Istruzioni/mansw.pdf"_s,
                    test.directory.filePath(u"Istruzioni/mansw.pdf"_s));
        // A port to choose where none is chosen yet.
        if ((port == "COM=0" && !interface.open()) || program.prepare(2, {}))
            qFatal("the program cannot be prepared");
        window.load();
        window.setWindowState(Qt::WindowNoState);
        window.resize(size);
        window.findChild<QTimer *>(u"tmrShow"_s)->start(0);
        if (!QTest::qWaitFor([this] { return window.isEnabled(); }) || !QTest::qWaitForWindowActive(&window))
            qFatal("the window does not come");
    }
    ~Desk()
    {
        window.end();
        messages.take();
    }

    ChildWindow *open(const char *entry)
    {
        QTest::qWait(1); // one that has closed goes
        const QList<ChildWindow *> before = window.findChildren<ChildWindow *>();
        window.findChild<QAction *>(QString::fromLatin1(entry))->trigger();
        for (ChildWindow *child : window.findChildren<ChildWindow *>())
            if (!before.contains(child))
                return (QCoreApplication::processEvents(), child);
        qFatal("%s opens nothing", entry);
    }
    void key(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget *focused = QApplication::focusWidget();
        QTest::keyClick(focused ? focused : &window, static_cast<Qt::Key>(key), modifiers);
        QTest::qWait(1);
    }
    int opened() { return static_cast<int>(window.findChildren<ChildWindow *>().size()); }

    TestFolder test;
    FakeClock clock;
    FakePrinters printers;
    FakeMessages messages;
    PseudoTerminal interface {
        test.directory.filePath(u"Porte/COM7"_s)
    };
    Program program{test.directory.path(), clock, printers};
    MDIForm1 window{program, messages};
    ClientArea *area = window.findChild<ClientArea *>();
};

/// What is wrong with the way in which the controls of a window lie, and with what a screen reader hears of them.
class Faults : public QStringList
{
public:
    void look(const QWidget *inside)
    {
        QList<const QWidget *> seen;
        for (const QWidget *part : inside->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (!part->isVisible() || part->isWindow())
                continue;
            check(!inside->rect().contains(part->geometry()), part, "leaves its window");
            for (const QWidget *other : std::as_const(seen))
                check(other->geometry().intersects(part->geometry()), part, "overlaps another");
            seen.append(part);
            lookAt(part);
        }
    }

private:
    void lookAt(const QWidget *part)
    {
        check(part->size() != part->size().expandedTo(part->minimumSizeHint()), part, "is squeezed");
        const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(const_cast<QWidget *>(part));
        const bool isGroup = qobject_cast<const QGroupBox *>(part) || qobject_cast<const Grouping *>(part);
        check(isGroup && (spoken->role() != QAccessible::Grouping || spoken->text(QAccessible::Name).isEmpty()), part,
              "is no group with a name");
        check(spoken->role() == QAccessible::Border || spoken->role() == QAccessible::Window, part, "counts as window");
        if (const auto *grid = qobject_cast<const QTableView *>(part)) {
            check(grid->viewport()->height() < 4 * grid->verticalHeader()->defaultSectionSize(), part, "is too low");
            check(grid->selectionBehavior() != QTableView::SelectRows, part, "marks single cells");
            check(!grid->horizontalHeader()->font().bold(), part, "has other headings");
        } else if (const auto *scrolled = qobject_cast<const QScrollArea *>(part)) {
            const QWidget *content = scrolled->widget();
            check(scrolled->horizontalScrollBar()->isVisible(), part, "scrolls to the side");
            look(content);
        } else if (isGroup || part->metaObject()->className() == QByteArray("QWidget")) {
            look(part);
        }
    }
    void check(bool isWrong, const QWidget *part, const char *what)
    {
        if (isWrong)
            append(u"%1 %2"_s.arg(part->objectName(), QLatin1String(what)));
    }
};

} // namespace

class TestLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setStyle(new DesktopStyle);
        installAccessibility();
    }
    void windows_data();
    void windows();
    void firstFocus();
    void keys();
    void manualInEachLanguage();
    void keptPlace();
    void spoken();
    void darkWhileItRuns();
};

void TestLayout::windows_data()
{
    const Rows<QSize, double> row("screen", "font");
    row("font half as large again", {1366, 768}, 1.5);
    row("everything twice as large", {683, 384}, 1);
    row("smallest", {640, 480}, 1);
    row("large", {2560, 1440}, 1);
}

void TestLayout::windows()
{
    QFETCH(QSize, screen);
    QFETCH(double, font);
    const QFont usual = QApplication::font();
    QFont larger = usual;
    larger.setPointSizeF(usual.pointSizeF() * font);
    QApplication::setFont(larger);
    QStringList wrong;
    for (int language = Texts::FirstLanguage; language <= Texts::LastLanguage; ++language) {
        Desk desk(screen, language);
        for (const char *entry :
             {"mnuUtenti", "mnuFascieOr", "mnuProgFerie", "mnuEventi", "mnuEventiOdierni", "mnuPrnLastEv",
              "mnuNumEvOdVis", "mnuImpCom", "mnuLetConfInt", "mnuUtility", "mnuImpContKor", "mnuLingua", "mnuAttPass",
              "mnuIstrSwKOR", "mnuAbout", "mnuImpPrn"}) {
            ChildWindow *opened = desk.open(entry);
            Faults faults;
            faults.look(opened);
            if (!desk.area->viewport()->rect().contains(opened->parentWidget()->geometry()))
                faults.append(u"leaves the main window"_s);
            // There is more to be seen where there is room for it.
            if (opened->inherits("frmEventi") || opened->inherits("frmLstUtenti"))
                if (screen.height() > 1000 && opened->height() < screen.height() / 2)
                    faults.append(u"stays low"_s);
            if (!faults.isEmpty())
                wrong.append(u"%1 in %2: %3"_s.arg(opened->objectName()).arg(language).arg(faults.join(u", ")));
            opened->unload();
            QCoreApplication::processEvents();
            desk.messages.take();
        }
        Faults bar;
        bar.look(desk.window.statusBar());
        if (!bar.isEmpty())
            wrong.append(bar.join(u", "));
    }
    QApplication::setFont(usual);
    QCOMPARE(wrong.join(u'\n'), QString());
}

void TestLayout::firstFocus()
{
    Desk desk;
    desk.open("mnuNumEvOdVis");
    const auto selected = [] { return qobject_cast<QLineEdit *>(QApplication::focusWidget())->selectedText(); };
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()));
    QCOMPARE(selected(), u"25"_s);
    ChildWindow *search = desk.open("mnuEventi");
    QTRY_COMPARE(QApplication::focusWidget(), search->findChild<QLineEdit *>(u"txtDataOrig"_s));
    QCOMPARE(selected(), u"05/03/2004"_s);
    auto *last = search->findChild<QLineEdit *>(u"txtOraFine"_s);
    QTest::mouseClick(last, Qt::LeftButton);
    QCOMPARE(selected(), u"23:59:59"_s);
    // From then on a press sets the caret.
    search->findChild<QLineEdit *>(u"txtOraIn"_s)->setFocus();
    QTest::mouseClick(last, Qt::LeftButton);
    QCOMPARE(selected(), QString());
}

void TestLayout::keys()
{
    Desk desk;
    desk.open("mnuAbout");
    desk.open("mnuEventi");
    desk.key(Qt::Key_F4, Qt::ControlModifier);
    QTRY_COMPARE(desk.opened(), 1);
    QVERIFY(desk.window.findChild<ChildWindow *>(u"frmInfo"_s));
    desk.key(Qt::Key_F1);
    QTRY_COMPARE(desk.opened(), 2);
    desk.key(Qt::Key_Escape);
    QTRY_VERIFY(!desk.window.findChild<ChildWindow *>(u"frmIstruzioni"_s));
    // Without a port nothing can be chosen, by key neither.
    Desk first({1366, 768}, 2, "COM=0");
    QTRY_COMPARE(first.opened(), 1);
    first.key(Qt::Key_F1);
    first.key(Qt::Key_F4, Qt::ControlModifier);
    QTest::qWait(20);
    QCOMPARE(first.opened(), 1);
}

void TestLayout::manualInEachLanguage()
{
    QList<int> pages;
    for (int language = Texts::FirstLanguage; language <= Texts::LastLanguage; ++language) {
        Desk desk({1366, 768}, language);
        const ChildWindow *manual = desk.open("mnuIstrSwKOR");
        const auto *view = manual->findChild<QPdfView *>();
        pages.append(view->pageNavigator()->currentPage());
        QTRY_VERIFY(view->verticalScrollBar()->value() > 0 || pages.last() == 0);
    }
    QVERIFY2(pages[0] == 0 && std::adjacent_find(pages.begin(), pages.end(), std::greater_equal()) == pages.end(),
             "each section begins behind the one before");
}

void TestLayout::keptPlace()
{
    Desk desk;
    const auto stored = [&] { return desk.program.settings().LeggiImpostazione(u"FRMEVENTI"_s); };
    const QRect moved(20, 30, 700, 500);
    ChildWindow *search = desk.open("mnuEventi");
    const QRect before = search->parentWidget()->geometry();
    search->unload();
    QCOMPARE(stored(), QString());
    search = desk.open("mnuEventi");
    QCOMPARE(search->parentWidget()->geometry(), before);
    search->parentWidget()->setGeometry(moved);
    search->unload();
    search = desk.open("mnuEventi");
    QCOMPARE(search->parentWidget()->geometry(), moved);
    search->parentWidget()->showMaximized();
    search->unload();
    QCOMPARE(stored(), u"20,30,700,500,1"_s);
    search = desk.open("mnuEventi");
    QVERIFY(search->parentWidget()->isMaximized());
    // A small window before it stays small, and the search behind it large.
    QVERIFY(!desk.open("mnuAbout")->parentWidget()->isMaximized() && search->parentWidget()->isMaximized());
    search->parentWidget()->showNormal();
    QCOMPARE(search->parentWidget()->geometry(), moved);
    QVERIFY(desk.test.read(u"Impost.stp"_s).startsWith("COM=7\r\nNUMEVOD=25\r\nCHECK=0\r\nPRN=-1\r\nLINGUA=2\r\n"));
}

void TestLayout::spoken()
{
    Desk desk;
    const auto role = [](QWidget *widget) { return QAccessible::queryAccessibleInterface(widget)->role(); };
    frmRicercapr progress(u"Searching"_s, {}, frmRicercapr::Bar, &desk.window);
    QCOMPARE(role(&progress), QAccessible::Dialog);
    ChildWindow *search = desk.open("mnuEventi");
    search->findChild<QPushButton *>(u"cmdRicerca"_s)->click();
    const auto *found = search->findChild<QTableView *>()->model();
    QTRY_COMPARE(found->rowCount(), 1);
    QCOMPARE(found->index(0, 4).data(Qt::AccessibleTextRole).toString(), desk.program.texts()[OwnText::Marked]);
    QCOMPARE(found->index(0, 7).data(Qt::AccessibleTextRole).toString(), desk.program.texts()[OwnText::NotMarked]);
    const auto *day = desk.open("mnuEventiOdierni")->findChild<QTableView *>()->model();
    QTRY_COMPARE(day->rowCount(), 25);
    QTRY_COMPARE(day->index(0, 5).data().toString(), u"X"_s);
    QCOMPARE(day->index(1, 5).data(Qt::AccessibleTextRole).toString(), QString());
}

void TestLayout::darkWhileItRuns()
{
    Desk desk;
    const QPalette usual = QApplication::palette();
    QPalette dark = usual;
    dark.setColor(QPalette::Dark, QColor(20, 20, 20));
    QApplication::setPalette(dark);
    QTRY_COMPARE(desk.area->background().color(), QColor(20, 20, 20));
    QApplication::setPalette(usual);
}

QTEST_MAIN(TestLayout)
#include "tst_gui_layout.moc"
