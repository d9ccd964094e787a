#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

/// Lines of the standard input as they are typed or sent, without waiting for them.
///
/// A program in the background of a terminal is left running, and gets what is typed once it is in the foreground.
class StandardInput : public QObject
{
    Q_OBJECT

public:
    explicit StandardInput(QObject *parent = nullptr);

Q_SIGNALS:
    void line(const QByteArray &text); ///< without its LF; the last line also when it has none
    void ended();                      ///< no more lines will come

private:
    void read();

    QSocketNotifier m_notifier;
    QTimer m_again;
    QByteArray m_begun;
};
