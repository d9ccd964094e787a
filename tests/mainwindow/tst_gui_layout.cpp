#include "support/Desk.h"
#include "widgets/Accessibility.h"
#include "widgets/ClientArea.h"
#include "widgets/DesktopStyle.h"
#include "widgets/frmRicercapr.h"

#include <QAccessible>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QMenuBar>
#include <QPdfBookmarkModel>
#include <QPdfPageNavigator>
#include <QPdfView>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QTreeView>

namespace {

/// The program with its window, on a screen of its own.
struct Screen : Desk {
    explicit Screen(QSize size = {1366, 768}, int language = 2)
        : Desk("COM=7\r\nLINGUA=" + QByteArray::number(language) + "\r\nCHECK=0\r\n")
    {
        test.addEvents(u"05-03-2004"_s, {{u"1"_s, u"TX"_s, u"A"_s, u"X"_s, {}, u"07:00:00"_s}});
        QDir(test.directory.path()).mkdir(u"Istruzioni"_s);
        for (const QString &manual : {u"mansw.pdf"_s, u"mansw_en.pdf"_s, u"mansw_fr.pdf"_s, u"mansw_de.pdf"_s})
            QFile::copy(qEnvironmentVariable("KOR_PROGRAMS") + u"/Istruzioni/"_s + manual,
                        test.directory.filePath(u"Istruzioni/"_s + manual));
        window.setWindowState(Qt::WindowNoState);
        window.resize(size);
        comeToLife();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("the window does not come");
    }
    ~Screen()
    {
        window.end();
        messages.take();
    }

    ChildWindow *choose(const char *name)
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // one that has closed goes
        const QList<ChildWindow *> before = opened();
        entry(name)->trigger();
        for (ChildWindow *child : opened())
            if (!before.contains(child))
                return (QCoreApplication::processEvents(), child);
        qFatal("%s opens nothing", name);
    }
    /// A list of users, from the file dialog on.
    ChildWindow *importList()
    {
        test.write(u"list.csv"_s, "Code;User Surname\n1;Verdi\nx;\n");
        entry("mnuImportUsers")->trigger();
        auto *dialog = window.findChild<QFileDialog *>();
        control<QLineEdit>(dialog, u"fileNameEdit"_s)->setText(test.directory.filePath(u"list.csv"_s));
        dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Open)->click();
        const auto isThere = [this] { return open("frmImport") && !open("frmImport")->isHidden(); };
        if (!QTest::qWaitFor(isThere))
            qFatal("no list");
        return (QCoreApplication::processEvents(), open("frmImport"));
    }
    QList<ChildWindow *> opened() const { return window.findChildren<ChildWindow *>(); }

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

    /// Two buttons may share a key, or one and a menu: the window in front sees to it. Nobody does for another control.
    void lookForKeys(const QWidget *window, const QMenuBar *bar)
    {
        check(window->focusProxy(), window, "holds the Tab key at one control");
        QList<QKeySequence> taken;
        for (const QAction *menu : bar->actions())
            taken.append(QKeySequence::mnemonic(menu->text()));
        for (const QWidget *part : window->findChildren<QWidget *>()) {
            const QKeySequence key = QKeySequence::mnemonic(part->property("text").toString());
            check(!qobject_cast<const QPushButton *>(part) && !key.isEmpty() && taken.contains(key), part,
                  "shares a key");
            taken.append(key);
        }
    }

private:
    void lookAt(const QWidget *part)
    {
        check(part->size() != part->size().expandedTo(part->minimumSizeHint()), part, "is squeezed");
        const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(const_cast<QWidget *>(part));
        check((part->focusPolicy() & Qt::TabFocus) && spoken->text(QAccessible::Name).isEmpty(), part, "has no name");
        const bool isGroup = qobject_cast<const QGroupBox *>(part) || qobject_cast<const Grouping *>(part);
        check(isGroup && (spoken->role() != QAccessible::Grouping || spoken->text(QAccessible::Name).isEmpty()), part,
              "is no group with a name");
        check(spoken->role() == QAccessible::Border || spoken->role() == QAccessible::Window, part, "counts as window");
        if (const auto *grid = qobject_cast<const QTableView *>(part)) {
            check(grid->viewport()->height() < 4 * grid->verticalHeader()->defaultSectionSize(), part, "is too low");
            check(!grid->horizontalHeader()->font().bold(), part, "is another grid");
        } else if (const auto *scrolled = qobject_cast<const QScrollArea *>(part)) {
            check(scrolled->horizontalScrollBar()->isVisible(), part, "scrolls to the side");
            look(scrolled->widget());
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

    void windows_data()
    {
        const Rows<QSize, double> row("screen", "font");
        row("font half as large again", {1366, 768}, 1.5);
        row("everything twice as large", {683, 384}, 1);
        row("smallest", {640, 480}, 1);
        row("large", {2560, 1440}, 1);
    }
    void windows()
    {
        QFETCH(QSize, screen);
        QFETCH(double, font);
        const QFont usual = QApplication::font();
        QFont larger = usual;
        larger.setPointSizeF(usual.pointSizeF() * font);
        QApplication::setFont(larger);
        QStringList wrong;
        for (int language = Texts::FirstLanguage; language <= Texts::LastLanguage; ++language) {
            Screen desk(screen, language);
            for (const char *entry :
                 {"mnuUtenti", "mnuFascieOr", "mnuProgFerie", "mnuEventi", "mnuEventiOdierni", "mnuPrnLastEv",
                  "mnuNumEvOdVis", "mnuImpCom", "mnuLetConfInt", "mnuUtility", "mnuImpContKor", "mnuLingua",
                  "mnuAttPass", "mnuIstrSwKOR", "mnuAbout", "mnuImpPrn", "mnuBackup", "mnuJournal", ""}) {
                ChildWindow *opened = *entry != 0 ? desk.choose(entry) : desk.importList();
                auto *histogram = opened->findChild<QAbstractButton *>(u"cmdIstogramma"_s);
                if (histogram) {
                    control(opened, u"cmdRicerca"_s)->click();
                    QTRY_VERIFY(control<QWidget>(opened, u"cmdCoverage"_s)->isVisible());
                    histogram->click();
                }
                // One for the window, one for what its lines have become wider or higher by.
                QCoreApplication::processEvents();
                QCoreApplication::processEvents();
                Faults faults;
                faults.look(opened);
                faults.lookForKeys(opened, desk.window.menuBar());
                if (!desk.area->viewport()->rect().contains(opened->parentWidget()->geometry()))
                    faults.append(u"leaves the main window"_s);
                // There is more to be seen where there is room for it.
                if (opened->inherits("frmEventi") || opened->inherits("frmLstUtenti"))
                    if (screen.height() > 1000 && opened->height() < screen.height() / 2)
                        faults.append(u"stays low"_s);
                if (!faults.isEmpty())
                    wrong.append(u"%1 in %2: %3"_s.arg(opened->objectName()).arg(language).arg(faults.join(u", ")));
                for (ChildWindow *open : desk.opened()) {
                    auto *close = open->findChild<QAbstractButton *>(u"cmdChiudi"_s);
                    if (close && !open->inherits("frmLstUtenti")) // which saves first
                        close->click();
                    else
                        open->unload();
                    if (open->parentWidget()->isVisible())
                        wrong.append(open->objectName() + u" leaves its frame"_s);
                }
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

    void manualInEachLanguage()
    {
        QStringList firstChapters;
        for (int language = Texts::FirstLanguage; language <= Texts::LastLanguage; ++language) {
            Screen desk({1366, 768}, language);
            const ChildWindow *manual = desk.choose("mnuIstrSwKOR");
            auto *chapters = manual->findChild<QTreeView *>();
            const QAbstractItemModel &model = *chapters->model();
            QVERIFY(chapters->isVisible() && model.rowCount() > 10);
            firstChapters.append(model.index(0, 0).data(int(QPdfBookmarkModel::Role::Title)).toString());

            chapters->setCurrentIndex(model.index(model.rowCount() - 1, 0));
            const auto *view = manual->findChild<QPdfView *>();
            QTRY_COMPARE(view->pageNavigator()->currentPage(),
                         model.index(model.rowCount() - 1, 0).data(int(QPdfBookmarkModel::Role::Page)).toInt());
        }
        QCOMPARE(firstChapters, (QStringList{u"Che cosa fa il programma"_s, u"What the program does"_s,
                                             u"Ce que fait le programme"_s, u"Was das Programm tut"_s}));
    }

    void keptPlace()
    {
        Screen desk;
        const auto stored = [&] { return desk.program.settings().LeggiImpostazione(u"FRMEVENTI"_s); };
        const QRect moved(20, 30, 700, 500);
        QWidget *frame = desk.choose("mnuEventi")->parentWidget();
        const auto openAgain = [&] {
            qobject_cast<QMdiSubWindow *>(frame)->close();
            frame = desk.choose("mnuEventi")->parentWidget();
        };
        const QRect before = frame->geometry();
        openAgain();
        QVERIFY(stored().isEmpty() && frame->geometry() == before);
        frame->setGeometry(moved);
        openAgain();
        QCOMPARE(frame->geometry(), moved);
        frame->showMaximized();
        openAgain();
        QCOMPARE(stored(), u"20,30,700,500,1"_s);
        QVERIFY(frame->isMaximized());
        // A small window before it stays small, and the search behind it large.
        QVERIFY(!desk.choose("mnuAbout")->parentWidget()->isMaximized() && frame->isMaximized());
        frame->showNormal();
        QCOMPARE(frame->geometry(), moved);
        QVERIFY(desk.test.read(u"Impost.stp"_s).startsWith("COM=7\r\nLINGUA=2\r\nCHECK=0\r\nNUMEVOD=25\r\n"));
    }
};

QTEST_MAIN(TestLayout)
#include "tst_gui_layout.moc"
