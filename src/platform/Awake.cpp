#include "platform/Awake.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>

#include <systemd/sd-bus.h>

namespace {

/// Less is what the clocks differ by when they are read one after the other.
constexpr qint64 shortestSleep = 1000;

QString service()
{
    return QStringLiteral("org.freedesktop.login1");
}

QString path()
{
    return QStringLiteral("/org/freedesktop/login1");
}

QString manager()
{
    return QStringLiteral("org.freedesktop.login1.Manager");
}

QString connectionName()
{
    return QStringLiteral("kor-awake");
}

/// Whether a bus is there and speaks. It may be left behind in its thread, which a connection of the other library may
/// not: the program would not end before somebody has answered.
bool busAnswers()
{
    sd_bus *bus = nullptr;
    const char *ourName = nullptr;
    const bool isThere = sd_bus_open_system(&bus) >= 0 && sd_bus_get_unique_name(bus, &ourName) >= 0;
    sd_bus_flush_close_unref(bus);
    return isThere;
}

/// Called in a thread: to connect is what waits for the bus.
Result<void> connectToBus()
{
    if (busAnswers() && QDBusConnection::connectToBus(QDBusConnection::SystemBus, connectionName()).isConnected())
        return {};
    return Fault{FaultCode::NotFound, connectionName()};
}

} // namespace

Awake::Awake(const Clock &clock, QObject *parent)
    : QObject(parent),
      m_clock(clock),
      m_asleep(clock.asleep()),
      m_connecting(connectToBus, [this](const Result<void> &made) {
          if (made)
              connected();
      })
{
}

Awake::~Awake()
{
    if (m_isConnected)
        QDBusConnection::disconnectFromBus(connectionName());
}

void Awake::connected()
{
    m_isConnected = true;
    // From whomever it comes: to be bound to a name the library waits for the bus to tell who has it.
    QDBusConnection(connectionName())
        .connect({}, path(), manager(), QStringLiteral("PrepareForSleep"), this, SLOT(prepareForSleep(bool)));
    take();
}

void Awake::hold(const QString &why)
{
    m_why = why;
    take();
}

void Awake::release()
{
    m_why.clear();
    m_holds.clear();
}

void Awake::take()
{
    if (!m_isConnected || m_why.isEmpty() || !m_holds.empty())
        return;
    // Each by itself: a service may hold off idling, but not a lid.
    for (const char *what : {"idle", "sleep", "handle-lid-switch"}) {
        QDBusMessage inhibit = QDBusMessage::createMethodCall(service(), path(), manager(), QStringLiteral("Inhibit"));
        inhibit << QString::fromLatin1(what) << QStringLiteral("Kor supervisor") << m_why << QStringLiteral("block");
        m_holds.push_back(QDBusConnection(connectionName()).asyncCall(inhibit));
    }
}

qint64 Awake::sleptSinceLook()
{
    const qint64 asleep = m_clock.asleep();
    return asleep - std::exchange(m_asleep, asleep);
}

void Awake::look()
{
    const qint64 slept = sleptSinceLook();
    if (slept < shortestSleep)
        return;
    // The end of this sleep may still be told on the bus.
    m_sleepAhead.reset();
    Q_EMIT woke(slept);
}

void Awake::prepareForSleep(bool isAhead)
{
    if (isAhead) {
        m_sleepAhead = m_clock.monotonic();
        return;
    }
    if (!m_sleepAhead)
        return look();
    // There are PCs whose clock goes on while the programs stand still.
    const qint64 announced = m_clock.monotonic() - *std::exchange(m_sleepAhead, {});
    const qint64 slept = sleptSinceLook();
    Q_EMIT woke(slept >= shortestSleep ? slept : announced);
}
