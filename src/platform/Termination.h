#pragma once

#include <QObject>

class QProcess;

/// Tells when the user or the system asks the program to end (SIGINT, SIGTERM, SIGHUP). While an object of this class
/// lives, these signals no longer kill the process.
class Termination : public QObject
{
    Q_OBJECT

public:
    explicit Termination(QObject *parent = nullptr);
    ~Termination() override;

Q_SIGNALS:
    void requested();

private:
    void read();

    int m_file = -1;
};

/// Keeps the signals of Termination until there is one. A program with threads calls it before the first of them: a
/// thread that does not keep them dies of them, and the program with it.
void holdEndSignals();

/// Makes @p process a helper of this program: Ctrl+C on the terminal does not reach it, and it ends with this program
/// however that ends. Call before it is started.
void makeHelper(QProcess &process);
