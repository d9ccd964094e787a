#pragma once

#include "platform/Descriptor.h"

#include <QByteArrayList>
#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <array>
#include <sys/socket.h>
#include <sys/un.h>

/// A socket at which somebody listens and never answers.
class UnixSocket
{
public:
    /// @param type  SOCK_STREAM, or SOCK_DGRAM
    UnixSocket(const QString &path, int type)
        : m_path(QFile::encodeName(path)), m_file(::socket(AF_UNIX, type | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
    {
        sockaddr_un address{AF_UNIX, {}};
        std::copy_n(m_path.begin(), std::min(m_path.size(), qsizetype(sizeof address.sun_path) - 1), address.sun_path);
        if (::bind(m_file.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
            (type == SOCK_STREAM && ::listen(m_file.get(), 8) != 0))
            qFatal("no socket");
    }

    const QByteArray &path() const { return m_path; }
    /// The datagrams that have come.
    QByteArrayList take() const
    {
        QByteArrayList all;
        std::array<char, 4096> buffer{};
        for (ssize_t size; (size = ::recv(m_file.get(), buffer.data(), buffer.size(), 0)) > 0;)
            all.append(QByteArray(buffer.data(), size));
        return all;
    }

private:
    QByteArray m_path;
    Descriptor m_file;
};

/// Counts how often the event loop comes round, once a millisecond at most, and what it was held up for.
struct Heartbeat : QTimer {
    int beats = 0;
    qint64 longest = 0; ///< milliseconds between two beats
    Heartbeat()
    {
        m_sinceBeat.start();
        callOnTimeout([this] {
            ++beats;
            longest = std::max(longest, m_sinceBeat.restart());
        });
        start(1);
    }

private:
    QElapsedTimer m_sinceBeat;
};
