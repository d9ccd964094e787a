// Longest gap of a 5 ms heartbeat in the main window while the operator works with a register of 50,000 users, and the
// processor's share of the longest turn, which other programs on the machine cannot stretch. Needs a window system
// (offscreen will do).

#include "Measure.h"

#include "mainwindow/MDIForm1.h"
#include "platform/PseudoTerminal.h"
#include "support/FakeMessages.h"
#include "support/Fixtures.h"
#include "widgets/TaskRunner.h"

#include "link/InterfaceConfig.h"
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include <ctime>

namespace {

constexpr int registered = 50'000;

void fill(TestFolder &test)
{
    QList<QStringList> all;
    for (int i = 0; i < registered; ++i)
        all.append({QString::number(100'000 + (i * 7919) % registered * 64), u"TX"_s,
                    u"Surname %1"_s.arg((i * 7919) % registered), u"Name %1"_s.arg(i % 997)});
    test.addUsers(all);
}

double processorMilliseconds()
{
    timespec used{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

struct Desk {
    Desk()
    {
        fill(test);
        test.write(u"Impost.stp"_s, "COM=7\r\nLINGUA=2\r\nCHECK=1\r\nNUMEVOD=25\r\nPRN=-1\r\n");
        if (!interface.open() || program.prepare(2, {}))
            qFatal("the program cannot be prepared");
        QObject::connect(&interface, &PseudoTerminal::readyRead, [this] {
            asked += interface.read();
            if (asked.endsWith("&IC"))
                interface.write(interfaceBanner() + "\rRS_C CH:1 ENABLE\rVERSIONE 1.4\r");
        });
        window.load();
    }

    /// Does something, and runs the event loop until it is done and shown.
    template<class Action, class Done>
    void measure(const char *what, Action action, Done done)
    {
        double processor = 0;
        const auto turn = [&processor] {
            const double before = processorMilliseconds();
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            processor = qMax(processor, processorMilliseconds() - before);
        };
        bool isBegun = false;
        const Heartbeat heart;
        QTimer::singleShot(0, &window, [&] {
            isBegun = true;
            action();
        });
        const double all = microseconds([&] {
            while (!isBegun || !done())
                turn();
        });
        QElapsedTimer after;
        for (after.start(); after.elapsed() < 300;)
            turn();
        std::printf("%-44s %8.0f ms, longest gap %6.1f ms, processor %6.1f ms\n", what, all / 1000, heart.longest(),
                    processor);
        messages.take();
    }

    void trigger(const char *entry) { window.findChild<QAction *>(QLatin1String(entry))->trigger(); }
    ChildWindow *open(const char *name) { return window.findChild<ChildWindow *>(QLatin1String(name)); }
    void click(const char *on, const char *button)
    {
        open(on)->findChild<QPushButton *>(QLatin1String(button))->click();
    }
    void type(const char *on, const char *box, const QString &text)
    {
        open(on)->findChild<QLineEdit *>(QLatin1String(box))->setText(text);
    }
    bool isIdle() { return open("frmLstUtenti") && open("frmLstUtenti")->isEnabled() && messages.standing == 0; }

    void openRegister(const char *what)
    {
        measure(
            what, [this] { trigger("mnuUtenti"); }, [this] { return isIdle(); });
    }
    /// In the window of a code that @p button opens.
    void giveCode(const char *what, const char *button, const QString &code)
    {
        click("frmLstUtenti", button);
        type("frmInsCodice", "txtCodice", code);
        measure(
            what, [this] { click("frmInsCodice", "cmdOk"); }, [this] { return isIdle(); });
    }

    TestFolder test;
    Clock clock;
    FakePrinters printers;
    FakeMessages messages;
    PseudoTerminal interface {
        test.directory.filePath(u"Porte/COM7"_s)
    };
    QByteArray asked;
    Program program{{test.directory.path()}, clock, printers};
    MDIForm1 window{program, messages};
};

void work(Desk &desk)
{
    desk.measure(
        "idle", [] {}, [] { return true; });
    desk.openRegister("register opened, all truncated codes change");
    desk.giveCode("user added", "cmdNuovo", u"777777"_s);
    desk.giveCode("code changed", "cmdModifica", u"777778"_s);
    desk.messages.answers = {Messages::Answer::Yes};
    desk.measure(
        "user deleted", [&] { desk.click("frmLstUtenti", "cmdElimina"); }, [&] { return desk.isIdle(); });
    desk.measure(
        "duplicates listed and shown", [&] { desk.click("frmLstUtenti", "cmdDoppioni"); },
        [&] {
            const ChildWindow *report = desk.open("frmRepDoppioni");
            return report && !report->findChild<TaskRunner *>()->isRunning();
        });
    desk.measure(
        "  and closed", [&] { desk.click("frmRepDoppioni", "cmdOk"); }, [&] { return desk.isIdle(); });
    desk.click("frmLstUtenti", "cmdPrecod");
    desk.type("frmAddCod", "txtNumTrasm", u"9999"_s);
    desk.type("frmAddCod", "txtCodPart", u"10000000"_s);
    desk.measure(
        "run of 9,999", [&] { desk.click("frmAddCod", "cmdOK"); }, [&] { return desk.isIdle(); });
    desk.measure(
        "saved, users read again", [&] { desk.click("frmLstUtenti", "cmdSalva"); },
        [&] { return !desk.open("frmLstUtenti") && desk.program.users().isKnown(); });
    desk.openRegister("register opened, nothing changes");
    desk.measure(
        "  and closed", [&] { desk.click("frmLstUtenti", "cmdChiudi"); }, [&] { return !desk.open("frmLstUtenti"); });
    desk.measure(
        "search opened", [&] { desk.trigger("mnuEventi"); },
        [&] { return desk.open("frmEventi")->findChild<QPushButton *>(u"cmdRicerca"_s)->isEnabled(); });
    desk.measure(
        "  and closed", [&] { desk.open("frmEventi")->close(); }, [&] { return !desk.open("frmEventi"); });
    // The first look comes when the users have been read.
    desk.measure(
        "live view opened", [&] { desk.trigger("mnuEventiOdierni"); },
        [&] { return desk.open("frmEventiOdierni")->findChild<QTableView *>()->model()->rowCount() > 0; });
    desk.measure(
        "  and closed", [&] { desk.open("frmEventiOdierni")->close(); },
        [&] { return !desk.open("frmEventiOdierni"); });
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QApplication application(argumentCount, arguments);
    Desk desk;
    if (!QTest::qWaitFor(
            [&desk] { return desk.window.isEnabled() && desk.program.settings().CodProtocollo == Protocol::RsC; }))
        qFatal("the program does not come to life");
    work(desk);
    desk.window.end();
    return 0;
}
