#pragma once

#include "codes/UserDirectory.h"
#include "events/EventSink.h"
#include "platform/FreshFile.h"
#include "platform/Workbook.h"
#include "texts/Texts.h"

#include <QDeadlineTimer>

#include <optional>

namespace tool {

/// The found events as a spreadsheet, with the columns that the window exports.
class EventSheet : public EventSink
{
public:
    /// @param disk, @param users  must outlive this object; @param path  of the file, which appears when it is whole
    EventSheet(Disk &disk, const QString &path, const Texts &texts, const UserDirectory &users);

    Result<void> create() { return m_file.create(); }
    Result<void> add(const Statement &row, const SearchResults::Columns &columns) override;
    void keep() override;
    void takeBack() override { m_rows.clear(); }
    /// Writes the file, once all events are there. @return true when it is written
    Result<bool> write(const QDeadlineTimer &until);
    qint64 count() const { return m_count; } ///< events kept

private:
    const UserDirectory &m_users;
    Workbook m_workbook;
    FreshFile m_file;
    std::optional<WorkbookWriter> m_writer; ///< stands on both
    QList<QStringList> m_rows;              ///< not kept yet
    Result<void> m_kept;                    ///< why one could not be
    qint64 m_count = 0;
};

} // namespace tool
