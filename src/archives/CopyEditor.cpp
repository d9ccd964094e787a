#include "archives/CopyEditor.h"

#include "archives/Tables.h"

CopyEditor::CopyEditor(ArchiveStore &archives, Source source) : m_archives(archives), m_source(std::move(source))
{
}

CopyEditor::~CopyEditor()
{
    discard();
}

Result<void> CopyEditor::open()
{
    if (Result<void> begun = begin(); !begun)
        return begun;
    const Result<bool> isRead = read(QDeadlineTimer(QDeadlineTimer::Forever));
    return isRead ? Result<void>() : Result<void>(isRead.fault());
}

Result<bool> CopyEditor::read(const QDeadlineTimer &until)
{
    Result<bool> isRead = m_database ? m_set->requery(until) : Result<bool>(notOpen());
    if (!isRead)
        discard();
    return isRead;
}

Result<void> CopyEditor::begin()
{
    return beginWith([this] { return m_archives.copy(m_source.archive, m_source.copy); });
}

Result<void> CopyEditor::beginAnew(const char *layout)
{
    return beginWith([this, layout] {
        return m_archives.create(m_source.copy, layout, m_source.archive, Database::Use::ThrowAway);
    });
}

Result<void> CopyEditor::beginWith(const std::function<Result<void>()> &makeCopy)
{
    discard();
    // What is locked or damaged is told here, before bytes are copied that another program may be writing.
    if (const Result<void> free = checkArchive(); !free)
        return free.fault();
    if (Result<void> removed = m_archives.remove(m_source.copy); !removed)
        return removed;
    m_working = true;
    Result<void> done = makeCopy();
    if (done)
        done = openCopy();
    if (done)
        m_set = RecordSet(*m_database, m_source.statement, RecordSet::Kind::Dynaset, m_source.order);
    else
        discard();
    return done;
}

/// That the archive can be read, and that nobody is changing it.
Result<void> CopyEditor::checkArchive() const
{
    Result<Database> archive = m_archives.open(m_source.archive, Database::Use::Safe);
    return archive ? archive.value().execute("BEGIN IMMEDIATE; ROLLBACK;") : Result<void>(archive.fault());
}

Result<void> CopyEditor::openCopy()
{
    // Whatever the copy holds is flushed when it takes the archive's place.
    Result<Database> database = m_archives.open(m_source.copy, Database::Use::ThrowAway);
    if (!database)
        return database.fault();
    m_database = std::move(database.value());
    return {};
}

Result<void> CopyEditor::save()
{
    return finish(*saving());
}

std::unique_ptr<Task> CopyEditor::saving(Pieces::Piece before)
{
    if (!before)
        before = [] { return Result<void>(); };
    std::vector<Pieces::Piece> pieces;
    pieces.push_back(before);
    pieces.push_back([this] { return checkToReplace(); });
    // From the disk, as it is copied: what this program holds of it in memory may be better than that.
    pieces.push_back([this] { return m_archives.readThrough(m_source.copy); });
    pieces.push_back([this] { return keepBackup(); });
    pieces.push_back([this, before] {
        const Result<void> again = before();
        return again ? replace() : again;
    });
    return std::make_unique<Pieces>(std::move(pieces));
}

Result<void> CopyEditor::checkToReplace()
{
    if (!m_working)
        return notOpen();
    // A damaged or missing archive is mended by the copy; one that another program is changing must not be taken from
    // it.
    Result<void> old = checkArchive();
    if (old && !m_source.backup.isEmpty())
        old = m_archives.readThrough(m_source.archive);
    m_isOldWhole = old.ok();
    return !old && old.fault().code == FaultCode::Locked ? old : Result<void>();
}

Result<void> CopyEditor::replace()
{
    m_database.reset();
    if (Result<void> copied = m_archives.copy(m_source.copy, m_source.archive); !copied) {
        // When this fails too, the rows stay in sight and the copy on disk can still be saved.
        (void)openCopy();
        return copied;
    }
    discard();
    return {};
}

Result<void> CopyEditor::keepBackup()
{
    // An earlier backup is worth more than an archive that cannot be read.
    if (m_source.backup.isEmpty() || !m_isOldWhole)
        return {};
    ProgramFolder &folder = m_archives.folder();
    const QString backups = QStringView(ArchiveName::BackupFolder).toString();
    if (!folder.isFolder(backups)) {
        if (Result<void> made = folder.disk().makeFolder(folder.path(backups)); !made)
            return made;
    }
    return m_archives.copy(m_source.archive, m_source.backup);
}

void CopyEditor::discard()
{
    // What is still being read hangs on the database.
    if (m_set)
        m_set->stopReading();
    m_database.reset();
    m_changed = false;
    // What cannot be removed now is removed when the archive is opened the next time.
    if (std::exchange(m_working, false))
        (void)m_archives.remove(m_source.copy);
}

bool CopyEditor::contains(const RecordSet::Values &wanted) const
{
    RecordSet aside = *m_set;
    return aside.findFirst(wanted);
}

Result<void> CopyEditor::requery()
{
    return m_database ? m_set->requery() : notOpen();
}

template<class Change>
Result<void> CopyEditor::change(Change make)
{
    if (!m_database)
        return notOpen();
    Result<void> made = make(*m_set);
    if (made)
        m_changed = true;
    return made;
}

Result<void> CopyEditor::add(const RecordSet::Values &values)
{
    return change([&values](RecordSet &set) { return set.addNew(values); });
}

Result<void> CopyEditor::edit(const RecordSet::Values &values)
{
    return change([&values](RecordSet &set) { return set.edit(values); });
}

Result<void> CopyEditor::remove()
{
    return change([](RecordSet &set) { return set.remove(); });
}
