#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QObject>
#include <QTimer>

/// Lines on the standard output that never hold the program up: what a stopped terminal or a full pipe does not take
/// waits, in order, and is tried again. Past 10,000 waiting lines the oldest are given up.
class ConsoleOutput : public QObject
{
    Q_OBJECT

public:
    explicit ConsoleOutput(QObject *parent = nullptr);
    /// Writes what still waits, as far as it is taken at once.
    ~ConsoleOutput() override;

    /// @param line  UTF-8 without line end
    void write(const QByteArray &line);

private:
    void drain();

    int m_own = -1;
    QByteArrayList m_waiting;
    QTimer m_again;
};
