#include "platform/StandardInput.h"
#include "platform/Termination.h"
#include "simulator/Script.h"
#include "simulator/SimulatorOptions.h"
#include "simulator/Traffic.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

using namespace simulator;

namespace {

constexpr double lineBytesPerSecond = 960;
constexpr int lookMilliseconds = 50;

enum ExitCode { Ended = 0, Unusable = 1, WrongArguments = 2 };

void print(std::FILE *where, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), where);
    std::fflush(where);
}

void tell(const QString &line)
{
    print(stdout, line + QLatin1Char('\n'));
}

void complain(const QString &line)
{
    print(stderr, QStringLiteral("kor-simulator: %1\n").arg(line));
}

/// Commands of the file at @p path; wrong lines are told and left out. Nothing when it cannot be read.
std::optional<QList<Command>> readCommands(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        complain(QStringLiteral("%1 cannot be read: %2").arg(path, file.errorString()));
        return {};
    }
    QList<Command> commands;
    int number = 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        ++number;
        const ParsedLine parsed = parseLine(line);
        if (parsed.command)
            commands.append(*parsed.command);
        else if (!parsed.fault.isEmpty())
            complain(QStringLiteral("%1:%2: %3").arg(path).arg(number).arg(parsed.fault));
    }
    return commands;
}

int simulate(const SimulatorOptions &options)
{
    QList<Command> commands;
    if (!options.file.isEmpty()) {
        const std::optional<QList<Command>> read = readCommands(options.file);
        if (!read)
            return Unusable;
        commands = *read;
    }

    const Termination termination;
    const Clock clock;
    PseudoTerminal line(options.link);
    PacedOutput output(options.fast ? 0 : lineBytesPerSecond, clock,
                       [&line](QByteArrayView bytes) { return line.write(bytes); });
    RecordSource records(options.codes, options.seed);
    SimulatedInterface interface(line, output, records);
    const auto end = [] { QCoreApplication::exit(Ended); };
    QObject::connect(&termination, &Termination::requested, &interface, end);
    QObject::connect(&interface, &SimulatedInterface::quitAsked, &interface, end);
    QObject::connect(&interface, &SimulatedInterface::told, &interface, tell);
    QObject::connect(&interface, &SimulatedInterface::complained, &interface, complain);
    if (options.verbose)
        QObject::connect(&interface, &SimulatedInterface::detailed, &interface, tell);
    interface.setSetting(options.setting);
    if (!interface.plugIn())
        return Unusable;
    if (options.fault != ReplyFault::None)
        interface.execute(SetFault{options.fault});

    Script typed(interface, clock);
    const StandardInput input;
    QObject::connect(&input, &StandardInput::line, &typed, [&typed](const QByteArray &text) {
        const ParsedLine parsed = parseLine(text);
        if (parsed.command)
            typed.append(*parsed.command);
        else if (!parsed.fault.isEmpty())
            complain(parsed.fault);
    });

    Script recorded(interface, clock);
    recorded.setNeedsProgram(true);
    recorded.setRepeating(options.repeat);
    if (options.filePerSecond > 0)
        recorded.setPace(options.filePerSecond);
    recorded.start(commands);
    const Traffic traffic(options.traffic, interface, clock);

    QTimer look;
    // A byte that was just written may not be counted as unread yet: settled counts when it is seen twice.
    int settled = 0;
    QObject::connect(&look, &QTimer::timeout, &interface, [&] {
        settled = traffic.isFinished() && recorded.isFinished() && interface.isSettled() ? settled + 1 : 0;
        if (settled == 2)
            end();
    });
    if (options.exitWhenDone)
        look.start(lookMilliseconds);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const ParsedOptions parsed = parseOptions(QCoreApplication::arguments());
    if (!parsed.fault.isEmpty()) {
        complain(QStringLiteral("%1 (--help tells more)").arg(parsed.fault));
        return WrongArguments;
    }
    if (parsed.options.help) {
        print(stdout, helpText());
        return Ended;
    }
    return simulate(parsed.options);
}
