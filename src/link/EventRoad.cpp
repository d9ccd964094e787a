#include "link/EventRoad.h"

EventRoad::EventRoad(UserDirectory &users, EventLog &log, const Clock &clock, QObject *parent)
    : QObject(parent), m_users(users), m_log(log), m_clock(clock)
{
    m_log.decideBy([this](const QString &code) {
        return m_users.isKnown() ? std::optional<bool>(UtenteEsiste(code)) : std::nullopt;
    });
}

EventRoad::~EventRoad()
{
    m_log.decideBy({});
}

bool EventRoad::RegistraEvento(QByteArrayView line)
{
    const std::optional<EventRecord> record = decodeRecord(line);
    if (!record)
        return false;
    Q_EMIT recordReceived(*record);
    if (!m_users.isKnown()) {
        m_log.appendUndecided(makeEvent(*record, m_clock.now()), m_users.isBeingRead());
        return false;
    }
    if (!UtenteEsiste(record->code))
        return false;
    return m_log.append(makeEvent(*record, m_clock.now()));
}
