#pragma once

#include "platform/TerminalPassword.h"
#include "prefs/Passwords.h"
#include "texts/Texts.h"

/// Has the main password given where there is no window: as the first line of a file, or on the terminal. A wrong one
/// costs a second; on the terminal it is asked for again.
class PasswordPrompt : public QObject
{
    Q_OBJECT

public:
    /// @param passwords  loaded; must outlive this object, as must @p texts
    /// @param file       "" = the terminal is asked
    PasswordPrompt(const Passwords &passwords, const Texts &texts, QString file, QObject *parent = nullptr);

    /// Asks; passed() or refused() follows.
    void ask();
    /// Nothing more is asked, and the terminal is as it was.
    void end();

Q_SIGNALS:
    void passed();
    void refused(const Message &why);
    /// Somebody has given a wrong one.
    void wrong();

private:
    void askFile();
    void typed(const QString &text);
    void refuse(const Message &why);
    bool isRight(const QString &password);

    const Passwords &m_passwords;
    const Texts &m_texts;
    const QString m_file;
    std::unique_ptr<TerminalPassword> m_terminal;
};
