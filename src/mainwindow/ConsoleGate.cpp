#include "mainwindow/ConsoleGate.h"

#include <cstdio>

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
    m_prompt = std::make_unique<PasswordPrompt>(m_program.passwords(), m_program.texts(), m_options.passwordFile);
    connect(m_prompt.get(), &PasswordPrompt::passed, this, [this] { m_start.pass(); });
    connect(m_prompt.get(), &PasswordPrompt::refused, this, &ConsoleGate::refuse);
    connect(m_prompt.get(), &PasswordPrompt::wrong, this,
            [this] { m_program.keeper().notePassword(JournalKind::PasswordWrong, Passwords::Type::Main); });
    m_prompt->ask();
}

void ConsoleGate::refuse(const Message &why)
{
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
