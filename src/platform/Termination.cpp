#include "platform/Termination.h"

#include <QProcess>
#include <QSocketNotifier>

#include <csignal>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace {

sigset_t endSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGHUP);
    return set;
}

} // namespace

Termination::Termination(QObject *parent) : QObject(parent)
{
    // A pipe whose reader has gone is reported by write(); it must not kill a program that keeps events.
    std::signal(SIGPIPE, SIG_IGN);
    holdEndSignals();
    const sigset_t set = endSignals();
    m_file = ::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
    auto *notifier = new QSocketNotifier(m_file, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &Termination::read);
}

Termination::~Termination()
{
    ::close(m_file);
}

void Termination::read()
{
    signalfd_siginfo information{};
    while (::read(m_file, &information, sizeof information) == sizeof information)
        Q_EMIT requested();
}

void holdEndSignals()
{
    const sigset_t set = endSignals();
    sigprocmask(SIG_BLOCK, &set, nullptr);
}

void makeHelper(QProcess &process)
{
    process.setChildProcessModifier([] {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        const sigset_t set = endSignals();
        sigprocmask(SIG_UNBLOCK, &set, nullptr);
    });
}
