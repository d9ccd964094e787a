#include "archive/EventSheet.h"

#include <QFileInfo>

namespace tool {

namespace {

QStringList sheetCaptions(const Texts &texts)
{
    QStringList all;
    for (const EventColumn &column : EventColumns::found)
        all.append(texts[column.caption]);
    return all;
}

} // namespace

EventSheet::EventSheet(Disk &disk, const QString &path, const Texts &texts, const UserDirectory &users)
    : m_users(users),
      m_workbook(texts[Text::EventiFoglio], sheetCaptions(texts)),
      m_file(disk, QFileInfo(path).absoluteFilePath())
{
}

Result<void> EventSheet::add(const Statement &row, const SearchResults::Columns &columns)
{
    const User *user = m_users.find(row.text(columns.Codice), typeOf(row.text(columns.Tipo)));
    // As EventColumns::found has them.
    m_rows.append({user ? user->Cognome : QString(), user ? user->Nome : QString(), row.text(columns.Tipo),
                   row.text(columns.Canale), row.text(columns.AbCh), row.text(columns.Data), row.text(columns.Ora),
                   row.text(columns.KorDis)});
    return m_kept;
}

void EventSheet::keep()
{
    for (const QStringList &row : std::exchange(m_rows, {})) {
        if (const Result<void> added = m_workbook.addRow(row); !added && m_kept)
            m_kept = added;
        ++m_count;
    }
}

Result<bool> EventSheet::write(const QDeadlineTimer &until)
{
    if (!m_kept)
        return m_kept.fault();
    if (!m_writer)
        m_writer.emplace(m_workbook, m_file);
    do {
        const Result<bool> written = m_writer->step();
        if (!written)
            return m_file.fault();
        if (written.value()) {
            const Result<void> stands = m_file.commit();
            return stands ? Result<bool>(true) : Result<bool>(stands.fault());
        }
    } while (!until.hasExpired());
    return false;
}

} // namespace tool
