#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <memory>

/// Asks for a password on the terminal of the standard input, without showing what is typed and without waiting for it:
/// the event loop runs on.
///
/// A program in the background of its terminal asks once it is in the foreground.
class TerminalPassword : public QObject
{
    Q_OBJECT

public:
    explicit TerminalPassword(QObject *parent = nullptr);
    ~TerminalPassword() override;

    /// True when a person can be asked on the standard input.
    static bool isThere();

    /// Asks; typed() or givenUp() follows.
    /// @param pause  seconds before that; what is typed meanwhile is neither shown nor taken
    void ask(const QString &prompt, int pause = 0);
    /// Nothing more is asked: the terminal shows again what is typed. So it does when this object goes.
    void end();

Q_SIGNALS:
    void typed(const QString &text); ///< one line without its end
    void givenUp();                  ///< Ctrl+C, or the input has ended

private:
    class Silence;

    void listen();
    void read();
    void take(bool isGivenUp);

    QSocketNotifier m_notifier;
    QTimer m_pause;
    QString m_prompt;
    QByteArray m_line;
    std::unique_ptr<Silence> m_silence;
};
