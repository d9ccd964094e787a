#pragma once

#include "platform/CsvWriter.h"
#include "platform/FreshFile.h"
#include "platform/Task.h"

#include <functional>

/// Writes lines of separated values into a file, in turns, with the mark of UTF-8 in front. It appears under its name
/// when it is whole, in the place of one that was there; what fails or goes before its end leaves nothing behind, and
/// the old file as it was.
class CsvFile : public Task
{
public:
    /// Adds line @p index from 0; each is asked for once, in order.
    using Line = std::function<void(CsvWriter &lines, qsizetype index)>;

    /// @param disk    must outlive this object
    /// @param target  absolute path
    /// @param lines   with the header, if there is one
    /// @param count   of the lines below that
    CsvFile(Disk &disk, const QString &target, CsvWriter lines, qsizetype count, Line line);

    Result<bool> step(const QDeadlineTimer &until) override;
    /// Lines so far.
    Progress progress() const override { return {m_position, m_count}; }

private:
    enum class Stage { Create, Lines, Settle, Ended };

    Result<void> work();
    Result<void> writePiece();

    FreshFile m_file;
    CsvWriter m_lines;
    const qsizetype m_count;
    const Line m_line;
    Stage m_stage = Stage::Create;
    qsizetype m_position = 0;
};
