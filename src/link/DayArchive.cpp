#include "link/DayArchive.h"

#include "archives/Tables.h"
#include "codes/EventRow.h"

#include <QElapsedTimer>

#include <algorithm>

namespace {

/// Longest that opening reads.
constexpr int firstTurnMilliseconds = 20;
/// Rows that are read in one go: well below a millisecond.
constexpr qint64 pieceRows = 1000;

QString statement(QStringView text)
{
    return text.toString().replace(QLatin1String("%columns"), QLatin1String(EventRow::Columns));
}

} // namespace

DayArchive::DayArchive(ArchiveStore &archives, QDate day, Database database, Statement insert)
    : m_archives(archives), m_day(day), m_database(std::move(database)), m_insert(std::move(insert))
{
}

Result<std::unique_ptr<DayArchive>> DayArchive::open(ArchiveStore &archives, QDate day)
{
    const QString name = ArchiveName::events(day);
    const bool isNew = !archives.exists(name);
    if (isNew) {
        if (Result<void> copied = archives.copy(ArchiveName::EventsTemplate, name); !copied)
            return copied.fault();
    }
    const auto tryToOpen = [&]() -> Result<std::unique_ptr<DayArchive>> {
        Result<Database> database = archives.open(name, Database::Use::Log);
        if (!database)
            return database.fault();
        Result<Statement> insert = database.value().prepare(
            statement(u"INSERT INTO Eventi (%columns, ProgEv) VALUES (?, ?, ?, ?, ?, ?, ?, ?, nullif(?, 0))"));
        if (!insert)
            return insert.fault();
        std::unique_ptr<DayArchive> archive(
            new DayArchive(archives, day, std::move(database.value()), std::move(insert.value())));
        if (Result<void> looked = archive->look(); !looked)
            return looked.fault();
        if (Result<void> read = archive->readOn(firstTurnMilliseconds); !read)
            return read.fault();
        return archive;
    };
    Result<std::unique_ptr<DayArchive>> opened = tryToOpen();
    if (!opened && isNew && opened.fault().code == FaultCode::Damaged) {
        // It is the template that is damaged: another copy would be no better.
        (void)archives.remove(name);
        return Fault{FaultCode::TemplateDamaged, QStringView(ArchiveName::EventsTemplate).toString()};
    }
    return opened;
}

/// Looks what is there; with the first look into it the journal is there too.
Result<void> DayArchive::look()
{
    if (const Result<qint64> last = highest(); !last)
        return last.fault();
    // The name may be a link, the journals stand beside the file.
    m_names[0].path = m_archives.folder().path(ArchiveName::events(m_day));
    m_names[1].path = m_database.path() + QStringLiteral("-wal");
    m_names[2].path = m_database.path() + QStringLiteral("-shm");
    for (Named &name : m_names)
        name.file = identityOf(name.path);
    return {};
}

// Reading it through
// ---------------------------------------------------------------------------------------------------

Result<void> DayArchive::readOn(int milliseconds)
{
    QElapsedTimer turn;
    turn.start();
    while (!isRead() && turn.elapsed() < milliseconds) {
        const Result<bool> more = readPiece();
        if (!more)
            return more.fault();
        if (more.value())
            continue;
        m_reading = m_reading == Reading::Table ? Reading::Index : Reading::Done;
        m_row = 0;
    }
    return {};
}

Result<bool> DayArchive::readPiece()
{
    return m_reading == Reading::Table ? readRows() : readIndex();
}

/// Reads the pages of the table, which hold the rows. @return whether there are more
Result<bool> DayArchive::readRows()
{
    Result<Statement> piece =
        m_database.prepare(QStringLiteral("SELECT count(*), max(ProgEv) FROM (SELECT ProgEv FROM Eventi NOT INDEXED "
                                          "WHERE ProgEv > ? ORDER BY ProgEv LIMIT ?)"));
    if (!piece)
        return piece.fault();
    piece.value().bind(1, m_row);
    piece.value().bind(2, pieceRows);
    const Result<bool> row = piece.value().step();
    if (!row)
        return row.fault();
    m_row = piece.value().integer(1);
    return piece.value().integer(0) == pieceRows;
}

/// Reads the pages of the index, which search and views go by.
Result<bool> DayArchive::readIndex()
{
    if (m_row == 0) {
        Result<Statement> index =
            m_database.prepare(QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = 'EventiOrdine'"));
        if (!index)
            return index.fault();
        Result<bool> isThere = index.value().step();
        if (!isThere || !isThere.value())
            return isThere;
    }
    Result<Statement> piece = m_database.prepare(QStringLiteral(
        "SELECT Data, Ora, ProgEv FROM Eventi INDEXED BY EventiOrdine WHERE (Data, Ora, ProgEv) > (?, ?, ?) "
        "ORDER BY Data, Ora, ProgEv LIMIT 1 OFFSET ?"));
    if (!piece)
        return piece.fault();
    piece.value().bind(1, m_key[0]);
    piece.value().bind(2, m_key[1]);
    piece.value().bind(3, m_row);
    piece.value().bind(4, pieceRows - 1);
    Result<bool> row = piece.value().step();
    if (!row || !row.value())
        return row;
    m_key = {piece.value().text(0), piece.value().text(1)};
    m_row = piece.value().integer(2);
    return true;
}

// Rows
// -----------------------------------------------------------------------------------------------------------------

Result<qint64> DayArchive::insert(const Event &event, qint64 number)
{
    EventRow::bind(m_insert, 1, event);
    m_insert.bind(9, number);
    const Result<bool> stored = m_insert.step();
    const qint64 row = m_database.lastRow();
    m_insert.reset();
    if (!stored)
        return stored.fault();
    m_isDirty = true;
    if (number == 0)
        m_last = row;
    return row;
}

Result<qint64> DayArchive::highest()
{
    Result<Statement> query = m_database.prepare(QStringLiteral("SELECT max(ProgEv) FROM Eventi"));
    if (!query)
        return query.fault();
    if (const Result<bool> row = query.value().step(); !row)
        return row.fault();
    m_last = query.value().integer(0);
    return m_last;
}

Result<bool> DayArchive::holds(const Event &event, qint64 number)
{
    Result<Statement> query = m_database.prepare(statement(u"SELECT %columns FROM Eventi WHERE ProgEv = ?"));
    if (!query)
        return query.fault();
    query.value().bind(1, number);
    Result<bool> row = query.value().step();
    if (!row || !row.value())
        return row;
    return EventRow::read(query.value(), 0) == event;
}

Result<qint64> DayArchive::count(const Event &event)
{
    Result<Statement> query = m_database.prepare(
        statement(u"SELECT count(*) FROM Eventi WHERE Data = ?2 AND Ora = ?3 AND Codice = ?1 AND Tipo = ?4 "
                  "AND Canale = ?5 AND AbCh = ?6 AND KorDis = ?7 AND DataOrd = ?8"));
    if (!query)
        return query.fault();
    EventRow::bind(query.value(), 1, event);
    const Result<bool> row = query.value().step();
    if (!row)
        return row.fault();
    return query.value().integer(0);
}

Result<QList<DayArchive::Row>> DayArchive::rows(Statement &query)
{
    QList<Row> rows;
    Result<bool> more = query.step();
    for (; more && more.value(); more = query.step())
        rows.append({query.integer(0), EventRow::read(query, 2), query.integer(1)});
    if (!more)
        return more.fault();
    return rows;
}

Result<QList<DayArchive::Row>> DayArchive::last(qsizetype most)
{
    // The statement ends with this call: while it reads, what the writer has put aside cannot be brought together.
    Result<Statement> query = m_database.prepare(
        statement(u"SELECT ProgEv, 0, %columns FROM Eventi ORDER BY Data DESC, Ora DESC, ProgEv DESC LIMIT ?"));
    if (!query)
        return query.fault();
    query.value().bind(1, static_cast<qint64>(most));
    Result<QList<Row>> events = rows(query.value());
    if (events)
        std::reverse(events.value().begin(), events.value().end());
    return events;
}

Result<QList<DayArchive::Row>> DayArchive::after(qint64 number, qsizetype most)
{
    Result<Statement> query = m_database.prepare(
        statement(u"SELECT ProgEv, (SELECT count(*) FROM Eventi AS e WHERE e.Data = d.Data AND e.Ora = d.Ora AND "
                  "e.ProgEv <= d.ProgEv AND e.Codice = d.Codice AND e.Tipo = d.Tipo AND e.Canale = d.Canale AND "
                  "e.AbCh = d.AbCh AND e.KorDis = d.KorDis AND e.DataOrd = d.DataOrd), %columns "
                  "FROM Eventi AS d WHERE ProgEv > ? ORDER BY ProgEv LIMIT ?"));
    if (!query)
        return query.fault();
    query.value().bind(1, number);
    query.value().bind(2, static_cast<qint64>(most));
    return rows(query.value());
}

qsizetype DayArchive::countAfter(qint64 number)
{
    Result<Statement> query = m_database.prepare(QStringLiteral("SELECT count(*) FROM Eventi WHERE ProgEv > ?"));
    if (!query)
        return 0;
    query.value().bind(1, number);
    const Result<bool> row = query.value().step();
    return row ? static_cast<qsizetype>(query.value().integer(0)) : 0;
}

// The file
// -------------------------------------------------------------------------------------------------------------

/// True when the name does not lead to the file any more that it led to.
bool DayArchive::isOther(const Named &name)
{
    const std::optional<FileIdentity> now = identityOf(name.path);
    return now && name.file && *now != *name.file;
}

bool DayArchive::isReplaced() const
{
    return isOther(m_names[0]);
}

bool DayArchive::hasMoved() const
{
    return isReplaced() || isOther(m_names[1]);
}

Result<void> DayArchive::bringTogether()
{
    if (!m_isDirty)
        return {};
    Result<void> done = m_database.checkpoint();
    m_isDirty = !done;
    return done;
}

bool DayArchive::leaveLogMode()
{
    m_insert.reset();
    return m_database.leaveLogMode().ok();
}

void DayArchive::giveUpNames()
{
    m_database.keepSideFiles();
    // A journal of this file must not be taken for one of the file that has its name now.
    for (const Named &side : {m_names[1], m_names[2]}) {
        if (side.file && identityOf(side.path) == side.file)
            (void)m_archives.folder().disk().remove(side.path);
    }
}
