#pragma once

#include "platform/FreshFile.h"
#include "platform/Task.h"
#include "platform/Workbook.h"

#include <functional>
#include <optional>

/// What an export writes.
struct ExportedEvents {
    QString sheetName;    ///< 1 to 25 characters, none of []:*?/\ .
    QStringList captions; ///< of the columns
    qsizetype count = 0;  ///< of the rows
    /// Row @p index from 0. Each is asked for once, in order; a fault ends the export.
    std::function<Result<QStringList>(qsizetype index)> row;
    QString note = {}; ///< stands in a row of its own behind them, "" = none does
};

/// Writes events into a spreadsheet file, at least one row in each step.
///
/// The file appears under its name when it is whole, in the place of one that was there. An export that fails, or that
/// goes before it has ended, leaves nothing behind, and the old file as it was.
class EventExport : public Task
{
public:
    /// @param disk    must outlive this object
    /// @param target  absolute path of the file to be made or replaced
    EventExport(Disk &disk, const QString &target, ExportedEvents events);

    Result<bool> step(const QDeadlineTimer &until) override;
    /// Rows taken so far.
    Progress progress() const override { return {m_position, m_events.count}; }

private:
    enum class Stage { Create, Rows, Write, Settle, Commit, Ended };

    Result<void> work();
    Result<void> takeRow();
    Result<void> writePiece();

    ExportedEvents m_events;
    Stage m_stage = Stage::Create;
    qsizetype m_position = 0;
    Result<void> m_outcome;
    std::optional<Workbook> m_workbook;
    std::optional<FreshFile> m_file;
    std::optional<WorkbookWriter> m_writer;
};
