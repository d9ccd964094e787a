#include "prefs/PasswordPrompt.h"

#include "platform/RegularFile.h"
#include "texts/OwnText.h"

#include <QFile>

#include <cstdio>

namespace {

/// What a wrong password costs: without it a program tries thousands while a person types one.
constexpr int penaltySeconds = 1;

} // namespace

PasswordPrompt::PasswordPrompt(const Passwords &passwords, const Texts &texts, QString file, QObject *parent)
    : QObject(parent), m_passwords(passwords), m_texts(texts), m_file(std::move(file))
{
}

void PasswordPrompt::ask()
{
    if (!m_file.isEmpty())
        return askFile();
    if (!TerminalPassword::isThere())
        return refuse({OwnText::PasswordNeedsTerminal, {}, {}});
    m_terminal = std::make_unique<TerminalPassword>();
    connect(m_terminal.get(), &TerminalPassword::typed, this, &PasswordPrompt::typed);
    connect(m_terminal.get(), &TerminalPassword::givenUp, this, [this] {
        refuse({OwnText::PasswordNotGiven, {}, {}});
    });
    m_terminal->ask(m_texts[Text::PasswordRichiesta]);
}

void PasswordPrompt::askFile()
{
    QFile file(m_file);
    if (!isOwnersOnly(m_file) || !file.open(QIODevice::ReadOnly))
        return refuse({OwnText::PasswordFileUnusable, {m_file}, {}});
    QString line = QString::fromUtf8(file.readLine());
    while (line.endsWith(QLatin1Char('\n')) || line.endsWith(QLatin1Char('\r')))
        line.chop(1);
    if (isRight(line)) {
        Q_EMIT passed();
        return;
    }
    QTimer::singleShot(penaltySeconds * 1000, this, [this] { refuse({Text::PasswordErrata, {}, {}}); });
}

void PasswordPrompt::typed(const QString &text)
{
    if (isRight(text)) {
        end();
        Q_EMIT passed();
        return;
    }
    std::fprintf(stderr, "%s\n", m_texts[Text::PasswordErrata].toUtf8().constData());
    m_terminal->ask(m_texts[Text::PasswordRichiesta], penaltySeconds);
}

bool PasswordPrompt::isRight(const QString &password)
{
    const bool isRight = m_passwords.matches(Passwords::Type::Main, password);
    if (!isRight)
        Q_EMIT wrong();
    return isRight;
}

void PasswordPrompt::refuse(const Message &why)
{
    end();
    Q_EMIT refused(why);
}

void PasswordPrompt::end()
{
    if (m_terminal)
        m_terminal->end();
}
