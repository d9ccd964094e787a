#include "users/UserExport.h"

#include "archives/Tables.h"
#include "users/UserLines.h"

std::unique_ptr<Task> UserExport::task(Disk &disk, const Texts &texts, UserRows users) const
{
    CsvWriter lines(separator);
    writeHeader(lines, texts);
    const qsizetype count = users.count();
    return std::make_unique<CsvFile>(disk, target, std::move(lines), count,
                                     [users = std::move(users), byWhat = protocol](CsvWriter &to, qsizetype row) {
                                         User user = users[row];
                                         user.CodTronc = truncatedCode(user.Codice, byWhat);
                                         writeUser(to, user);
                                     });
}

SavedUsers::~SavedUsers()
{
    m_set.reset();
    m_database.reset();
    // What cannot be removed now is replaced the next time.
    (void)m_archives.remove(ArchiveName::UsersExported);
}

Result<bool> SavedUsers::step(const QDeadlineTimer &until)
{
    if (!m_set) {
        if (const Result<void> copied = m_archives.copy(ArchiveName::Users, ArchiveName::UsersExported); !copied)
            return copied.fault();
        Result<Database> opened = m_archives.open(ArchiveName::UsersExported, Database::Use::ThrowAway);
        if (!opened)
            return opened.fault();
        m_database.emplace(std::move(opened.value()));
        m_set.emplace(*m_database, QStringLiteral("SELECT * FROM Utenti"), RecordSet::Kind::Snapshot,
                      QString::fromLatin1(userColumns.front().field));
    }
    return m_set->requery(until);
}
