#include "platform/StandardOutput.h"

#include "platform/Disk.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// What poll() allows to be written takes at least this much without waiting.
constexpr qsizetype pieceThatFits = 4096;
constexpr int longestWait = 1000;

} // namespace

StandardOutput::StandardOutput()
{
    struct stat status = {};
    // A description of our own that never waits; the shell's stays as it is. A file never waits, and has one place that
    // all write at.
    if (::fstat(STDOUT_FILENO, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode)))
        m_own = ::open("/proc/self/fd/1", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

StandardOutput::~StandardOutput()
{
    if (m_own >= 0)
        ::close(m_own);
}

Result<void> StandardOutput::write(QByteArray &bytes, const QDeadlineTimer &until)
{
    const int file = m_own >= 0 ? m_own : STDOUT_FILENO;
    qsizetype done = 0;
    Result<void> result;
    while (done < bytes.size()) {
        pollfd output{file, POLLOUT, 0};
        const qint64 wait = until.isForever() ? longestWait : std::clamp<qint64>(until.remainingTime(), 0, longestWait);
        const int ready = ::poll(&output, 1, static_cast<int>(wait));
        if (ready == 0 && until.hasExpired())
            break;
        if (ready <= 0)
            continue;
        const qsizetype left = bytes.size() - done;
        const qsizetype piece = m_own >= 0 ? left : std::min(left, pieceThatFits);
        const ssize_t written = ::write(file, bytes.constData() + done, static_cast<size_t>(piece));
        if (written < 0 && errno != EINTR && errno != EAGAIN) {
            result = errno == EPIPE ? Fault{FaultCode::NotOpen, {}} : systemFault(QStringLiteral("stdout"));
            break;
        }
        done += std::max<ssize_t>(written, 0);
    }
    bytes.remove(0, done);
    return result;
}

bool StandardOutput::isTerminal()
{
    return ::isatty(STDOUT_FILENO) == 1;
}

int StandardOutput::columns()
{
    winsize size{};
    return ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool isErrorOutputTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}
