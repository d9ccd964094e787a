#include "link/DayArchive.h"

#include "archives/ReunitedDay.h"
#include "archives/Tables.h"
#include "codes/EventRow.h"

#include <QElapsedTimer>
#include <QFile>

#include <algorithm>
#include <utility>

namespace {

/// Longest that opening reads.
constexpr int firstTurnMilliseconds = 20;
/// Latest rows that are looked for where the file has changed.
constexpr qint64 rowsLookedAt = 5000;
/// Rows that are read in one go: well below a millisecond.
constexpr qint64 rowsOfAStep = 1000;

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
    m_names = OpenedNames(m_archives.folder().path(ArchiveName::events(m_day)), m_database);
    m_stamp = stampOf(m_database.path());
    return {};
}

/// A file that is copied over another keeps the identity of that, and nothing that is read or stored here fails: the
/// library has the pages in memory, and its journal speaks of a file that is not there any more.
bool DayArchive::isOverwritten()
{
    const std::optional<FileStamp> stamp = stampOf(m_database.path());
    const std::optional<QByteArray> journal = m_isLogged ? beginningOfJournal() : std::nullopt;
    // What is written to a journal after it was emptied stands where it would have stood otherwise.
    m_isOverwritten = m_isOverwritten || (journal && !journal->isEmpty() && journal->count('\0') == journal->size());
    const bool isEmptied = journal && journal->isEmpty();
    if (m_isOverwritten || !stamp || (stamp == m_stamp && !isEmptied))
        return m_isOverwritten;
    // Both also come about when the journal is brought into the file: only then does one who looks anew see all.
    m_stamp = stamp;
    m_isLogged = m_isLogged && !isEmptied;
    const Result<bool> isSeen = isSeenAnew();
    m_isOverwritten = isSeen && !isSeen.value();
    if (!isSeen) {
        m_stamp.reset();
        m_isLogged = m_isLogged || isEmptied;
    }
    return m_isOverwritten;
}

/// Its mark, which it has from the first row on. @return nothing when that cannot be read
std::optional<QByteArray> DayArchive::beginningOfJournal() const
{
    QFile journal(m_database.path() + QStringLiteral("-wal"));
    return journal.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ? std::optional(journal.read(4)) : std::nullopt;
}

/// Whether one who opens the files anew finds in them what this connection has. @return a fault when that is not known
Result<bool> DayArchive::isSeenAnew()
{
    // An older copy lacks the latest ones, but for those of the journal, which are far fewer.
    const QString latest = QStringLiteral("SELECT count(*) FROM Eventi NOT INDEXED WHERE ProgEv > ?");
    const SqlValues behind{m_last - rowsLookedAt};
    const Result<qint64> held = m_database.number(latest, behind);
    Result<Database> anew = m_archives.open(ArchiveName::events(m_day), Database::Use::Untouched);
    const Result<qint64> found = anew ? anew.value().number(latest, behind) : Result<qint64>(anew.fault());
    // What cannot be read may be damaged: then it is set aside with its journal, which would be lost here.
    if (held && found)
        return held.value() == found.value();
    return held ? found.fault() : held.fault();
}

// Reading it through -------------------------------------------------------------------------------------------------

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
    qint64 count = 0;
    const Result<void> read =
        m_database.each(QStringLiteral("SELECT count(*), max(ProgEv) FROM (SELECT ProgEv FROM Eventi NOT INDEXED "
                                       "WHERE ProgEv > ? ORDER BY ProgEv LIMIT ?)"),
                        {m_row, rowsOfAStep}, [this, &count](const Statement &row) {
                            count = row.integer(0);
                            m_row = row.integer(1);
                        });
    return read ? Result<bool>(count == rowsOfAStep) : read.fault();
}

/// Reads the pages of the index, which search and views go by.
Result<bool> DayArchive::readIndex()
{
    if (m_row == 0) {
        const Result<qint64> isThere =
            m_database.number(QStringLiteral("SELECT 1 FROM sqlite_master WHERE name = 'EventiOrdine'"));
        if (!isThere || isThere.value() == 0)
            return isThere ? Result<bool>(false) : isThere.fault();
    }
    bool isMore = false;
    const Result<void> read = m_database.each(
        QStringLiteral("SELECT Data, Ora, ProgEv FROM Eventi INDEXED BY EventiOrdine "
                       "WHERE (Data, Ora, ProgEv) > (?, ?, ?) ORDER BY Data, Ora, ProgEv LIMIT 1 OFFSET ?"),
        {m_key[0], m_key[1], m_row, rowsOfAStep - 1}, [this, &isMore](const Statement &row) {
            m_key = {row.text(0), row.text(1)};
            m_row = row.integer(2);
            isMore = true;
        });
    return read ? Result<bool>(isMore) : read.fault();
}

// Rows ---------------------------------------------------------------------------------------------------------------

Result<qint64> DayArchive::insert(const Event &event, qint64 number)
{
    return insert(EventRow::values(event), number);
}

Result<qint64> DayArchive::insert(const SqlValues &columns, qint64 number)
{
    const qint64 first = number == 0 && m_behind > 0 && m_last == m_behind ? m_behind + 1 : number;
    m_insert.bind(columns + SqlValues{first});
    const Result<bool> stored = m_insert.step();
    const qint64 row = m_database.lastRow();
    m_insert.reset();
    if (!stored)
        return stored.fault();
    m_isDirty = true;
    m_isLogged = true;
    if (number == 0) {
        // Together with its journal, and the index of that, an older copy leaves no trace but its numbers.
        m_isOverwritten |= row <= m_last;
        m_last = row;
    }
    return row;
}

Result<qint64> DayArchive::highest()
{
    Result<qint64> found = m_database.number(QStringLiteral("SELECT max(ProgEv) FROM Eventi"));
    if (!found)
        return found;
    m_last = std::max(found.value(), m_behind);
    return found;
}

Result<bool> DayArchive::holds(const Event &event, qint64 number)
{
    bool isEqual = false;
    const Result<void> read = m_database.each(statement(u"SELECT %columns FROM Eventi WHERE ProgEv = ?"), {number},
                                              [&](const Statement &row) { isEqual = EventRow::read(row, 0) == event; });
    return read ? Result<bool>(isEqual) : read.fault();
}

Result<bool> DayArchive::isFree(qint64 number)
{
    const Result<qint64> found =
        m_database.number(QStringLiteral("SELECT count(*) FROM Eventi WHERE ProgEv = ?"), {number});
    return found ? Result<bool>(found.value() == 0) : found.fault();
}

Result<void> DayArchive::setRescued()
{
    m_isDirty = true;
    return ReunitedDay::markBrought(m_database);
}

Result<qint64> DayArchive::count(const Event &event)
{
    return m_database.number(
        statement(u"SELECT count(*) FROM Eventi WHERE Data = ?2 AND Ora = ?3 AND Codice = ?1 AND Tipo = ?4 "
                  "AND Canale = ?5 AND AbCh = ?6 AND KorDis = ?7 AND DataOrd = ?8"),
        EventRow::values(event));
}

Result<QList<DayArchive::Row>> DayArchive::rows(QStringView sql, const SqlValues &values)
{
    QList<Row> rows;
    const Result<void> read = m_database.each(statement(sql), values, [&rows](const Statement &row) {
        rows.append({row.integer(0), EventRow::read(row, 2), row.integer(1)});
    });
    return read ? Result<QList<Row>>(std::move(rows)) : read.fault();
}

Result<QList<DayArchive::Row>> DayArchive::after(qint64 number, qsizetype most)
{
    return rows(u"SELECT ProgEv, (SELECT count(*) FROM Eventi AS e WHERE e.Data = d.Data AND e.Ora = d.Ora AND "
                "e.ProgEv <= d.ProgEv AND e.Codice = d.Codice AND e.Tipo = d.Tipo AND e.Canale = d.Canale AND "
                "e.AbCh = d.AbCh AND e.KorDis = d.KorDis AND e.DataOrd = d.DataOrd), %columns "
                "FROM Eventi AS d WHERE ProgEv > ? ORDER BY ProgEv LIMIT ?",
                {number, qint64{most}});
}

qsizetype DayArchive::countAfter(qint64 number)
{
    const Result<qint64> count =
        m_database.number(QStringLiteral("SELECT count(*) FROM Eventi WHERE ProgEv > ?"), {number});
    return count ? static_cast<qsizetype>(count.value()) : 0;
}

// The file -----------------------------------------------------------------------------------------------------------

Result<void> DayArchive::bringTogether()
{
    if (!m_isDirty)
        return {};
    Result<void> done = m_database.checkpoint();
    m_isDirty = !done;
    m_isLogged = m_isLogged && m_isDirty;
    return done;
}

bool DayArchive::leaveLogMode()
{
    m_insert.reset();
    return m_database.leaveLogMode().ok();
}

void DayArchive::giveUpNames()
{
    m_names.giveUp(m_database, m_archives.folder().disk());
    if (!m_isOverwritten || m_names.isReplaced())
        return;
    // What was copied over the file is not to be mixed with what stands in the journal: nobody brings that into it
    // while another one reads.
    Result<ArchiveBytes> file = ArchiveBytes::open(m_database.path());
    if (file && file.value().hold())
        m_given = std::move(file.value());
}
