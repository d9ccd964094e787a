#include "platform/StandardInput.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <unistd.h>
#include <utility>

StandardInput::StandardInput(QObject *parent) : QObject(parent), m_notifier(STDIN_FILENO, QSocketNotifier::Read)
{
    // Reading a terminal from the background stops a program that does not ignore this signal.
    std::signal(SIGTTIN, SIG_IGN);
    m_again.setSingleShot(true);
    m_again.setInterval(1000);
    connect(&m_again, &QTimer::timeout, this, [this] { m_notifier.setEnabled(true); });
    connect(&m_notifier, &QSocketNotifier::activated, this, &StandardInput::read);
}

void StandardInput::read()
{
    std::array<char, 4096> buffer{};
    const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count < 0) {
        // Not ours while in the background, or gone: looked at again from time to time, not in a busy loop.
        m_notifier.setEnabled(false);
        if (errno == EIO || errno == EAGAIN || errno == EINTR)
            m_again.start();
        return;
    }
    if (count == 0) {
        m_notifier.setEnabled(false);
        if (!m_begun.isEmpty())
            Q_EMIT line(std::exchange(m_begun, {}));
        Q_EMIT ended();
        return;
    }
    m_begun.append(buffer.data(), count);
    for (qsizetype end = m_begun.indexOf('\n'); end >= 0; end = m_begun.indexOf('\n')) {
        const QByteArray text = m_begun.first(end);
        m_begun.remove(0, end + 1);
        Q_EMIT line(text);
    }
}
