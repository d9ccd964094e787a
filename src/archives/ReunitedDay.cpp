#include "archives/ReunitedDay.h"

#include "archives/Tables.h"

#include <algorithm>

namespace {

/// What is stored of an event but its number.
constexpr std::array fields = {QLatin1String("Codice"), QLatin1String("Data"),   QLatin1String("Ora"),
                               QLatin1String("Tipo"),   QLatin1String("Canale"), QLatin1String("AbCh"),
                               QLatin1String("KorDis"), QLatin1String("DataOrd")};

} // namespace

ReunitedDay::ReunitedDay(ArchiveStore &archives, QString workingName, Database::Use use)
    : m_archives(archives), m_workingName(std::move(workingName)), m_use(use)
{
}

ReunitedDay::~ReunitedDay()
{
    clear();
}

Result<bool> ReunitedDay::isBroughtInto(Database &archive)
{
    const Result<qint64> mark = archive.number(QStringLiteral("PRAGMA user_version"));
    return mark ? Result<bool>(mark.value() > 0) : mark.fault();
}

void ReunitedDay::clear()
{
    m_reading.reset();
    m_claim.reset();
    m_insert.reset();
    m_working.reset();
    // What cannot be removed now is replaced when it is made again.
    if (!m_workingName.isEmpty())
        (void)m_archives.remove(m_workingName);
}

Result<void> ReunitedDay::start(const DayFiles &files, const QString &condition, const SqlValues &values)
{
    clear();
    m_files = QStringList{files.archive} + files.setAside;
    m_condition = condition;
    m_values = values;
    m_file = files.archive.isEmpty() ? 1 : 0;
    m_gathered = 0;
    m_hasRead = false;
    m_archiveFault.reset();
    m_lock.reset();
    return make();
}

Result<Database> ReunitedDay::makeWorking()
{
    if (m_workingName.isEmpty())
        return m_archives.createNameless(TableLayout::Reunited);
    const Result<void> made = m_archives.create(m_workingName, TableLayout::Reunited, ArchiveName::EventsTemplate);
    return made ? m_archives.open(m_workingName, Database::Use::ThrowAway) : Result<Database>(made.fault());
}

Result<void> ReunitedDay::make()
{
    Result<Database> opened = makeWorking();
    if (!opened)
        return opened.fault();
    m_working = std::move(opened.value());
    if (Result<void> begun = m_working->execute("PRAGMA journal_mode = MEMORY; BEGIN EXCLUSIVE;"); !begun)
        return begun;
    // An equal row of an earlier file stands for this one when it has its number, or when another row has that there,
    // unless it stands for another of this file already. Where the number is free the row never came.
    Result<Statement> claim = m_working->prepare(QStringLiteral(
        "UPDATE Riuniti SET Visto = ?9 WHERE rowid = (SELECT rowid FROM Riuniti WHERE Codice = ?1 AND Data = ?2 AND "
        "Ora = ?3 AND Tipo = ?4 AND Canale = ?5 AND AbCh = ?6 AND KorDis = ?7 AND DataOrd = ?8 AND Visto < ?9 AND "
        "(Num = ?10 OR EXISTS (SELECT 1 FROM Riuniti AS r WHERE r.Num = ?10 AND r.Origine < ?9)) "
        "ORDER BY Num <> ?10 LIMIT 1)"));
    if (!claim)
        return claim.fault();
    Result<Statement> insert = m_working->prepare(QStringLiteral(
        "INSERT INTO Riuniti (Codice, Data, Ora, Tipo, Canale, AbCh, KorDis, DataOrd, Visto, Origine, Num) "
        "VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?9, ?10)"));
    if (!insert)
        return insert.fault();
    m_claim = std::move(claim.value());
    m_insert = std::move(insert.value());
    return {};
}

Result<bool> ReunitedDay::step(const QDeadlineTimer &until)
{
    do {
        if (!m_reading && m_file >= m_files.size())
            return true;
        if (const Result<void> done = m_reading ? readOn() : openNext(); !done)
            return done.fault();
    } while (!until.hasExpired());
    return false;
}

Result<void> ReunitedDay::openNext()
{
    const Database::Use use = m_file == 0 ? m_use : Database::Use::Untouched;
    Result<std::unique_ptr<Reading>> opened = open(m_files[m_file], use);
    if (opened)
        m_reading = std::move(opened.value());
    else
        finishFile(opened.fault());
    return {};
}

Result<std::unique_ptr<ReunitedDay::Reading>> ReunitedDay::open(const QString &name, Database::Use use)
{
    Result<Database> database = m_archives.open(name, use);
    if (!database)
        return database.fault();
    std::unique_ptr<Reading> reading(new Reading{std::move(database.value()), {}});
    Result<ReadableRows> rows = ReadableRows::open(reading->database, QStringLiteral("Eventi"), m_condition, m_values);
    if (!rows)
        return rows.fault();
    reading->rows = std::move(rows.value());
    const Statement &row = reading->rows->row();
    reading->columns.fill(-1);
    for (int column = 0; column < row.columnCount(); ++column) {
        const auto *field = std::find(fields.begin(), fields.end(), row.columnName(column));
        if (field != fields.end())
            reading->columns.at(static_cast<size_t>(field - fields.begin())) = column;
    }
    if (std::find(reading->columns.begin(), reading->columns.end(), -1) != reading->columns.end())
        return Fault{FaultCode::Damaged, reading->database.path()};
    return reading;
}

Result<void> ReunitedDay::readOn()
{
    const Result<ReadableRows::Found> found = m_reading->rows->step();
    if (found && found.value() == ReadableRows::Found::Row)
        return take(m_reading->rows->row());
    if (found && found.value() == ReadableRows::Found::Nothing)
        return {};
    const ReadableRows::Extent extent = m_reading->rows->extent();
    m_hasRead |= extent != ReadableRows::Extent::Nothing;
    std::optional<Fault> fault;
    if (!found)
        fault = found.fault();
    else if (extent != ReadableRows::Extent::Whole)
        fault = Fault{FaultCode::Damaged, m_reading->database.path()};
    finishFile(fault);
    return {};
}

Result<void> ReunitedDay::take(const Statement &row)
{
    SqlValues values;
    for (const int column : m_reading->columns)
        values.append(row.text(column));
    values += SqlValues{qint64{m_file}, row.integer(0)};
    if (m_file > 0) {
        m_claim->bind(values);
        const Result<bool> claimed = m_claim->step();
        m_claim->reset();
        if (!claimed)
            return claimed.fault();
        if (m_working->changes() > 0)
            return {};
    }
    m_insert->bind(values);
    const Result<bool> inserted = m_insert->step();
    m_insert->reset();
    if (!inserted)
        return inserted.fault();
    ++m_gathered;
    return {};
}

/// @param fault  why not all of it was read
void ReunitedDay::finishFile(const std::optional<Fault> &fault)
{
    m_reading.reset();
    if (m_file == 0)
        m_archiveFault = fault;
    else if (fault && fault->code == FaultCode::Locked)
        m_lock = fault;
    ++m_file;
}

Result<qint64> ReunitedDay::countSetAside()
{
    return m_working->number(QStringLiteral("SELECT count(*) FROM Riuniti WHERE Visto > 0"));
}

Result<Statement> ReunitedDay::rows(Which which)
{
    // Of one second those of the files set aside came first. By the index only seconds are sorted: no turn is long.
    const QString sql =
        QStringLiteral("SELECT Num, Codice, Data, Ora, Tipo, Canale, AbCh, KorDis, DataOrd FROM Riuniti "
                       "INDEXED BY RiunitiUguali WHERE DataOrd >= '' AND Origine >= %1 "
                       "ORDER BY DataOrd, Ora, Origine = 0, Origine, Num");
    return m_working->prepare(sql.arg(which == Which::NotInArchive ? 1 : 0));
}
