#include "platform/CsvFile.h"

namespace {

constexpr qsizetype writtenBytes = 16'384;

} // namespace

CsvFile::CsvFile(Disk &disk, const QString &target, CsvWriter lines, qsizetype count, Line line)
    : m_file(disk, target), m_lines(std::move(lines)), m_count(count), m_line(std::move(line))
{
}

Result<bool> CsvFile::step(const QDeadlineTimer &until)
{
    do {
        if (const Result<void> done = work(); !done)
            return done.fault();
    } while (m_stage != Stage::Ended && !until.hasExpired());
    return m_stage == Stage::Ended;
}

Result<void> CsvFile::work()
{
    switch (m_stage) {
    case Stage::Create: {
        Result<void> created = m_file.create();
        if (created && m_file.write(CsvWriter::ByteOrderMark) < 0)
            created = m_file.fault();
        m_stage = Stage::Lines;
        return created;
    }
    case Stage::Lines:
        return writePiece();
    case Stage::Settle:
        if (!m_file.settle())
            return {};
        m_stage = Stage::Ended;
        return m_file.commit();
    case Stage::Ended:
        break;
    }
    return {};
}

Result<void> CsvFile::writePiece()
{
    while (m_position < m_count && m_lines.size() < writtenBytes)
        m_line(m_lines, m_position++);
    if (m_position == m_count)
        m_stage = Stage::Settle;
    const QByteArray bytes = m_lines.take();
    return m_file.write(bytes) == bytes.size() ? Result<void>() : m_file.fault();
}
