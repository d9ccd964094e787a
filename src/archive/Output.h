#pragma once

#include "platform/FreshFile.h"
#include "platform/StandardOutput.h"

#include <memory>

namespace tool {

/// Where the result of a command goes.
class Output
{
public:
    virtual ~Output() = default;

    /// @return NotOpen when the reader of a pipe has gone
    virtual Result<void> write(QByteArray &bytes, const QDeadlineTimer &until) = 0;
    /// All has been written.
    virtual Result<void> end() { return {}; }

    /// @param path  "" = the standard output; a file appears when it is whole. @param disk  must outlive the result
    static Result<std::unique_ptr<Output>> open(const QString &path, Disk &disk);
};

/// What a command has made and not written yet. No archive is open while it is written.
class Pending
{
public:
    explicit Pending(Output &output) : m_output(output) {}

    void add(const QByteArray &bytes)
    {
        if (m_bytes.isEmpty())
            m_bytes = bytes;
        else
            m_bytes += bytes;
    }
    /// @return true when all has been written
    Result<bool> write(const QDeadlineTimer &until)
    {
        const Result<void> written = m_output.write(m_bytes, until);
        return written ? Result<bool>(m_bytes.isEmpty()) : Result<bool>(written.fault());
    }
    Result<bool> end()
    {
        const Result<void> ended = m_output.end();
        return ended ? Result<bool>(true) : Result<bool>(ended.fault());
    }

private:
    Output &m_output;
    QByteArray m_bytes;
};

} // namespace tool
