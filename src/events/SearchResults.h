#pragma once

#include "archives/ArchiveStore.h"
#include "events/EventColumns.h"

#include <optional>

/// The events that a search has found, in the order in which they were added, in a throw-away archive of their own:
/// there may be millions, and no more than a page of them is held in memory.
class SearchResults
{
public:
    /// @param archives  must outlive this object
    explicit SearchResults(ArchiveStore &archives) : m_archives(archives) {}
    /// Removes the archive.
    ~SearchResults();
    SearchResults(const SearchResults &) = delete;
    SearchResults &operator=(const SearchResults &) = delete;

    /// Starts anew without a row, in an archive that takes the place of any that was left behind.
    Result<void> clear();

    /// Columns of the statement that reads a day.
    struct Columns {
        int Codice, Tipo, Data, Ora, Canale, AbCh, KorDis;
    };
    /// By their names; -1 for one that is not there.
    static Columns columnsOf(const Statement &row);
    /// Copies the event that @p row stands on, with the names of its user.
    /// @return why there is no place for more; the rows added before stay, but for at most the last 2,000
    Result<void> add(const Statement &row, const Columns &columns, const QString &surname, const QString &firstName);

    qsizetype count() const { return m_count; }
    /// @param row  0 to count() - 1
    Result<ListedEvent> row(qsizetype row) const;

private:
    struct Open {
        Database database;
        Statement insert;
        Statement select;
    };

    void close();
    Result<void> insert(const Statement &row, const Columns &columns, const QString &surname, const QString &firstName);
    Result<void> keep();
    Result<void> holdFrom(qsizetype first) const;
    Result<Open> openArchive();
    qsizetype storedRows();

    ArchiveStore &m_archives;
    mutable std::optional<Open> m_open;
    qsizetype m_count = 0;
    mutable qsizetype m_firstHeld = 0; ///< place of the first of the rows that are held
    mutable QList<ListedEvent> m_held;
};
