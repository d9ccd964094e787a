#include "journal/JournalFile.h"

#include "archives/Tables.h"
#include "archives/Transaction.h"
#include "texts/DateTimeText.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>

namespace {

/// Values of Data, Ora, Scarto.
SqlValues values(const Moment &moment)
{
    const QDateTime local = localTime(moment);
    return {DataFile(local.date()), OraTesto(local.time()), qint64(moment.offset)};
}

Result<JournalFile::End> endOf(Database &database)
{
    JournalFile::End end;
    Result<void> read = database.each(QStringLiteral("SELECT Num, Tipo FROM Giornale ORDER BY Num DESC"), {},
                                      [&end](const Statement &row) {
                                          end.number = qMax(end.number, row.integer(0));
                                          const auto kind = static_cast<JournalKind>(row.integer(1));
                                          if (kind == JournalKind::Pruned)
                                              return true;
                                          end.kind = kind;
                                          return false;
                                      });
    if (read)
        read = database.each(QStringLiteral("SELECT Data, Ora, Scarto FROM Vita"), {}, [&end](const Statement &row) {
            end.alive = momentOf(row.text(0), row.text(1), row.integer(2));
        });
    return read ? Result<JournalFile::End>(end) : read.fault();
}

} // namespace

JournalFile::JournalFile(ArchiveStore &archives, int year, Database database)
    : m_archives(archives), m_year(year), m_database(std::move(database))
{
}

Result<std::unique_ptr<JournalFile>> JournalFile::open(ArchiveStore &archives, int year)
{
    const QString name = ArchiveName::journal(year);
    const Result<void> made = archives.createUnlessThere(name, TableLayout::Journal, ArchiveName::EventsTemplate);
    if (!made)
        return made.fault();
    Result<Database> database = archives.open(name, Database::Use::Log);
    if (!database)
        return database.fault();
    std::unique_ptr<JournalFile> file(new JournalFile(archives, year, std::move(database.value())));
    if (Result<void> laidOut = file->m_database.execute(TableLayout::Journal); !laidOut)
        return laidOut.fault();
    Result<End> end = endOf(file->m_database);
    if (!end)
        return end.fault();
    file->m_end = end.value();
    file->m_last = file->m_end.number;
    file->m_names = OpenedNames(archives.folder().path(name), file->m_database);
    return file;
}

Result<std::optional<JournalFile::End>> JournalFile::endOfOther(ArchiveStore &archives, int year)
{
    QList<int> others = years(archives.folder());
    others.removeAll(year);
    if (others.isEmpty())
        return std::optional<End>();
    Result<Database> database = archives.open(ArchiveName::journal(others.constLast()), Database::Use::Safe);
    if (!database)
        return database.fault();
    const Result<End> end = endOf(database.value());
    return end ? Result<std::optional<End>>(end.value()) : end.fault();
}

QList<int> JournalFile::years(const ProgramFolder &folder)
{
    static const QRegularExpression pattern(QStringLiteral("^giornale_(\\d{4})\\.zeb\\z"),
                                            QRegularExpression::CaseInsensitiveOption);
    QList<int> years;
    const QDir archives(folder.path(QStringView(ArchiveName::Folder).toString()));
    for (const QString &name : archives.entryList(QDir::Files | QDir::Hidden, QDir::NoSort)) {
        const QRegularExpressionMatch match = pattern.match(name);
        if (match.hasMatch())
            years.append(match.capturedView(1).toInt());
    }
    std::sort(years.begin(), years.end());
    return years;
}

JournalFile::~JournalFile()
{
    if (!hasMoved()) {
        // One file that stands alone, unless somebody reads.
        (void)m_database.leaveLogMode();
        return;
    }
    m_names.giveUp(m_database, m_archives.folder().disk());
}

Result<qint64> JournalFile::write(QList<JournalRow> rows, const std::optional<Moment> &alive)
{
    Transaction transaction(m_database);
    if (Result<void> begun = transaction.begin(true); !begun)
        return begun.fault();
    qint64 last = m_last;
    qint64 ofOthers = 0;
    Result<void> done = m_database.each(QStringLiteral("SELECT count(*), max(Num) FROM Giornale WHERE Num > ?"),
                                        {m_last}, [&](const Statement &row) {
                                            ofOthers = row.integer(0);
                                            last = qMax(last, row.integer(1));
                                        });
    for (JournalRow &row : rows) {
        row.number += ofOthers;
        if (done)
            done = insert(row);
        last = row.number;
    }
    if (done && alive)
        done = m_database.execute(QStringLiteral("REPLACE INTO Vita (Data, Ora, Scarto, Num) VALUES (?, ?, ?, 1)"),
                                  values(*alive));
    if (done)
        done = transaction.commit();
    if (!done)
        return done.fault();
    m_last = last;
    return last;
}

Result<void> JournalFile::insert(const JournalRow &row)
{
    return m_database.execute(
        QStringLiteral(
            "INSERT INTO Giornale (Data, Ora, Scarto, Num, Tipo, Dato1, Dato2) VALUES (?, ?, ?, ?, ?, ?, ?)"),
        values(row.at) + SqlValues{row.number, qint64(row.kind), row.first, row.second});
}

Result<void> JournalFile::append(ArchiveStore &archives, JournalRow row)
{
    const int year = localTime(row.at).date().year();
    Result<std::unique_ptr<JournalFile>> opened = open(archives, year);
    if (!opened)
        return opened.fault();
    const Result<std::optional<End>> other = endOfOther(archives, year);
    if (!other && other.fault().code != FaultCode::Damaged)
        return other.fault();
    JournalFile &file = *opened.value();
    row.number = file.m_last;
    if (other && other.value())
        row.number = qMax(row.number, other.value()->number);
    row.number = row.number > 0 ? row.number + 1 : year * NumbersOfYear;
    const Result<qint64> written = file.write({row}, {});
    return written ? Result<void>() : Result<void>(written.fault());
}
