#pragma once

#include "platform/Clock.h"
#include "platform/Errand.h"

#include <QObject>

#include <optional>
#include <vector>

class QDBusPendingCall;

/// Keeps the PC awake while the program listens, and tells when it has slept all the same.
///
/// It speaks with the login manager over the system bus and waits for neither. Where one of them is missing, or does
/// not let this user, the PC sleeps as it would without the program, and look() alone finds it out.
class Awake : public QObject
{
    Q_OBJECT

public:
    /// @param clock  must outlive this object
    explicit Awake(const Clock &clock, QObject *parent = nullptr);
    ~Awake() override;

    /// Holds off idling, suspend and sleep by the lid, each as far as this user may, until release().
    /// @param why  for lists of what keeps the PC awake
    void hold(const QString &why);
    void release();

    /// Finds out by the clock whether the PC has slept; to be called now and then.
    void look();

Q_SIGNALS:
    /// The PC is awake again. @param milliseconds  that it slept; less than a second when its clock cannot tell
    void woke(qint64 milliseconds);

private Q_SLOTS:
    void prepareForSleep(bool isAhead);

private:
    void connected();
    void take();
    qint64 sleptSinceLook();

    const Clock &m_clock;
    qint64 m_asleep;                       ///< what the clock said when it was looked at last
    std::optional<qint64> m_sleepAhead;    ///< when it was announced, by the monotonic clock
    QString m_why;                         ///< "" while nothing is to be held
    std::vector<QDBusPendingCall> m_holds; ///< each answer has a descriptor, which holds as long as it is open
    bool m_isConnected = false;
    Errand<void> m_connecting;
};
