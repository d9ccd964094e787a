#include "platform/TextFile.h"

#include "platform/CsvWriter.h"
#include "platform/Disk.h"
#include "platform/RegularFile.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qsizetype readBytes = 65'536;

/// Bytes that go on with a character of UTF-8.
bool goesOn(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

} // namespace

Result<bool> TextFile::step(const QDeadlineTimer &until)
{
    if (!m_file) {
        Result<Descriptor> opened = openToRead(m_path);
        if (!opened)
            return opened.fault();
        m_file.emplace(std::move(opened.value()));
        struct stat status = {};
        if (::fstat(m_file->get(), &status) != 0)
            return systemFault(m_path);
        m_size = status.st_size;
        if (m_size > m_limit)
            return Fault{FaultCode::TooLarge, m_path};
        m_content.reserve(m_size);
    }
    bool isDone = false;
    do {
        if (m_isWhole) {
            isDone = checkPiece();
        } else if (const Result<bool> read = readPiece(); !read) {
            return read.fault();
        } else if (read.value()) {
            m_isWhole = true;
            if (m_content.startsWith(CsvWriter::ByteOrderMark))
                m_content.remove(0, QByteArrayView(CsvWriter::ByteOrderMark).size());
        }
    } while (!isDone && !until.hasExpired());
    return isDone;
}

/// @return true when the file has ended
Result<bool> TextFile::readPiece()
{
    const qsizetype before = m_content.size();
    m_content.resize(before + readBytes);
    ssize_t count = -1;
    do {
        count = ::read(m_file->get(), m_content.data() + before, static_cast<size_t>(readBytes));
    } while (count < 0 && errno == EINTR);
    m_content.truncate(before + std::max<ssize_t>(count, 0));
    if (count < 0)
        return systemFault(m_path);
    if (before == 0 && (m_content.startsWith("\xFF\xFE") || m_content.startsWith("\xFE\xFF")))
        m_utf16.emplace(QStringDecoder::Utf16);
    if (m_utf16) {
        QString piece = m_half + m_utf16->decode(QByteArrayView(m_content).sliced(before));
        // Half a character waits for the other one.
        m_half = count > 0 && !piece.isEmpty() && piece.back().isHighSurrogate() ? piece.last(1) : QString();
        piece.chop(m_half.size());
        m_content.replace(before, m_content.size() - before, piece.toUtf8());
    }
    // It may have grown since it was opened.
    if (m_content.size() > m_limit)
        return Fault{FaultCode::TooLarge, m_path};
    if (m_content.indexOf('\0', before) >= 0)
        return Fault{FaultCode::NoTable, m_path};
    return count == 0;
}

/// @return true when all has been looked at
bool TextFile::checkPiece()
{
    qsizetype end = std::min(m_checked + readBytes, m_content.size());
    // Not in the middle of a character, if it is one.
    for (int i = 0; i < 3 && end < m_content.size() && goesOn(m_content[end]); ++i)
        ++end;
    m_isUtf8 = QByteArrayView(m_content).sliced(m_checked, end - m_checked).isValidUtf8();
    m_checked = end;
    return !m_isUtf8 || m_checked == m_content.size();
}
