#include "platform/ConsoleOutput.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr qsizetype lineLimit = 10'000;
constexpr int againMilliseconds = 50;
/// A pipe that is ready takes at least this much without blocking.
constexpr qsizetype pieceSize = 4096;

bool isReady(int file)
{
    pollfd output{file, POLLOUT, 0};
    return ::poll(&output, 1, 0) == 1;
}

} // namespace

ConsoleOutput::ConsoleOutput(QObject *parent) : QObject(parent)
{
    // A description of our own that never waits; the shell's stays as it is. Where there is none (a socket), a piece
    // that poll() allows is written to the shell's.
    m_own = ::open("/proc/self/fd/1", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_APPEND | O_CLOEXEC);
    // A program in the background of a terminal that stops its writers goes on.
    std::signal(SIGTTOU, SIG_IGN);
    m_again.setInterval(againMilliseconds);
    connect(&m_again, &QTimer::timeout, this, &ConsoleOutput::drain);
}

ConsoleOutput::~ConsoleOutput()
{
    drain();
    if (m_own >= 0)
        ::close(m_own);
}

void ConsoleOutput::write(const QByteArray &line)
{
    if (m_waiting.size() >= lineLimit)
        m_waiting.removeFirst();
    m_waiting.append(line + '\n');
    drain();
}

void ConsoleOutput::drain()
{
    const int file = m_own >= 0 ? m_own : STDOUT_FILENO;
    while (!m_waiting.isEmpty() && isReady(file)) {
        QByteArray &line = m_waiting.first();
        const ssize_t written = ::write(file, line.constData(), static_cast<size_t>(qMin(line.size(), pieceSize)));
        if (written < 0 && (errno == EINTR || errno == EAGAIN))
            break;
        // Nobody reads any more: the events are in their archive all the same.
        if (written < 0 || written >= line.size())
            m_waiting.removeFirst();
        else
            line.remove(0, written);
    }
    if (m_waiting.isEmpty())
        m_again.stop();
    else if (!m_again.isActive())
        m_again.start();
}
