// Longest gap of a 5 ms heartbeat in the main window while a silent interface is asked, beside an idle event loop.

#include "Measure.h"

#include "mainwindow/MDIForm1.h"
#include "platform/PseudoTerminal.h"
#include "support/Fixtures.h"

#include <QApplication>
#include <QEventLoop>

namespace {

/// Longest time between two beats, in milliseconds.
double longestGap(int milliseconds)
{
    const Heartbeat heart;
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
    return heart.longest();
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QApplication application(argumentCount, arguments);
    TestFolder test;
    test.addUsers({});
    test.write(u"Impost.stp"_s, "COM=7\r\nLINGUA=2\r\nNUMEVOD=25\r\nCHECK=0\r\nPRN=-1\r\n");
    PseudoTerminal silent(test.directory.filePath(u"Porte/COM7"_s));
    if (!silent.open())
        return 1;
    const Clock clock;
    const FakePrinters printers;
    const double bare = longestGap(4000);
    Program program({test.directory.path()}, clock, printers);
    if (program.prepare(2, {}))
        return 1;
    Messages messages;
    MDIForm1 window(program, messages);
    window.load();
    // The window comes to life, asks three times for a second each, and shows its message.
    print("longest gap of a 5 ms heartbeat, silent interface", longestGap(6000), bare, "ms");
    window.end();
    return 0;
}
