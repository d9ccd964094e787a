#pragma once

#include <QByteArray>
#include <QTimer>

#include <fcntl.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

/// Another file in the place of one of the standard files, for as long as this lives.
class Redirected
{
public:
    Redirected(int file, int by) : m_file(file), m_before(::dup(file)) { ::dup2(by, file); }
    ~Redirected() { ::close((::dup2(m_before, m_file), m_before)); }
    Redirected(const Redirected &) = delete;
    Redirected &operator=(const Redirected &) = delete;

private:
    int m_file, m_before;
};

/// Somebody at a terminal that stands in the place of the standard input. He types whenever it does not echo: @p first
/// once, and then @p second again and again.
class Typist : public QTimer
{
public:
    Typist(const QByteArray &first, const QByteArray &second) : m_input(STDIN_FILENO, m_keyboard)
    {
        callOnTimeout([this, line = first, second]() mutable {
            if (!echoes() && ::write(m_terminal, line.constData(), std::size_t(line.size())) > 0)
                line = second;
        });
        start(20);
    }
    ~Typist() override
    {
        ::close(m_keyboard);
        ::close(m_terminal);
    }

    int terminal() const { return m_terminal; }
    bool echoes() const
    {
        termios state{};
        return ::tcgetattr(m_keyboard, &state) == 0 && (state.c_lflag & ECHO) != 0;
    }

private:
    int m_terminal = -1, m_keyboard = -1;
    const int m_opened = ::openpty(&m_terminal, &m_keyboard, nullptr, nullptr, nullptr);
    Redirected m_input;
};
