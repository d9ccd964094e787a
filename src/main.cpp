#include "mainwindow/Console.h"
#include "mainwindow/ConsoleGate.h"
#include "mainwindow/Demonstration.h"
#include "mainwindow/Program.h"
#include "platform/SystemLanguage.h"
#include "platform/Termination.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>

#include <cstdio>
#include <optional>

namespace {

constexpr int cannotStart = 2;
constexpr int highestPort = 8;

int refuse(const QString &line)
{
    const QString oneLine = QString(line).replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    std::fprintf(stderr, "kor-supervisor: %s\n", oneLine.toUtf8().constData());
    return cannotStart;
}

QCommandLineOption option(const char *name, const char *description, const char *value = "")
{
    return {QString::fromLatin1(name), QString::fromUtf8(description), QString::fromLatin1(value)};
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    const QCoreApplication application(argumentCount, arguments);
    QCoreApplication::setApplicationName(QStringLiteral("kor-supervisor"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.03"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Supervisor of the Kor multiprotocol interface: receives its "
                                                    "events and keeps them in the archive of the day."));
    parser.addOption(option("console", "Tell what happens on the terminal, without a window."));
    parser.addOption(option("demo", "Work with a simulated interface in a folder that is removed at the end."));
    parser.addOption(option("folder", "Program folder with the archives; the program's own by default.", "DIR"));
    parser.addOption(option("password-file",
                            "Take the main password from the first line of FILE, which only its owner "
                            "may read.",
                            "FILE"));
    parser.addOption(option("port", "Choose serial port COM1 to COM8 and remember it.", "N"));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    if (!parser.parse(QCoreApplication::arguments()))
        return refuse(parser.errorText());
    if (parser.isSet(help))
        parser.showHelp();
    if (parser.isSet(version))
        parser.showVersion();

    const bool demo = parser.isSet(QStringLiteral("demo"));
    const QString programs = QCoreApplication::applicationDirPath();
    QString folder = parser.isSet(QStringLiteral("folder")) ? parser.value(QStringLiteral("folder")) : programs;
    std::optional<int> port;
    if (!parser.positionalArguments().isEmpty())
        return refuse(QStringLiteral("unexpected argument \"%1\".").arg(parser.positionalArguments().constFirst()));
    if (!parser.isSet(QStringLiteral("console")))
        return refuse(QStringLiteral("this version has no window yet: add --console."));
    if (demo && (parser.isSet(QStringLiteral("folder")) || parser.isSet(QStringLiteral("port"))))
        return refuse(
            QStringLiteral("--demo works in a folder and on a port of its own: leave out --folder and --port."));
    if (parser.isSet(QStringLiteral("port"))) {
        bool isNumber = false;
        port = parser.value(QStringLiteral("port")).toInt(&isNumber);
        if (!isNumber || *port < 1 || *port > highestPort)
            return refuse(QStringLiteral("--port takes a number from 1 to 8, not \"%1\".")
                              .arg(parser.value(QStringLiteral("port"))));
    }

    const int language = systemLanguage();
    Texts texts;
    texts.fill(language);
    std::optional<Termination> termination;
    std::optional<Demonstration> demonstration;
    if (demo) {
        // What a demonstration has made is removed, whenever it ends.
        termination.emplace();
        demonstration.emplace(programs);
        if (const Result<void> started = demonstration->start(); !started)
            return refuse(texts.sentence({OwnText::DemoCannotStart, {started.fault().subject}, started.fault()}));
        folder = demonstration->folder();
        port = Demonstration::Port;
    }

    const Clock clock;
    const Printers printers;
    Program program(folder, clock, printers);
    if (const std::optional<StartFault> fault = program.prepare(language, port))
        return refuse(texts.sentence(fault->message));
    // On the terminal the password can be given up with Ctrl+C; from here on the program ends in order.
    if (const QString refusal = ConsoleGate{parser.value(QStringLiteral("password-file"))}.pass(program);
        !refusal.isEmpty())
        return refuse(refusal);
    if (!termination)
        termination.emplace();
    QObject::connect(&*termination, &Termination::requested, &application, &QCoreApplication::quit);

    Console console(program, demo ? program.texts()[OwnText::ConsoleDemo] : QString());
    program.run();
    const int exitCode = QCoreApplication::exec();
    program.end();
    return exitCode;
}
