#pragma once

#include <QObject>
#include <QTimer>

/// The service manager that has started the program. Where none has, nothing is told to anybody.
class ServiceManager : public QObject
{
    Q_OBJECT

public:
    explicit ServiceManager(QObject *parent = nullptr);

    /// The program does its work. From now on the manager hears of the event loop twice in the time that it wants to,
    /// if it does: one that is held starts the program anew.
    void ready();
    /// The program has begun to end.
    void stopping();

private:
    QTimer m_watchdog;
};
