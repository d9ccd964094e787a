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
    /// The last well-formed record, for whoever waits for a code.
    struct ReceivedCode {
        bool received = false; ///< set by every record, cleared by its readers
        QString code;          ///< without leading zeros
        CodeType type = CodeType::Transmitter;
    };

    /// All must outlive this object.
    EventRoad(UserDirectory &users, EventLog &log, const Clock &clock, QObject *parent = nullptr);
    ~EventRoad() override;

    /// Publishes the code of a record and stores the event when the code is registered. While the register cannot be
    /// read nobody knows: the log keeps the event undecided.
    /// @param line  all characters before the LF, the CR included
    /// @return true when the event was stored, on disk
    bool RegistraEvento(QByteArrayView line);
    bool UtenteEsiste(const QString &code) const { return m_users.contains(code); }
    /// Stores those of the kept events that are of registered codes; call when the register has been read.
    void usersKnown() { m_log.retry(); }

    ReceivedCode &lastReceived() { return m_received; }

Q_SIGNALS:
    /// Every well-formed record, registered or not.
    void recordReceived(const EventRecord &record);

private:
    UserDirectory &m_users;
    EventLog &m_log;
    const Clock &m_clock;
    ReceivedCode m_received;
};
