#include "events/EventExport.h"

EventExport::EventExport(Disk &disk, const QString &target, ExportedEvents events) : m_events(std::move(events))
{
    m_workbook.emplace(m_events.sheetName, m_events.captions);
    m_file.emplace(disk, target);
}

Result<bool> EventExport::step(const QDeadlineTimer &until)
{
    while (m_stage != Stage::Ended) {
        m_outcome = work();
        if (!m_outcome)
            m_stage = Stage::Ended;
        if (until.hasExpired())
            break;
    }
    if (m_stage == Stage::Ended) {
        // The writer stands on both others.
        m_writer.reset();
        m_file.reset();
        m_workbook.reset();
    }
    return m_outcome ? Result<bool>(m_stage == Stage::Ended) : m_outcome.fault();
}

Result<void> EventExport::work()
{
    switch (m_stage) {
    case Stage::Create:
        // At the front: a folder that takes no file is told before the rows are gone through.
        m_stage = m_events.count > 0 ? Stage::Rows : Stage::Write;
        return m_file->create();
    case Stage::Rows:
        return takeRow();
    case Stage::Write:
        return writePiece();
    case Stage::Settle:
        if (m_file->settle())
            m_stage = Stage::Commit;
        return {};
    case Stage::Commit:
        m_stage = Stage::Ended;
        return m_file->commit();
    case Stage::Ended:
        break;
    }
    return {};
}

Result<void> EventExport::takeRow()
{
    const Result<QStringList> row = m_events.row(m_position);
    if (!row)
        return row.fault();
    Result<void> added = m_workbook->addRow(row.value());
    if (++m_position < m_events.count)
        return added;
    m_stage = Stage::Write;
    return added && !m_events.note.isEmpty() ? m_workbook->addNote(m_events.note) : added;
}

Result<void> EventExport::writePiece()
{
    if (!m_writer)
        m_writer.emplace(*m_workbook, *m_file);
    const Result<bool> written = m_writer->step();
    if (!written)
        return m_file->fault();
    if (written.value())
        m_stage = Stage::Settle;
    return {};
}
