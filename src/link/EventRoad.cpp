#include "link/EventRoad.h"

EventRoad::EventRoad(UserDirectory &users, EventLog &log, const Clock &clock, QObject *parent)
    : QObject(parent), m_users(users), m_log(log), m_clock(clock)
{
}

bool EventRoad::RegistraEvento(QByteArrayView line)
{
    const std::optional<EventRecord> record = decodeRecord(line);
    if (!record)
        return false;
    m_received = {true, record->code, typeText(record->type)};
    Q_EMIT recordReceived(*record);
    if (!m_users.isKnown()) {
        if (m_undecided.size() >= EventLog::WaitingLimit) {
            m_undecided.removeFirst();
            ++m_undecidedLost;
        }
        m_undecided.enqueue(makeEvent(*record, m_clock.now()));
        return false;
    }
    if (!UtenteEsiste(record->code))
        return false;
    return m_log.append(makeEvent(*record, m_clock.now()));
}

void EventRoad::usersKnown()
{
    QList<Event> registered;
    for (const Event &event : std::exchange(m_undecided, {})) {
        if (UtenteEsiste(event.Codice))
            registered.append(event);
    }
    m_log.appendLate(registered);
}
