#pragma once

#include "archives/ArchiveStore.h"
#include "archives/OpenedNames.h"
#include "link/WaitingEvent.h"

#include <QList>
#include <QMap>

#include <array>
#include <memory>

/// The archive of events that wait (ArchiveName::Waiting), open in write-ahead mode. Every change is on disk when it is
/// reported done, and made as a whole or not at all.
class SpoolFile
{
public:
    using Counts = std::array<qsizetype, 3>; ///< of events, by their mark

    /// Whether there is one to be opened.
    static bool exists(ArchiveStore &archives);
    /// Opens the file and reads it through, or makes it when there is none.
    static Result<std::unique_ptr<SpoolFile>> open(ArchiveStore &archives);

    /// What waits for each day.
    const QMap<QDate, Counts> &found() const { return m_found; }
    Result<void> add(const QList<WaitingEvent> &events);
    /// The first events of a day in their order, brought ones before all others, at most @p most. @param undecidedToo
    /// so those of that mark
    Result<QList<WaitingEvent>> first(QDate day, bool undecidedToo, qsizetype most);
    /// Keeps the places that the events have now.
    Result<void> setPlaces(const QList<WaitingEvent> &events);
    Result<void> remove(const QList<WaitingEvent> &events);

    /// Brings all rows into the file itself, but for those that a reader holds back.
    void bringTogether() { (void)m_database.checkpoint(); }
    /// True when another file, or none, stands under its name or that of its journal.
    bool hasMoved() const { return m_names.hasMoved(); }
    /// Before it is closed: one file again, which goes when nothing waits in it.
    void finish(bool isEmpty);
    /// Before one that has moved is closed: what stands under its names is not its own, but for journals that still
    /// are.
    void giveUpNames() { m_names.giveUp(m_database, m_archives.folder().disk()); }

private:
    SpoolFile(ArchiveStore &archives, Database database, Statement insert);
    Result<void> look();
    Result<void> change(const QList<WaitingEvent> &events, const char *sql);

    ArchiveStore &m_archives;
    Database m_database;
    Statement m_insert;
    OpenedNames m_names;
    QMap<QDate, Counts> m_found;
};
