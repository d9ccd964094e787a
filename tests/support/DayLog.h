#pragma once

#include "link/EventLog.h"
#include "support/Fixtures.h"
#include "support/RecordingVfs.h"
#include "texts/DateTimeText.h"

inline const QString today = u"05-03-2004"_s;
inline const QString statement = u"SELECT Codice, Data, Ora, Tipo, Canale, DataOrd FROM Eventi ORDER BY ProgEv"_s;

inline QString row(const Event &e)
{
    return QStringList{e.Codice, DataFile(e.Data), OraTesto(e.Ora), typeText(e.Tipo), e.Canale, DataOrdinabile(e.Data)}
        .join(u'|');
}

/// The log of the day in a folder; what it has told is noted.
struct Day {
    explicit Day(TestFolder &folder, bool opens = true) : test(folder)
    {
        QObject::connect(&log, &EventLog::stored, [this](const Event &e) { told.append(row(e)); });
        if (opens)
            log.open();
    }
    Event event(int code) const
    {
        return makeEvent(*decodeRecord("R/A-" + QByteArray::number(code).rightJustified(9, '0') + "X..\r"),
                         clock.now());
    }
    bool append(int code) { return log.append(event(code)); }
    /// Tries until nothing waits any more.
    bool storeAll()
    {
        log.retry();
        return QTest::qWaitFor([this] { return waiting(log) == 0; });
    }
    /// What the status bar shows.
    QString waits() const { return log.waits() ? english(*log.waits()) : QString(); }
    qsizetype onDisk() { return log.unsaved() > 0 ? 0 : waiting(log); }
    /// Another program's hold on the archive of a day, as long as the result lives.
    std::optional<Database> lock(const QString &day = today)
    {
        return test.hold(ArchiveName::events(day), "BEGIN IMMEDIATE");
    }
    QStringList rows(const QString &day = today) { return test.rows(ArchiveName::events(day), statement); }

    TestFolder &test;
    FakeClock clock;
    Notices notices;
    QStringList told; ///< before the log, which signals into it while it closes
    EventLog log{test.archives, clock, notices};
};

/// The same in a folder of its own, on a device that can refuse.
struct Stage {
    RecordingVfs vfs;
    TestFolder test;
    Day day{test};
};
