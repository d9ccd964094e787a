#include "archives/PageCopy.h"

#include <sqlite3.h>

void PageCopy::Closer::operator()(sqlite3_backup *copy) const
{
    sqlite3_backup_finish(copy);
}

Result<PageCopy> PageCopy::begin(Database &source, Database &target)
{
    // The library begins anew whenever somebody else writes, unless it reads one state all the time.
    if (const Result<void> begun = source.execute("BEGIN; SELECT count(*) FROM sqlite_master;"); !begun)
        return begun.fault();
    sqlite3_backup *copy = sqlite3_backup_init(target.m_database.get(), "main", source.m_database.get(), "main");
    if (!copy)
        return target.fault(sqlite3_extended_errcode(target.m_database.get()));
    return PageCopy(copy, source, target);
}

Result<bool> PageCopy::step(int pages)
{
    const int code = sqlite3_backup_step(m_copy.get(), pages);
    if (code == SQLITE_OK)
        return false;
    if (code != SQLITE_DONE) {
        // Which of the two it was is not told; what cannot be read counts against the source.
        const bool isRead = (code & 0xFF) == SQLITE_CORRUPT || (code & 0xFF) == SQLITE_NOTADB;
        return (isRead ? m_source : m_target)->fault(code);
    }
    m_copy.reset();
    const Result<void> ended = m_source->execute("COMMIT;");
    return ended ? Result<bool>(true) : Result<bool>(ended.fault());
}
