#include "events/SearchResults.h"

#include "archives/Tables.h"
#include "codes/EventRow.h"

namespace {

/// Rows that are read at once: a screen of them and some to scroll.
constexpr qsizetype pageOfRows = 128;

/// Rows that go to the disk together. Fewer cost time; more would not all find room in the memory of the database
/// library, and where the disk takes no more, those of the last lot are lost.
constexpr qsizetype lotOfRows = 2000;

} // namespace

SearchResults::~SearchResults()
{
    close();
    // What cannot be removed now is replaced by the next search.
    (void)m_archives.remove(ArchiveName::Results);
}

SearchResults::Columns SearchResults::columnsOf(const Statement &row)
{
    QHash<QString, int> places;
    for (int column = 0; column < row.columnCount(); ++column)
        places.insert(row.columnName(column), column);
    const auto place = [&places](const char *field) { return places.value(QString::fromLatin1(field), -1); };
    return {place("Codice"), place("Tipo"), place("Data"),  place("Ora"),
            place("Canale"), place("AbCh"), place("KorDis")};
}

void SearchResults::close()
{
    m_open.reset();
    m_count = 0;
    m_held.clear();
}

Result<void> SearchResults::clear()
{
    close();
    if (Result<void> removed = m_archives.remove(ArchiveName::Results); !removed)
        return removed;
    if (Result<void> copied = m_archives.copy(ArchiveName::ResultsTemplate, ArchiveName::Results); !copied)
        return copied;
    Result<Open> opened = openArchive();
    if (!opened)
        return opened.fault();
    m_open = std::move(opened.value());
    return {};
}

Result<SearchResults::Open> SearchResults::openArchive()
{
    Result<Database> database = m_archives.open(ArchiveName::Results, Database::Use::ThrowAway);
    if (!database)
        return database.fault();
    // Nobody else looks at these rows, and they live only as long as this object.
    if (const Result<void> begun = database.value().execute("PRAGMA journal_mode = MEMORY; BEGIN EXCLUSIVE;"); !begun)
        return begun.fault();
    Result<Statement> insert = database.value().prepare(
        QStringLiteral("INSERT INTO Eventi (Cognome, Nome, Tipo, Canale, AbCh, Data, Ora, KorDis, Codice) "
                       "VALUES (?, ?, ?, ?, ifnull(?, ''), ?, ?, ifnull(?, ''), ?)"));
    if (!insert)
        return insert.fault();
    Result<Statement> select = database.value().prepare(
        QStringLiteral("SELECT Cognome, Nome, %1 FROM Eventi WHERE ProgEv > ? ORDER BY ProgEv LIMIT ?")
            .arg(QLatin1String(EventRow::Columns)));
    if (!select)
        return select.fault();
    return Open{std::move(database.value()), std::move(insert.value()), std::move(select.value())};
}

Result<void> SearchResults::add(const Statement &row, const Columns &columns, const QString &surname,
                                const QString &firstName)
{
    if (!m_open)
        return Fault{FaultCode::NotOpen, QStringView(ArchiveName::Results).toString()};
    Result<void> added = insert(row, columns, surname, firstName);
    if (added && ++m_count % lotOfRows == 0)
        added = keep();
    if (!added)
        m_count = storedRows();
    return added;
}

Result<void> SearchResults::insert(const Statement &row, const Columns &columns, const QString &surname,
                                   const QString &firstName)
{
    Statement &event = m_open->insert;
    event.bind(1, surname);
    event.bind(2, firstName);
    event.bind(3, row, columns.Tipo);
    event.bind(4, row, columns.Canale);
    event.bind(5, row, columns.AbCh);
    event.bind(6, row, columns.Data);
    event.bind(7, row, columns.Ora);
    event.bind(8, row, columns.KorDis);
    event.bind(9, row, columns.Codice);
    const Result<bool> stepped = event.step();
    event.reset();
    if (!stepped)
        return stepped.fault();
    return {};
}

/// What is added behind the last whole lot needs no disk: it stays in the memory of the database library.
Result<void> SearchResults::keep()
{
    return m_open->database.execute("COMMIT; BEGIN EXCLUSIVE;");
}

/// A disk that takes no more takes back what was added since it was written to last.
qsizetype SearchResults::storedRows()
{
    const Result<qint64> count = m_open->database.number(QStringLiteral("SELECT max(ProgEv) FROM Eventi"));
    return count ? count.value() : 0;
}

Result<ListedEvent> SearchResults::row(qsizetype row) const
{
    if (row < m_firstHeld || row >= m_firstHeld + m_held.size()) {
        // Half a page above the row as well: grids are scrolled upwards too.
        if (const Result<void> read = holdFrom(row / (pageOfRows / 2) * (pageOfRows / 2)); !read)
            return read.fault();
    }
    if (row >= m_firstHeld + m_held.size())
        return Fault{FaultCode::Damaged, QStringView(ArchiveName::Results).toString()};
    return m_held[row - m_firstHeld];
}

Result<void> SearchResults::holdFrom(qsizetype first) const
{
    m_held.clear();
    m_firstHeld = first;
    if (!m_open)
        return Fault{FaultCode::NotOpen, QStringView(ArchiveName::Results).toString()};
    m_open->select.bind({qint64{first}, qint64{pageOfRows}});
    return m_open->select.each([this](const Statement &row) {
        m_held.append({0, EventRow::read(row, 2), row.text(0), row.text(1)});
    });
}
