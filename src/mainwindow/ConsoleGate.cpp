#include "mainwindow/ConsoleGate.h"

#include "archives/Tables.h"
#include "platform/TerminalPassword.h"
#include "prefs/PasswordFault.h"

#include <QFile>
#include <QThread>

#include <cstdio>

namespace {

/// What a wrong password costs: without it a program tries thousands while a person types one.
constexpr int penaltySeconds = 1;

} // namespace

QString ConsoleGate::pass(Program &program) const
{
    if (QString refusal = readPasswords(program); !refusal.isEmpty())
        return refusal;
    if (!program.passwords().isSet(Passwords::Type::Main))
        return {};
    return passwordFile.isEmpty() ? fromTerminal(program) : fromFile(program);
}

QString ConsoleGate::readPasswords(Program &program) const
{
    const Texts &texts = program.texts();
    for (bool told = false;; told = true) {
        const Passwords::Fault fault = program.passwords().load();
        if (fault == Passwords::Fault::None)
            return {};
        const Fault &reason = program.passwords().reason();
        if (fault != Passwords::Fault::Unreadable || reason.code != FaultCode::Locked)
            return texts.sentence(passwordMessage(fault, reason));
        const Message message{OwnText::RegisterTriedAgain, {QStringView(ArchiveName::Users).toString()}, reason};
        if (!told)
            std::fprintf(stderr, "%s\n", texts.sentence(message).toUtf8().constData());
        QThread::sleep(1);
    }
}

QString ConsoleGate::fromFile(Program &program) const
{
    const Texts &texts = program.texts();
    QFile file(passwordFile);
    if (!isOwnersOnly(passwordFile) || !file.open(QIODevice::ReadOnly))
        return texts.sentence({OwnText::PasswordFileUnusable, {passwordFile}, {}});
    QString line = QString::fromUtf8(file.readLine());
    while (line.endsWith(QLatin1Char('\n')) || line.endsWith(QLatin1Char('\r')))
        line.chop(1);
    if (program.passwords().matches(Passwords::Type::Main, line))
        return {};
    QThread::sleep(penaltySeconds);
    return texts[Text::PasswordErrata];
}

QString ConsoleGate::fromTerminal(Program &program) const
{
    const Texts &texts = program.texts();
    if (!isTerminal())
        return texts[OwnText::PasswordNeedsTerminal];
    for (;;) {
        const std::optional<QString> typed = askOnTerminal(texts[Text::PasswordRichiesta]);
        if (!typed)
            return texts[OwnText::PasswordNotGiven];
        if (program.passwords().matches(Passwords::Type::Main, *typed))
            return {};
        std::fprintf(stderr, "%s\n", texts[Text::PasswordErrata].toUtf8().constData());
        holdUpTerminal(penaltySeconds);
    }
}
