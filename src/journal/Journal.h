#pragma once

#include "journal/CoverageReading.h"
#include "journal/JournalFile.h"
#include "platform/Clock.h"
#include "texts/Notices.h"

#include <QObject>
#include <QTimer>

#include <functional>

/// The journal of the program's own service: when it listened, what changed, what failed.
///
/// Nothing waits for it. What is noted stands in memory until the event loop is free and goes to the disk with one
/// flush; with nothing to write a sign of life goes there once a minute, so that an end without order is known to the
/// minute. What cannot be written is tried again every ten seconds, and told once when that has not helped for a
/// minute; a device that is nearly full is left to the events. Of more than QueueLimit rows the oldest are lost; their
/// running numbers stay unused.
class Journal : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype QueueLimit = 1000;
    /// Bytes on the device that are the events' alone.
    static constexpr qint64 Reserve = 16 << 20;

    /// All must outlive this object.
    Journal(ArchiveStore &archives, const Clock &clock, Notices &notices, QObject *parent = nullptr);
    ~Journal() override;

    /// Notes the start. From here on rows are written, those noted before as well; an end without order of the run
    /// before is noted in front of them.
    void begin(const QString &version);
    /// @param first, @param second  see JournalKind; at most 100 characters
    void note(JournalKind kind, const QString &first = {}, const QString &second = {});
    /// The same of what happened a while ago.
    void noteLate(JournalKind kind, qint64 millisecondsAgo);
    /// Notes the end in order, which was @p millisecondsAgo, writes what waits and closes the file.
    void end(qint64 millisecondsAgo = 0);

    /// Writes what waits, and begins to find out whether this program and those before it listened. The one that runs
    /// is known to listen until now when all its rows are on disk. @param until  as of CoverageReading
    std::unique_ptr<CoverageReading> read(const DailyHours &hours, const Moment &until);

    /// The moment that lies @p millisecondsAgo.
    Moment momentBefore(qint64 millisecondsAgo) const;
    /// Writes what waits and a sign of life; its own timer calls it in time.
    void wake();

    /// Bytes that are free on the device of the archives; a test says what it wants.
    std::function<qint64()> spaceLeft;

Q_SIGNALS:
    /// A reader does not find what stands: rows before this are lost, or in another file. It is to be noted anew.
    void stateWanted();

private:
    void append(JournalRow row);
    void lookAtClock();
    Result<void> write();
    Result<void> openFile(int year);
    Result<void> findPlace(bool isAfresh);
    Result<void> turnYear(const Moment &now);

    const Clock &m_clock;
    ArchiveStore &m_archives;
    Notices &m_notices;
    std::unique_ptr<JournalFile> m_file;
    QList<JournalRow> m_queue;
    qsizetype m_lost = 0; ///< rows that should stand before those in the queue
    qint64 m_next = 0;    ///< running number of the next row, 0 = not known yet
    bool m_running = false;
    bool m_isStateWanted = false;
    bool m_isDamaged = false; ///< writing has found it out: the file is to be set aside
    int m_failures = 0;       ///< in a row
    QTimer m_timer;

    qint64 m_wall = 0;   ///< clock when it was looked at last, milliseconds since 1970
    qint64 m_steady = 0; ///< the same by what nobody sets: monotonic, with what was slept
};
