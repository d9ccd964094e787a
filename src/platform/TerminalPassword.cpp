#include "platform/TerminalPassword.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr char controlC = 3;
constexpr int pauseMilliseconds = 1000;

/// Another job has the terminal: who changes or reads it now does so under the hands of that one.
bool isInBackground()
{
    const pid_t foreground = ::tcgetpgrp(STDIN_FILENO);
    return foreground >= 0 && foreground != ::getpgrp();
}

} // namespace

/// No echo for as long as it lives.
class TerminalPassword::Silence
{
public:
    Silence()
    {
        ::tcgetattr(STDIN_FILENO, &m_before);
        termios silent = m_before;
        // Ctrl+C ends the line like Enter and is seen as a character: the terminal gets its echo back in every case.
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
        silent.c_cc[VEOL] = controlC;
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~Silence() { ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before); }
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;

private:
    termios m_before{};
};

TerminalPassword::TerminalPassword(QObject *parent) : QObject(parent), m_notifier(STDIN_FILENO, QSocketNotifier::Read)
{
    m_notifier.setEnabled(false);
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &TerminalPassword::listen);
    connect(&m_notifier, &QSocketNotifier::activated, this, &TerminalPassword::read);
}

TerminalPassword::~TerminalPassword() = default;

bool TerminalPassword::isThere()
{
    return ::isatty(STDIN_FILENO) == 1;
}

void TerminalPassword::ask(const QString &prompt, int pause)
{
    m_prompt = prompt;
    m_notifier.setEnabled(false);
    m_pause.start(pause * 1000);
}

void TerminalPassword::end()
{
    m_notifier.setEnabled(false);
    m_pause.stop();
    m_silence.reset();
}

void TerminalPassword::listen()
{
    if (isInBackground()) {
        m_pause.start(pauseMilliseconds);
        return;
    }
    if (!m_silence)
        m_silence = std::make_unique<Silence>();
    ::tcflush(STDIN_FILENO, TCIFLUSH);
    m_line.clear();
    std::fprintf(stderr, "%s ", m_prompt.toUtf8().constData());
    m_notifier.setEnabled(true);
}

void TerminalPassword::read()
{
    // Reading from the background would stop the program, which may be receiving by now.
    if (isInBackground()) {
        m_notifier.setEnabled(false);
        m_pause.start(pauseMilliseconds);
        return;
    }
    std::array<char, 256> buffer{};
    const ssize_t count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count <= 0)
        return take(m_line.isEmpty());
    const auto end = std::find_if(buffer.begin(), buffer.begin() + count,
                                  [](char character) { return character == '\n' || character == controlC; });
    m_line.append(buffer.data(), end - buffer.begin());
    if (end != buffer.begin() + count)
        take(*end == controlC);
}

void TerminalPassword::take(bool isGivenUp)
{
    m_notifier.setEnabled(false);
    std::fputc('\n', stderr);
    const QString text = QString::fromUtf8(std::exchange(m_line, {}));
    if (isGivenUp)
        Q_EMIT givenUp();
    else
        Q_EMIT typed(text);
}
