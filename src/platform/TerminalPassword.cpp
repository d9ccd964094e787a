#include "platform/TerminalPassword.h"

#include <QByteArray>
#include <QFile>

#include <cstdio>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr char controlC = 3;

/// No echo for as long as it lives.
class Silence
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

} // namespace

bool isTerminal()
{
    return ::isatty(STDIN_FILENO) == 1;
}

std::optional<QString> askOnTerminal(const QString &prompt)
{
    std::fprintf(stderr, "%s ", prompt.toUtf8().constData());
    const Silence silence;
    QByteArray line;
    int character = std::getchar();
    for (; character != EOF && character != '\n' && character != controlC; character = std::getchar())
        line.append(static_cast<char>(character));
    std::fputc('\n', stderr);
    if (character == controlC || (character == EOF && line.isEmpty()))
        return std::nullopt;
    return QString::fromUtf8(line);
}

void holdUpTerminal(int seconds)
{
    const Silence silence;
    ::sleep(static_cast<unsigned>(seconds));
}

bool isOwnersOnly(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}
