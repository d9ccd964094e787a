// Printing of ten thousand events: pages a second beside a loop that only paints as many lines of text, and the longest
// gap of a 5 ms heartbeat while a window prints them, beside an idle event loop.

#include "Measure.h"

#include "events/EventReport.h"
#include "startup/CurrentPrinter.h"
#include "support/Fixtures.h"
#include "texts/Texts.h"
#include "widgets/ChildWindow.h"
#include "widgets/Messages.h"
#include "widgets/PainterPage.h"
#include "widgets/Printing.h"

#include <QApplication>
#include <QEventLoop>
#include <QPainter>
#include <QPdfWriter>

namespace {

constexpr int events = 10'000;

/// A window without words.
struct BareWindow : ChildWindow {
    using ChildWindow::ChildWindow;
    void setCaptions() override {}
};

EventReport report(const Texts &texts)
{
    const auto fields = [](qsizetype i) {
        return QStringList{QString::number(i), u"DKS"_s,      u"Rossi %1"_s.arg(i),
                           u"Anna"_s,          u"B"_s,        u"X"_s,
                           u"05-03-2004"_s,    u"07:45:00"_s, QString()};
    };
    return {EventReport::Table::LastEvents, texts, {events, fields}};
}

/// Seconds of a PDF document that @p paint fills.
double painted(const QString &file, const std::function<void(PainterPage &)> &paint)
{
    return microseconds([&] {
               QPdfWriter device(file);
               QPainter painter(&device);
               PainterPage page(painter, device);
               paint(page);
           }) /
           1e6;
}

/// Longest time between two beats until @p loop ends, in milliseconds.
double longestGap(QEventLoop &loop)
{
    const Heartbeat heart;
    loop.exec();
    return heart.longest();
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QApplication application(argumentCount, arguments);
    TestFolder test;
    Texts texts;

    const QString file = test.directory.filePath(u"document.pdf"_s);
    constexpr int rowsOfPage = 31;
    constexpr int pages = events / rowsOfPage + 1;
    const QString line(84, u'x');
    QList<double> ours, bare;
    for (int round = 0; round < 3; ++round) {
        ours.append(painted(file, [&](PainterPage &page) {
            EventReport all = report(texts);
            while (!all.step(page, QDeadlineTimer(20)).value()) {
            }
        }));
        bare.append(painted(file, [&](PainterPage &page) {
            for (int i = 0; i < events; ++i) {
                if (i > 0 && i % rowsOfPage == 0)
                    page.newPage();
                page.text(0, 400 + (i % rowsOfPage) * 440, line);
            }
        }));
    }
    print("pages a second, 10,000 events; beside their bare lines", pages / quantile(ours, 0.5),
          pages / quantile(bare, 0.5), "1/s");

    FakePrinters printers;
    printers.installed = QStringList{u"laser"_s};
    Settings settings(test.folder, printers);
    Notices notices;
    CurrentPrinter printer(settings, printers, notices);
    if (!settings.CreaImpostazioni(1) || !printer.choose(0))
        return 1;
    Messages messages;
    BareWindow window(u"window"_s);
    window.show();
    Printing printing(&window, printer, texts, messages);
    QEventLoop loop;
    QTimer::singleShot(2000, &loop, &QEventLoop::quit);
    const double idle = longestGap(loop);
    printing.findPrinter([&] {
        printing.print(std::make_unique<EventReport>(report(texts)), u"bench"_s, [&loop](bool) { loop.quit(); });
    });
    print("longest gap of a 5 ms heartbeat, printing 10,000 events", longestGap(loop), idle, "ms");
    return 0;
}
