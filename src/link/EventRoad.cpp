#include "link/EventRoad.h"

EventRoad::EventRoad(UsersSnapshot &users, EventLog &log, const Clock &clock, QObject *parent)
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
    if (!UtenteEsiste(record->code))
        return false;
    const Event event = makeEvent(*record, m_clock.now());
    if (const Result<qint64> row = m_log.append(event); !row) {
        Q_EMIT notStored(event, row.fault());
        return false;
    }
    Q_EMIT stored(event);
    return true;
}
