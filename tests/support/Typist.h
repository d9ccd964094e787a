#pragma once

#include <QByteArray>

#include <atomic>
#include <fcntl.h>
#include <pty.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

/// Something else in the place of one of the standard files, for as long as this lives.
class Redirected
{
public:
    Redirected(int file, int by) : m_file(file), m_before(::dup(file)) { ::dup2(by, file); }
    ~Redirected()
    {
        ::dup2(m_before, m_file);
        ::close(m_before);
    }
    Redirected(const Redirected &) = delete;
    Redirected &operator=(const Redirected &) = delete;

private:
    int m_file, m_before;
};

/// Somebody at a terminal that stands in the place of the standard input. He types whenever it does not echo: @p first
/// once, and then @p second again and again.
class Typist
{
public:
    Typist(const QByteArray &first, const QByteArray &second)
        : m_input(STDIN_FILENO, m_keyboard), m_person([this, first, second] {
              for (QByteArray line = first; !m_end;) {
                  if (!echoes() && ::write(m_terminal, line.constData(), std::size_t(line.size())) > 0)
                      line = second;
                  std::this_thread::sleep_for(std::chrono::milliseconds(20));
              }
          })
    {
    }
    ~Typist()
    {
        m_end = true;
        m_person.join();
        ::close(m_keyboard);
        ::close(m_terminal);
    }

    /// What the terminal has shown.
    QByteArray seen() const
    {
        QByteArray shown(4096, '\0');
        ::fcntl(m_terminal, F_SETFL, O_NONBLOCK);
        shown.truncate(qMax<qsizetype>(0, ::read(m_terminal, shown.data(), std::size_t(shown.size()))));
        return shown;
    }
    bool echoes() const
    {
        termios state{};
        return ::tcgetattr(m_keyboard, &state) == 0 && (state.c_lflag & ECHO) != 0;
    }

private:
    int m_terminal = -1, m_keyboard = -1;
    const int m_opened = ::openpty(&m_terminal, &m_keyboard, nullptr, nullptr, nullptr);
    std::atomic<bool> m_end = false;
    Redirected m_input;
    std::thread m_person;
};
