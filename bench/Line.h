#pragma once

#include "link/LineReader.h"
#include "platform/PseudoTerminal.h"
#include "support/Fixtures.h"

/// Registers the codes 1001 and following.
inline void fill(TestFolder &test, int users)
{
    QList<QStringList> all;
    for (int i = 1; i <= users; ++i)
        all.append(
            {QString::number(1000 + i), QStringLiteral("TX"), QStringLiteral("Surname"), QStringLiteral("Name")});
    test.addUsers(all);
}

/// A line with all that stands behind it, over a pseudo-terminal.
struct Line {
    explicit Line(int registered)
    {
        fill(test, registered);
        if (!interface.open() || !users.open())
            qFatal("the line cannot be made");
        log.open();
        serial.setCommPort(1);
        serial.setInputLen(1);
        if (!serial.setPortOpen(true))
            qFatal("the port cannot be opened");
    }

    TestFolder test;
    FakeClock clock;
    Notices notices;
    FakePrinters printers;
    Settings settings{test.folder, printers};
    PseudoTerminal interface {
        test.directory.filePath(QStringLiteral("Porte/COM1"))
    };
    SerialPorts ports{test.folder};
    SerialControl serial{ports};
    LinkMonitor link{serial, settings, clock};
    UserDirectory users{test.archives, ArchiveName::UsersSnapshot};
    EventLog log{test.archives, clock, notices};
    EventRoad road{users, log, clock};
    LineReader reader{serial, link, road};
};
