#pragma once

#include "archives/Database.h"

struct sqlite3_backup;

/// Copies an archive page by page as it is when the copying begins, whatever is written to it meanwhile.
class PageCopy
{
public:
    /// @param source, @param target  must outlive this object; what the target holds is lost
    static Result<PageCopy> begin(Database &source, Database &target);

    /// Copies some pages. @return true when all are copied
    Result<bool> step(int pages);

private:
    struct Closer {
        void operator()(sqlite3_backup *copy) const;
    };
    PageCopy(sqlite3_backup *copy, Database &source, Database &target)
        : m_source(&source), m_target(&target), m_copy(copy)
    {
    }

    Database *m_source;
    Database *m_target;
    std::unique_ptr<sqlite3_backup, Closer> m_copy;
};
