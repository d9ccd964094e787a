#include "support/Windows.h"
#include "widgets/ChildWindow.h"
#include "widgets/Fields.h"
#include "widgets/Forms.h"
#include "widgets/Grid.h"
#include "widgets/PainterPage.h"
#include "widgets/RowsModel.h"
#include "widgets/TaskRunner.h"
#include "widgets/frmRicercapr.h"

#include <QBuffer>
#include <QMessageBox>
#include <QPainter>
#include <QPdfWriter>

namespace {

/// Two boxes and two buttons; what happens to it is noted.
struct Window : ChildWindow {
    Window() : ChildWindow(u"frmTest"_s)
    {
        setAttribute(Qt::WA_DeleteOnClose, false);
        auto *line = new QHBoxLayout;
        line->addWidget(first);
        line->addWidget(second);
        arrange(this, line, {accept, cancel});
        setKeys(accept, cancel);
        const auto note = [this](const char *what) { return [this, what] { told.append(QLatin1String(what)); }; };
        connect(this, &ChildWindow::unloaded, note("unloaded"));
        connect(this, &ChildWindow::closeRefused, note("refused"));
        connect(accept, &QPushButton::clicked, note("accept"));
        connect(cancel, &QPushButton::clicked, note("cancel"));
        show();
    }
    void setCaptions() override {}
    bool canClose() override { return mayClose; }
    QString take() { return std::exchange(told, {}).join(u','); }

    QLineEdit *first = new QLineEdit(u"first"_s), *second = new QLineEdit(u"second"_s);
    QPushButton *accept = new QPushButton(u"&Add"_s), *cancel = new QPushButton(u"&Cancel"_s);
    bool mayClose = true;
    QStringList told;
};

/// Takes so many steps, or fails at the last of them.
struct Steps : Task {
    explicit Steps(int steps, bool fails = false) : count(steps), isFaulty(fails) {}
    Result<bool> step(const QDeadlineTimer &) override
    {
        if (++done == count && isFaulty)
            return Fault{FaultCode::DiskFull, {}};
        return done >= count;
    }
    Progress progress() const override { return {done, count}; }
    void stop() override { count = done; }

    int done = 0, count;
    bool isFaulty;
};

} // namespace

class TestWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void closes()
    {
        // Enabled, may close, by the program.
        for (const auto &[state, told] :
             {std::pair("EM.", "unloaded"), {"E..", ""}, {".M.", "refused"}, {"..P", "unloaded"}}) {
            QMdiArea area;
            area.show();
            auto *window = new Window;
            QMdiSubWindow *frame = area.addSubWindow(window);
            frame->show();
            window->setEnabled(state[0] == 'E');
            window->mayClose = state[1] == 'M';
            state[2] == 'P' ? window->unload() : void(frame->close());
            QCOMPARE(frame->isVisible(), !window->told.contains(u"unloaded"_s));
            QCOMPARE(window->take(), QLatin1String(told));
        }
    }

    /// Enter and Esc act from wherever the keyboard is, an access key at once; what cannot be pressed is not.
    void keys()
    {
        Window window;
        QVERIFY(QTest::qWaitForWindowActive(&window));
        const auto press = [&window](std::initializer_list<Qt::Key> keys, Qt::KeyboardModifiers modifiers = {}) {
            for (const Qt::Key key : keys)
                QTest::keyClick(window.focusWidget(), key, modifiers);
            return window.take();
        };
        window.takeKeyboard();
        QCOMPARE(window.focusWidget(), window.first);
        QCOMPARE(press({Qt::Key_Return, Qt::Key_Escape, Qt::Key_Escape}), u"accept,cancel,cancel"_s);
        window.cancel->setFocus();
        QCOMPARE(press({Qt::Key_Return}), u"cancel"_s);
        connect(window.accept, &QPushButton::clicked, [&window] { window.accept->setEnabled(false); });
        QCOMPARE(press({Qt::Key_A, Qt::Key_A}, Qt::AltModifier), u"accept"_s);
        window.first->setFocus();
        QCOMPARE(press({Qt::Key_Return}), QString());
        // Of two with the same key none is pressed, and each gets the keyboard in turn, until one is out of reach.
        window.accept->setText(u"&Clear"_s);
        window.accept->setEnabled(true);
        for (const QPushButton *next : {window.accept, window.cancel, window.accept}) {
            QVERIFY(window.pressByKey(window.cancel->shortcut()));
            QVERIFY(window.focusWidget() == next && window.take().isEmpty());
        }
        window.accept->hide();
        QVERIFY(window.pressByKey(window.cancel->shortcut(), window.cancel));
    }

    /// Columns that stretch share what the grid is wider than its columns, and no row out of sight is asked for.
    void gridSharesItsWidth()
    {
        Grid grid;
        RowsModel model({{u"narrow"_s, 300}, {u"A"_s, 1500, {}, {}, true}, {u"B"_s, 3000, {}, {}, true}});
        QSet<qsizetype> asked;
        model.setRows(10'000, [&asked](qsizetype row) { return asked.insert(row), QStringList{u"x"_s}; });
        model.bind(&grid);
        grid.resize(120, 200);
        grid.show();
        const auto widths = [&grid] { return QList{grid.columnWidth(0), grid.columnWidth(1), grid.columnWidth(2)}; };
        const QList<int> wished = widths();
        QVERIFY(wished[0] >= grid.fontMetrics().horizontalAdvance(u"narrow"_s) && wished[1] == 100 && wished[2] == 200);
        grid.resize(800, 200);
        const int more = grid.viewport()->width() - wished[0] - 300;
        QCOMPARE(widths(), QList({wished[0], 100 + more / 2, 200 + more - more / 2}));
        QVERIFY(grid.minimumSizeHint().height() >= 5 * grid.rowHeight(0) && asked.size() < 50);
    }

    void fieldsSideBySide()
    {
        Fields fields;
        QList<QWidget *> boxes;
        for (int i = 0; i < 7; ++i) {
            boxes.append(new QLineEdit);
            boxes.last()->setFixedWidth(80);
            fields.add(new QLabel(u"label"_s), boxes.last(), i == 5 ? Fields::Row::New : Fields::Row::Same);
        }
        fields.show();
        const auto perRow = [&](int width) {
            fields.fit(width);
            fields.resize(width, 400);
            fields.layout()->activate();
            QMap<int, int> rows;
            for (const QWidget *box : boxes)
                ++rows[box->y()];
            return rows.values();
        };
        QCOMPARE(perRow(1'000), QList({4, 1, 2}));
        const int wide = fields.sizeHint().width();
        QCOMPARE(perRow(320), QList({2, 2, 1, 2}));
        QVERIFY(perRow(10).size() == 7 && fields.sizeHint().width() == wide);
    }

    void answers_data()
    {
        const Rows<QString, int, QString> row("question", "key", "answer");
        row("Enter destroys nothing", u"end"_s, Qt::Key_Return, u"No"_s);
        row("Esc neither", u"end"_s, Qt::Key_Escape, u"No"_s);
        row("on purpose", u"end"_s, Qt::Key_Y, u"Yes"_s);
        row("Enter keeps the work", u"save"_s, Qt::Key_Return, u"Yes"_s);
        row("Esc decides nothing", u"save"_s, Qt::Key_Escape, u"Cancel"_s);
        row("its window goes", u"end"_s, 0, {});
    }
    /// No box waits; what follows is called once, and not at all when its window has gone.
    void answers()
    {
        QFETCH(QString, question);
        QFETCH(int, key);
        auto over = std::make_unique<QWidget>();
        over->show();
        Messages messages;
        QString answers;
        messages.ask(over.get(), u"<b>O'Hara</b>"_s,
                     question == u"end" ? Messages::Buttons::YesNo : Messages::Buttons::YesNoCancel,
                     [&](Messages::Answer answer) { answers += listOf("Yes,No,Cancel")[int(answer)]; });
        const QPointer box = over->findChild<QMessageBox *>();
        QVERIFY(box && box->textFormat() == Qt::PlainText && answers.isEmpty());
        QVERIFY(QTest::qWaitForWindowActive(box));
        if (key == 0)
            over.reset();
        else
            QTest::keyClick(box, Qt::Key(key), key < Qt::Key_Escape ? Qt::AltModifier : Qt::NoModifier);
        QTRY_VERIFY(!box);
        QTEST(answers, "answer");
    }

    /// Ended once, when its notice has gone; dropped with the window, unheard.
    void tasks()
    {
        Window window;
        TaskRunner runner(&window);
        QString told;
        connect(&runner, &TaskRunner::progressed, [&](const Task::Progress &now) {
            told += QString::number(now.done);
            if (const auto *notice = window.findChild<frmRicercapr *>(); notice && now.done == 2)
                control(notice, u"cmdAnnulla"_s)->click();
        });
        connect(&runner, &TaskRunner::dropped, [&] { told += u"dropped"_s; });
        const auto ended = [&](const Result<void> &result) {
            const auto *notice = window.findChild<frmRicercapr *>();
            QVERIFY(!runner.isRunning() && (!notice || !notice->isVisible()));
            told += result ? u"done"_s : u"fault"_s;
        };
        runner.run(std::make_unique<Steps>(3), std::nullopt, ended);
        QVERIFY(runner.isRunning() && told.isEmpty());
        QTRY_COMPARE(told, u"12done"_s);
        runner.run(std::make_unique<Steps>(2, true), std::nullopt, ended);
        QTRY_COMPARE(told, u"12done1fault"_s);
        // Stopped by its button, the next step is the last.
        told.clear();
        QString word = u"Task"_s;
        const auto words = [&word] { return word; };
        runner.run(std::make_unique<Steps>(9), TaskRunner::Notice{words, words}, ended);
        word = u"Auftrag"_s;
        window.translate();
        QCOMPARE(window.findChild<frmRicercapr *>()->windowTitle(), word);
        QTRY_COMPARE(told, u"12done"_s);
        Steps quick(1), slow(1'000'000);
        QVERIFY(runner.runAtOnce(quick, ended)->ok() && !runner.runAtOnce(slow, ended));
        window.unload();
        QCoreApplication::processEvents();
        QCOMPARE(told, u"12donedropped"_s);
        QCOMPARE(slow.done, 1);
    }

    void printedFaceIsFixedPitch()
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QPdfWriter device(&buffer);
        QPainter painter(&device);
        QVERIFY(PainterPage(painter, device).isFixedPitch());
        QVERIFY(!PainterPage(painter, device, {u"Liberation Sans"_s}).isFixedPitch());
    }
};

QTEST_MAIN(TestWidgets)
#include "tst_gui_widgets.moc"
