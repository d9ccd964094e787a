#include "platform/PseudoTerminal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {

/// Programs that look whether a port is free open it, leave it and open it again.
constexpr int momentMilliseconds = 50;

void closeFile(int &file)
{
    if (file >= 0)
        ::close(file);
    file = -1;
}

/// A notifier may be dropped by what it notified, and has to be silent before its file is closed.
void drop(std::unique_ptr<QSocketNotifier> &notifier)
{
    if (!notifier)
        return;
    notifier->setEnabled(false);
    notifier.release()->deleteLater();
}

void makeRaw(int file)
{
    termios settings{};
    if (::tcgetattr(file, &settings) != 0)
        return;
    ::cfmakeraw(&settings);
    ::cfsetspeed(&settings, B9600);
    ::tcsetattr(file, TCSANOW, &settings);
}

} // namespace

PseudoTerminal::PseudoTerminal(QString link, QObject *parent) : QObject(parent), m_link(std::move(link))
{
    m_left.setSingleShot(true);
    m_left.setInterval(momentMilliseconds);
    connect(&m_left, &QTimer::timeout, this, &PseudoTerminal::afterLastProgram);
}

PseudoTerminal::~PseudoTerminal()
{
    close();
}

Result<void> PseudoTerminal::open()
{
    close();
    std::array<char, 64> name{};
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (m_master >= 0 && ::grantpt(m_master) == 0 && ::unlockpt(m_master) == 0 &&
        ::ptsname_r(m_master, name.data(), name.size()) == 0) {
        // Kept open, so that the line does not end each time the last program leaves it.
        m_slave = ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
    if (m_slave < 0) {
        close();
        return Fault{FaultCode::InputOutput, QStringLiteral("/dev/ptmx")};
    }
    m_device = QFile::decodeName(name.data());
    makeRaw(m_slave);

    m_reading = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Read);
    connect(m_reading.get(), &QSocketNotifier::activated, this, &PseudoTerminal::readyRead);
    m_writing = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Write);
    m_writing->setEnabled(false);
    connect(m_writing.get(), &QSocketNotifier::activated, this, [this] {
        m_writing->setEnabled(false);
        Q_EMIT writable();
    });
    watchPrograms();
    if (Result<void> made = makeLink(); !made) {
        close();
        return made;
    }
    return {};
}

void PseudoTerminal::close()
{
    if (isOpen() && !m_device.isEmpty() && QFileInfo(m_link).symLinkTarget() == m_device)
        QFile::remove(m_link);
    drop(m_reading);
    drop(m_writing);
    drop(m_watching);
    m_left.stop();
    closeFile(m_watch);
    closeFile(m_slave);
    closeFile(m_master);
    m_programs = 0;
    m_device.clear();
}

int PseudoTerminal::unread() const
{
    int count = 0;
    return isOpen() && ::ioctl(m_slave, FIONREAD, &count) == 0 ? count : 0;
}

QByteArray PseudoTerminal::read()
{
    QByteArray bytes(4096, Qt::Uninitialized);
    const ssize_t count = isOpen() ? ::read(m_master, bytes.data(), static_cast<size_t>(bytes.size())) : 0;
    if (count < 0 && errno != EAGAIN && errno != EINTR)
        m_reading->setEnabled(false); // A line that failed would notify without end.
    bytes.resize(std::max<ssize_t>(count, 0));
    return bytes;
}

qsizetype PseudoTerminal::write(QByteArrayView bytes)
{
    qsizetype taken = 0;
    while (isOpen() && taken < bytes.size()) {
        const ssize_t count = ::write(m_master, bytes.data() + taken, static_cast<size_t>(bytes.size() - taken));
        if (count > 0) {
            taken += count;
        } else if (count == 0 || errno != EINTR) {
            m_writing->setEnabled(true);
            break;
        }
    }
    return taken;
}

Result<void> PseudoTerminal::makeLink()
{
    if (m_link.isEmpty())
        return {};
    const QFileInfo information(m_link);
    if (information.isSymLink())
        QFile::remove(m_link);
    else if (information.exists())
        return Fault{FaultCode::AlreadyInUse, m_link};
    if (!QDir().mkpath(information.path()) || !QFile::link(m_device, m_link))
        return Fault{FaultCode::AccessDenied, m_link};
    return {};
}

void PseudoTerminal::watchPrograms()
{
    m_watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_watch >= 0 && ::inotify_add_watch(m_watch, QFile::encodeName(m_device).constData(), IN_OPEN | IN_CLOSE) < 0)
        closeFile(m_watch);
    if (m_watch < 0)
        return;
    m_watching = std::make_unique<QSocketNotifier>(m_watch, QSocketNotifier::Read);
    connect(m_watching.get(), &QSocketNotifier::activated, this, &PseudoTerminal::countPrograms);
}

void PseudoTerminal::countPrograms()
{
    std::array<char, 4096> buffer{};
    const ssize_t size = ::read(m_watch, buffer.data(), buffer.size());
    const bool knownAsOpen = m_programs > 0 || m_left.isActive();
    for (ssize_t at = 0; at < size;) {
        inotify_event event{};
        std::memcpy(&event, buffer.data() + at, sizeof event);
        at += static_cast<ssize_t>(sizeof event + event.len);
        // Two openings at the very same time are told as one; the count then must not go below nobody.
        m_programs = (event.mask & IN_OPEN) != 0 ? m_programs + 1 : std::max(m_programs - 1, 0);
    }
    if (m_programs > 0) {
        m_left.stop();
        if (!knownAsOpen)
            Q_EMIT programCame();
    } else if (knownAsOpen) {
        m_left.start();
    }
}

void PseudoTerminal::afterLastProgram()
{
    // A real port forgets with its last user that it was taken for one program alone, and echoes nothing to the next.
    // Here it would stay taken after a program that was killed, because the device lives on.
    ::ioctl(m_slave, TIOCNXCL);
    makeRaw(m_slave);
    Q_EMIT programsLeft();
}
