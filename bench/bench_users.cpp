// The register with 50,000 users, each figure beside the bare loop that it is measured against. Needs a window system
// (offscreen will do).

#include "Measure.h"

#include "archives/Tables.h"
#include "support/FakeMessages.h"
#include "support/Fixtures.h"
#include "texts/NameKey.h"
#include "users/frmLstUtenti.h"
#include "widgets/UserCombo.h"

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>

namespace {

constexpr int registered = 50'000;
constexpr auto protocol = Protocol::Wiegand26SiteChannel; ///< every second user or so shares a truncated code

QString code(int user)
{
    // Registered in no order.
    return QString::number(100'000 + (user * 7919) % registered * 37);
}

void fill(TestFolder &test)
{
    QList<QStringList> all;
    for (int i = 0; i < registered; ++i)
        all.append({code(i), u"TX"_s, u"Surname %1"_s.arg((i * 7919) % registered), u"Name %1"_s.arg(i % 997)});
    test.addUsers(all);
}

/// Copies the register and rewrites one column of it in one transaction.
double bareOpening(TestFolder &test)
{
    return microseconds([&] {
        (void)test.archives.copy(ArchiveName::Users, u"Archivi/bare.zeb");
        Result<Database> copy = test.archives.open(u"Archivi/bare.zeb", Database::Use::ThrowAway);
        (void)copy.value().execute("BEGIN; UPDATE Utenti SET CodTronc=substr(Codice, -5); COMMIT;");
        Result<Statement> rows = copy.value().prepare(u"SELECT * FROM Utenti ORDER BY Codice"_s);
        while (rows.value().step().value())
            ;
    });
}

/// Two copies of the file, each flushed.
double bareSaving(TestFolder &test)
{
    const QString from = test.directory.filePath(u"Archivi/bare.zeb"_s);
    return microseconds([&] {
        for (int i = 0; i < 2; ++i)
            (void)test.disk.copy(from, test.directory.filePath(u"Archivi/bare2.zeb"_s));
    });
}

double bareInserting(TestFolder &test, int count)
{
    Result<Database> copy = test.archives.open(u"Archivi/bare.zeb", Database::Use::ThrowAway);
    return microseconds([&] {
        (void)copy.value().execute("BEGIN");
        Result<Statement> insert =
            copy.value().prepare(u"INSERT INTO Utenti (Codice, Tipo, CodTronc) VALUES ('1', 'TX', '00001')"_s);
        for (int i = 0; i < count; ++i) {
            (void)insert.value().step();
            insert.value().reset();
        }
        (void)copy.value().execute("COMMIT");
    });
}

/// Sorts as many short texts.
double bareSorting()
{
    QList<QString> texts;
    for (int i = 0; i < registered; ++i)
        texts.append(code(i).right(5));
    return microseconds([&] { std::sort(texts.begin(), texts.end()); });
}

/// Runs the event loop until @p done. @return milliseconds it took
template<class Done>
double until(Done done)
{
    return microseconds([&] {
               while (!done())
                   QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
           }) /
           1000;
}

/// Slowest of the keys of @p text, painted, in milliseconds.
double typing(QWidget *box, const QString &text)
{
    double longest = 0;
    for (const QChar key : text)
        longest = qMax(longest, microseconds([&] {
                           QTest::sendKeyEvent(QTest::Click, box, Qt::Key_A, key, Qt::NoModifier, 0);
                           QCoreApplication::processEvents();
                       }));
    return longest / 1000;
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QApplication application(argumentCount, arguments);
    TestFolder test;
    fill(test);
    Texts texts;
    texts.fill(2);
    FakeMessages messages;
    QPointer<ChildWindow> child;

    QPointer window = new frmLstUtenti(texts, messages, test.archives, {[] { return protocol; }, false});
    QObject::connect(window, &frmLstUtenti::openChild, [&child](ChildWindow *opened) {
        child = opened;
        opened->show();
    });
    window->show();
    (void)test.archives.open(ArchiveName::Users, Database::Use::Safe); // the key is known to a running program
    const double bareOpen = bareOpening(test);
    const double reading = microseconds([&] { (void)window->open(); });
    const double loading = until([&] { return window->isEnabled(); });
    print("opened, truncated codes recomputed", reading / 1000 + loading, bareOpen / 1000, "ms");
    std::printf("  of it until the window stands: %.0f ms\n", reading / 1000);

    auto *grid = window->findChild<QTableView *>();
    grid->setCurrentIndex(grid->model()->index(registered / 2, 2));
    grid->setFocus();
    const double keys = typing(grid, u"M"_s);
    const double more = typing(grid->viewport()->findChild<QLineEdit *>(), u"artinelli"_s);
    const double committing = microseconds([&] {
        QTest::keyClick(grid->viewport()->findChild<QLineEdit *>(), Qt::Key_Down);
        grid->setCurrentIndex(grid->model()->index(registered / 2 + 1, 2));
        QCoreApplication::processEvents();
    });
    QList<QString> names;
    for (int i = 0; i < registered; ++i)
        names.append(u"Surname %1"_s.arg((i * 7919) % registered));
    volatile qsizetype found = 0;
    const double walk = microseconds([&] { found = std::count(names.begin(), names.end(), u"Martinelli"_s); }) / 1000;
    print("key in the grid, slowest", qMax(keys, more), walk, "ms");
    print("name stored, boxes follow", committing / 1000, walk, "ms");
    for (const char *name : {"dbcmbCognome", "dbcmbNome"}) {
        auto *box = window->findChild<UserCombo *>(QLatin1String(name));
        box->setFocus();
        print(name, typing(box->lineEdit(), u"Surname 49999"_s), walk, "ms");
    }
    grid->setFocus();
    grid->setCurrentIndex(grid->model()->index(0, 0));
    print("digit on the column of codes", typing(grid, u"1"_s), walk, "ms");

    const double sorting = bareSorting();
    double begun = microseconds([&] { window->findChild<QPushButton *>(u"cmdDoppioni"_s)->click(); }) / 1000;
    const double listing = until([&] { return child && !child->findChild<TaskRunner *>()->isRunning(); });
    print("duplicates listed and shown", begun + listing, sorting / 1000, "ms");
    std::printf("  %lld lines\n",
                static_cast<long long>(child->findChild<QPlainTextEdit *>()->document()->blockCount()));
    child->unload();

    const double bareInsert = bareInserting(test, 9999);
    window->findChild<QPushButton *>(u"cmdPrecod"_s)->click();
    child->findChild<QLineEdit *>(u"txtNumTrasm"_s)->setText(u"9999"_s);
    child->findChild<QLineEdit *>(u"txtCodPart"_s)->setText(u"10000000"_s);
    begun = microseconds([&] { child->findChild<QPushButton *>(u"cmdOK"_s)->click(); }) / 1000;
    const double adding = until([&] { return window->isEnabled(); });
    print("run of 9,999", begun + adding, bareInsert / 1000, "ms");
    std::printf("  %lld users\n", static_cast<long long>(window->users().size()));

    const double bareSave = bareSaving(test);
    begun = microseconds([&] { window->findChild<QPushButton *>(u"cmdSalva"_s)->click(); }) / 1000;
    const double saving = until([&] { return window.isNull(); });
    print("saved", begun + saving, bareSave / 1000, "ms");
    return 0;
}
