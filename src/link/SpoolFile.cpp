#include "link/SpoolFile.h"

#include "archives/Tables.h"
#include "archives/Transaction.h"
#include "codes/EventRow.h"
#include "link/SpoolRescue.h"
#include "texts/DateTimeText.h"

#include <algorithm>

namespace {

QString statement(const char *text)
{
    return QString::fromLatin1(text).arg(QLatin1String(EventRow::Columns));
}

WaitingEvent::Mark markOf(qint64 state)
{
    return static_cast<WaitingEvent::Mark>(std::clamp<qint64>(state, 0, 2));
}

} // namespace

SpoolFile::SpoolFile(ArchiveStore &archives, Database database, Statement insert)
    : m_archives(archives), m_database(std::move(database)), m_insert(std::move(insert))
{
}

bool SpoolFile::exists(ArchiveStore &archives)
{
    (void)SpoolRescue::complete(archives);
    return archives.exists(ArchiveName::Waiting);
}

Result<std::unique_ptr<SpoolFile>> SpoolFile::open(ArchiveStore &archives)
{
    if (Result<void> completed = SpoolRescue::complete(archives); !completed)
        return completed.fault();
    const Result<void> made =
        archives.createUnlessThere(ArchiveName::Waiting, TableLayout::Waiting, ArchiveName::EventsTemplate);
    if (!made)
        return made.fault();
    Result<Database> database = archives.open(ArchiveName::Waiting, Database::Use::Log);
    if (!database)
        return database.fault();
    if (Result<void> laidOut = database.value().execute(TableLayout::Waiting); !laidOut)
        return laidOut.fault();
    Result<Statement> insert = database.value().prepare(
        statement("INSERT INTO Attesa (%1, Giorno, Stato, Copia, Posto) VALUES (?,?,?,?,?,?,?,?,?,?,?,?)"));
    if (!insert)
        return insert.fault();
    std::unique_ptr<SpoolFile> file(new SpoolFile(archives, std::move(database.value()), std::move(insert.value())));
    if (Result<void> looked = file->look(); !looked)
        return looked.fault();
    return file;
}

/// Counts what there is, which reads every page of it; with the first look into it the journal is there too.
Result<void> SpoolFile::look()
{
    const auto note = [this](const Statement &row) {
        m_found[dayOfFile(row.text(0))].at(static_cast<size_t>(markOf(row.integer(1)))) +=
            static_cast<qsizetype>(row.integer(2));
    };
    Result<void> looked =
        m_database.each(QStringLiteral("SELECT Giorno, Stato, count(*) FROM Attesa GROUP BY Giorno, Stato"), {}, note);
    m_names = OpenedNames(m_archives.folder().path(QStringView(ArchiveName::Waiting).toString()), m_database);
    return looked;
}

Result<void> SpoolFile::add(const QList<WaitingEvent> &events)
{
    Transaction transaction(m_database);
    if (Result<void> begun = transaction.begin(); !begun)
        return begun;
    for (const WaitingEvent &waiting : events) {
        m_insert.bind(EventRow::values(waiting.event) +
                      SqlValues{DataFile(waiting.day), static_cast<qint64>(waiting.mark), waiting.copy, waiting.place});
        const Result<bool> done = m_insert.step();
        m_insert.reset();
        if (!done)
            return done.fault();
    }
    return transaction.commit();
}

/// While events are being brought from an archive others come: they are later ones.
Result<QList<WaitingEvent>> SpoolFile::first(QDate day, bool undecidedToo, qsizetype most)
{
    QList<WaitingEvent> events;
    const auto take = [&events, day](const Statement &row) {
        events.append(
            {day, EventRow::read(row, 4), markOf(row.integer(1)), row.integer(2), row.integer(3), row.integer(0)});
    };
    const qint64 leftOut = undecidedToo ? -1 : static_cast<qint64>(WaitingEvent::Mark::Undecided);
    const Result<void> read =
        m_database.each(statement("SELECT Num, Stato, Copia, Posto, %1 FROM Attesa WHERE Giorno = ? AND Stato <> ? "
                                  "ORDER BY Stato <> ?, Num LIMIT ?"),
                        {DataFile(day), leftOut, static_cast<qint64>(WaitingEvent::Mark::Brought), qint64{most}}, take);
    return read ? Result<QList<WaitingEvent>>(std::move(events)) : read.fault();
}

/// Runs a statement with number and place of each event.
Result<void> SpoolFile::change(const QList<WaitingEvent> &events, const char *sql)
{
    Transaction transaction(m_database);
    if (Result<void> begun = transaction.begin(); !begun)
        return begun;
    Result<Statement> prepared = m_database.prepare(QString::fromLatin1(sql));
    if (!prepared)
        return prepared.fault();
    for (const WaitingEvent &waiting : events) {
        prepared.value().bind(1, waiting.number);
        prepared.value().bind(2, waiting.place);
        const Result<bool> done = prepared.value().step();
        prepared.value().reset();
        if (!done)
            return done.fault();
    }
    return transaction.commit();
}

Result<void> SpoolFile::setPlaces(const QList<WaitingEvent> &events)
{
    return change(events, "UPDATE Attesa SET Posto = ?2 WHERE Num = ?1");
}

Result<void> SpoolFile::remove(const QList<WaitingEvent> &events)
{
    return change(events, "DELETE FROM Attesa WHERE Num = ?1");
}

void SpoolFile::finish(bool isEmpty)
{
    m_insert.reset();
    (void)m_database.leaveLogMode();
    if (isEmpty)
        (void)m_archives.remove(ArchiveName::Waiting);
}
