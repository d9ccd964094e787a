#include "link/SpoolRescue.h"

#include "archives/Tables.h"

namespace {

const QString workingName = QStringLiteral("Archivi/Attesa.$$$");
/// Of the table, from Num on.
constexpr int columnsOfTable = 13;

} // namespace

Result<void> SpoolRescue::complete(ArchiveStore &archives)
{
    if (archives.exists(ArchiveName::Waiting) || !archives.exists(workingName))
        return {};
    const ProgramFolder &folder = archives.folder();
    const QString path = folder.path(workingName);
    // With a journal it is not whole, and somebody has deleted the damaged one.
    return hasJournals(path) ? archives.remove(workingName)
                             : folder.disk().rename(path, folder.path(QStringView(ArchiveName::Waiting).toString()));
}

Result<std::unique_ptr<SpoolRescue>> SpoolRescue::begin(ArchiveStore &archives)
{
    std::unique_ptr<SpoolRescue> rescue(new SpoolRescue(archives));
    if (Result<void> opened = rescue->open(); !opened)
        return opened.fault();
    return rescue;
}

SpoolRescue::~SpoolRescue()
{
    close();
    if (m_archives.exists(ArchiveName::Waiting))
        (void)m_archives.remove(workingName);
}

Result<void> SpoolRescue::open()
{
    Result<Database> damaged = m_archives.open(ArchiveName::Waiting, Database::Use::Untouched);
    if (!damaged && damaged.fault().code != FaultCode::Damaged)
        return damaged.fault();
    if (damaged) {
        m_damaged = std::move(damaged.value());
        Result<ReadableRows> rows =
            ReadableRows::open(*m_damaged, QStringLiteral("Attesa"), QStringLiteral("1"), SqlValues());
        if (!rows && rows.fault().code != FaultCode::Damaged)
            return rows.fault();
        if (rows && rows.value().row().columnCount() > columnsOfTable)
            m_rows = std::move(rows.value());
    }
    Result<void> made = m_archives.remove(workingName);
    if (made)
        made = m_archives.create(workingName, TableLayout::Waiting, ArchiveName::EventsTemplate);
    if (!made)
        return made;
    Result<Database> opened = m_archives.open(workingName, Database::Use::Safe);
    if (!opened)
        return opened.fault();
    m_made = std::move(opened.value());
    Result<Statement> insert = m_made->prepare(QStringLiteral("INSERT INTO Attesa VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?)"));
    if (!insert)
        return insert.fault();
    m_insert = std::move(insert.value());
    return m_made->execute("BEGIN EXCLUSIVE");
}

Result<bool> SpoolRescue::step(const QDeadlineTimer &until)
{
    while (m_rows) {
        const Result<ReadableRows::Found> found = m_rows->step();
        if (!found)
            return found.fault();
        if (found.value() == ReadableRows::Found::End)
            break;
        if (found.value() == ReadableRows::Found::Row) {
            if (Result<void> taken = take(m_rows->row()); !taken)
                return taken.fault();
        }
        if (until.hasExpired())
            return false;
    }
    return true;
}

Result<void> SpoolRescue::take(const Statement &row)
{
    SqlValues columns;
    for (int column = 1; column <= columnsOfTable; ++column)
        columns.append(row.text(column));
    m_insert->bind(columns);
    const Result<bool> inserted = m_insert->step();
    m_insert->reset();
    m_count += inserted ? 1 : 0;
    return inserted ? Result<void>() : inserted.fault();
}

Result<QString> SpoolRescue::finish()
{
    if (Result<void> done = m_made->execute("COMMIT"); !done)
        return done.fault();
    close();
    Result<QString> aside = m_archives.setAside(ArchiveName::Waiting);
    if (!aside)
        return aside;
    const Result<void> completed = complete(m_archives);
    return completed ? aside : Result<QString>(completed.fault());
}

void SpoolRescue::close()
{
    m_rows.reset();
    m_damaged.reset();
    m_insert.reset();
    m_made.reset();
}
