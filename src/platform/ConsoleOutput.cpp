#include "platform/ConsoleOutput.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace {

constexpr qsizetype lineLimit = 10'000;
constexpr int againMilliseconds = 50;
/// A pipe that is ready takes at least this much without blocking.
constexpr qsizetype pieceSize = 4096;

bool isReady()
{
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    return ::poll(&output, 1, 0) == 1;
}

} // namespace

ConsoleOutput::ConsoleOutput(QObject *parent) : QObject(parent)
{
    m_again.setInterval(againMilliseconds);
    connect(&m_again, &QTimer::timeout, this, &ConsoleOutput::drain);
}

ConsoleOutput::~ConsoleOutput()
{
    drain();
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
    while (!m_waiting.isEmpty() && isReady()) {
        QByteArray &line = m_waiting.first();
        const ssize_t written =
            ::write(STDOUT_FILENO, line.constData(), static_cast<size_t>(qMin(line.size(), pieceSize)));
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
