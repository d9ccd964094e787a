#pragma once

#include "codes/UserDirectory.h"
#include "link/EventLog.h"
#include "link/EventRecord.h"

#include <QObject>

/// From a complete line to a row of today's archive.
class EventRoad : public QObject
{
    Q_OBJECT

public:
    /// All must outlive this object.
    EventRoad(UserDirectory &users, EventLog &log, const Clock &clock, QObject *parent = nullptr);
    ~EventRoad() override;

    /// Tells of a record and stores the event when the code is registered. While the register cannot be read nobody
    /// knows: the log keeps the event undecided.
    /// @param line  all characters before the LF, the CR included
    /// @return true when the event was stored, on disk
    bool RegistraEvento(QByteArrayView line);
    bool UtenteEsiste(const QString &code) const { return m_users.contains(code); }
    /// Stores those of the kept events that are of registered codes; call when the register has been read.
    void usersKnown() { m_log.retry(); }

Q_SIGNALS:
    /// Every well-formed record, registered or not.
    void recordReceived(const EventRecord &record);

private:
    UserDirectory &m_users;
    EventLog &m_log;
    const Clock &m_clock;
};
