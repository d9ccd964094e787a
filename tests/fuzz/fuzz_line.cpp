// Noise on the serial line: whatever comes, in whatever order with the clock, the next good record is heard.

#include "support/TestLine.h"

#include <QCoreApplication>

#include <cstdlib>

namespace {

/// One road for all runs; nothing is registered, so that nothing is stored.
struct Heard : Road<FakeSerial> {
    Heard() : Road("COM=1\r\nLINGUA=2\r\nCHECK=1\r\n")
    {
        serial.setInputLen(1);
        serial.setRThreshold(1);
        QObject::connect(&road, &EventRoad::recordReceived, [this](const EventRecord &record) { last = record.code; });
    }

    void pass(qint64 milliseconds)
    {
        clock.milliseconds += milliseconds;
        link.wake();
    }

    QString last;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    static int argumentCount = 1;
    static char name[] = "fuzz_line";
    static char *arguments[] = {name, nullptr};
    static QCoreApplication application(argumentCount, arguments);
    static Heard heard;

    // 0xFE lets a third of a second pass, 0xFD a minute; all else comes over the line.
    for (size_t i = 0; i < size; ++i) {
        if (bytes[i] == 0xFE)
            heard.pass(333);
        else if (bytes[i] == 0xFD)
            heard.pass(60'000);
        else
            heard.serial.receive(QByteArray(1, static_cast<char>(bytes[i])));
    }
    // The line calms down: its last line ends, queries time out, late answers are no longer waited for.
    heard.serial.receive("\r\n");
    for (int second = 0; second < 12; ++second)
        heard.pass(1000);
    heard.last.clear();
    heard.serial.receive("R/A-000004711X..\r\n");
    for (int second = 0; second < 12 && heard.last.isEmpty(); ++second)
        heard.pass(1000);
    if (heard.last != u"4711"_s)
        std::abort();
    heard.serial.sent.clear();
    heard.test.disk.steps.clear();
    while (!heard.notices.isEmpty())
        heard.notices.take();
    return 0;
}
