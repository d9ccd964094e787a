#include "mainwindow/StartSequence.h"

#include "archives/Tables.h"
#include "prefs/PasswordFault.h"
#include "texts/OwnText.h"

namespace {

constexpr int againMilliseconds = 1000;

} // namespace

StartSequence::StartSequence(Program &program, Gate &gate, QObject *parent)
    : QObject(parent), m_program(program), m_gate(gate)
{
    m_again.setSingleShot(true);
    connect(&m_again, &QTimer::timeout, this, &StartSequence::run);
}

void StartSequence::load()
{
    if (!std::exchange(m_isLoaded, true))
        m_program.load();
}

void StartSequence::run()
{
    Passwords &passwords = m_program.passwords();
    const Passwords::Fault fault = passwords.load();
    const Fault &reason = passwords.reason();
    if (fault == Passwords::Fault::Unreadable && m_gate.waitsFor(reason)) {
        m_gate.tellTriedAgain({OwnText::RegisterTriedAgain, {QStringView(ArchiveName::Users).toString()}, reason});
        receive();
        m_again.start(againMilliseconds);
        return;
    }
    if (fault != Passwords::Fault::None)
        return m_gate.refuse(passwordMessage(fault, reason));
    if (m_isLoaded)
        m_program.readUsers();
    if (passwords.isSet(Passwords::Type::Main))
        m_gate.askPassword();
    else
        pass();
}

void StartSequence::pass()
{
    m_isGateClosed = false;
    m_gate.passed();
    load();
    m_program.readUsers();
    m_program.storePort();
    if (!std::exchange(m_isReceiving, true))
        m_program.openLink();
}

/// Opens archives and port before the gate. Without a chosen port nothing can come, and choosing one is for those who
/// have passed.
void StartSequence::receive()
{
    if (m_program.settings().PortaCom == 0 || std::exchange(m_isReceiving, true))
        return;
    load();
    m_program.openLink();
}

void StartSequence::end()
{
    m_again.stop();
    m_program.end();
}
