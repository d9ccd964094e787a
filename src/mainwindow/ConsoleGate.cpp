#include "mainwindow/ConsoleGate.h"

#include "texts/OwnText.h"

#include <QFile>

#include <cstdio>

namespace {

/// What a wrong password costs: without it a program tries thousands while a person types one.
constexpr int penaltySeconds = 1;

} // namespace

ConsoleGate::ConsoleGate(Program &program, Options options, QObject *parent)
    : QObject(parent), m_program(program), m_options(std::move(options)), m_start(program, *this)
{
}

void ConsoleGate::tellTriedAgain(const Message &why)
{
    Q_EMIT works();
    if (m_console)
        return;
    std::fprintf(stderr, "%s\n", m_program.texts().sentence(why).toUtf8().constData());
    // What befalls the line meanwhile is told.
    console();
}

void ConsoleGate::askPassword()
{
    if (!m_options.passwordFile.isEmpty())
        return askFile();
    if (!TerminalPassword::isThere())
        return refuse({OwnText::PasswordNeedsTerminal, {}, {}});
    m_terminal = std::make_unique<TerminalPassword>();
    connect(m_terminal.get(), &TerminalPassword::typed, this, &ConsoleGate::typed);
    connect(m_terminal.get(), &TerminalPassword::givenUp, this, [this] {
        refuse({OwnText::PasswordNotGiven, {}, {}});
    });
    m_terminal->ask(m_program.texts()[Text::PasswordRichiesta]);
}

void ConsoleGate::askFile()
{
    QFile file(m_options.passwordFile);
    if (!isOwnersOnly(m_options.passwordFile) || !file.open(QIODevice::ReadOnly))
        return refuse({OwnText::PasswordFileUnusable, {m_options.passwordFile}, {}});
    QString line = QString::fromUtf8(file.readLine());
    while (line.endsWith(QLatin1Char('\n')) || line.endsWith(QLatin1Char('\r')))
        line.chop(1);
    if (isRight(line))
        return m_start.pass();
    QTimer::singleShot(penaltySeconds * 1000, this, [this] { refuse({Text::PasswordErrata, {}, {}}); });
}

void ConsoleGate::typed(const QString &text)
{
    if (isRight(text)) {
        m_terminal->end();
        return m_start.pass();
    }
    const Texts &texts = m_program.texts();
    std::fprintf(stderr, "%s\n", texts[Text::PasswordErrata].toUtf8().constData());
    m_terminal->ask(texts[Text::PasswordRichiesta], penaltySeconds);
}

bool ConsoleGate::isRight(const QString &password) const
{
    const bool isRight = m_program.passwords().matches(Passwords::Type::Main, password);
    if (!isRight)
        m_program.keeper().notePassword(JournalKind::PasswordWrong, Passwords::Type::Main);
    return isRight;
}

void ConsoleGate::refuse(const Message &why)
{
    if (m_terminal)
        m_terminal->end();
    Q_EMIT refused(m_program.texts().sentence(why));
}

void ConsoleGate::passed()
{
    console().tellEvents();
    Q_EMIT works();
}

Console &ConsoleGate::console()
{
    if (!m_console)
        m_console = std::make_unique<Console>(m_program, m_options.remark);
    return *m_console;
}
