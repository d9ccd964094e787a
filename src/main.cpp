#include "mainwindow/Console.h"
#include "mainwindow/ConsoleGate.h"
#include "mainwindow/Demonstration.h"
#include "mainwindow/MDIForm1.h"
#include "platform/CoreDump.h"
#include "platform/SystemLanguage.h"
#include "platform/Termination.h"
#include "startup/Version.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QMessageBox>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace {

constexpr int cannotStart = 2;
constexpr int highestPort = 8;

/// What the command line asks for.
struct Options {
    bool console = false;
    bool demo = false;
    QString folder;
    QString passwordFile;
    std::optional<int> port;
};

int refuse(const QString &line)
{
    const QString oneLine = QString(line).replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    std::fprintf(stderr, "kor-supervisor: %s\n", oneLine.toUtf8().constData());
    // Whoever started it from a desktop sees no terminal.
    if (qobject_cast<QApplication *>(QCoreApplication::instance()))
        QMessageBox::critical(nullptr, QStringLiteral("KOR"), line);
    return cannotStart;
}

QCommandLineOption option(const char *name, const char *description, const char *value = "")
{
    return {QString::fromLatin1(name), QString::fromUtf8(description), QString::fromLatin1(value)};
}

/// Reads the command line; --help and --version end the program here.
/// @return what is wrong with it, "" when nothing is
QString parse(Options &options)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Supervisor of the Kor multiprotocol interface: receives its "
                                                    "events and keeps them in the archive of the day."));
    const QCommandLineOption console = option("console", "Tell what happens on the terminal, without a window.");
    const QCommandLineOption demo =
        option("demo", "Work with a simulated interface in a folder that is removed at the end.");
    const QCommandLineOption folder =
        option("folder", "Program folder with the archives; the program's own by default.", "DIR");
    const QCommandLineOption passwordFile =
        option("password-file",
               "With --console: the main password is the first line of FILE, which only its owner may read.", "FILE");
    const QCommandLineOption port = option("port", "Choose serial port COM1 to COM8 and remember it.", "N");
    parser.addOptions({console, demo, folder, passwordFile, port});
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    if (!parser.parse(QCoreApplication::arguments()))
        return parser.errorText();
    if (parser.isSet(help))
        parser.showHelp();
    if (parser.isSet(version))
        parser.showVersion();
    if (!parser.positionalArguments().isEmpty())
        return QStringLiteral("unexpected argument \"%1\".").arg(parser.positionalArguments().constFirst());

    options.console = parser.isSet(console);
    options.demo = parser.isSet(demo);
    options.folder = parser.isSet(folder) ? parser.value(folder) : QCoreApplication::applicationDirPath();
    options.passwordFile = parser.value(passwordFile);
    if (options.demo && (parser.isSet(folder) || parser.isSet(port)))
        return QStringLiteral("--demo works in a folder and on a port of its own: leave out --folder and --port.");
    if (parser.isSet(port)) {
        bool isNumber = false;
        options.port = parser.value(port).toInt(&isNumber);
        if (!isNumber || *options.port < 1 || *options.port > highestPort)
            return QStringLiteral("--port takes a number from 1 to 8, not \"%1\".").arg(parser.value(port));
    }
    return {};
}

int runConsole(Program &program, const Options &options, std::optional<Termination> &termination)
{
    // On the terminal the password can be given up with Ctrl+C; from here on the program ends in order.
    if (const QString refusal = ConsoleGate{options.passwordFile}.pass(program); !refusal.isEmpty())
        return refuse(refusal);
    if (!termination)
        termination.emplace();
    QObject::connect(&*termination, &Termination::requested, qApp, &QCoreApplication::quit);
    Console console(program, options.demo ? program.texts()[OwnText::ConsoleDemo] : QString());
    program.load();
    program.openLink();
    const int exitCode = QCoreApplication::exec();
    program.end();
    return exitCode;
}

int runWindow(Program &program, std::optional<Termination> &termination)
{
    if (!termination)
        termination.emplace();
    Messages messages;
    MDIForm1 window(program, messages);
    QApplication::setQuitOnLastWindowClosed(false);
    QObject::connect(&*termination, &Termination::requested, &window, &MDIForm1::end);
    QObject::connect(&window, &MDIForm1::unloaded, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    window.load();
    const int exitCode = QCoreApplication::exec();
    // What was found out at the very end has no window any more.
    while (!program.notices().isEmpty())
        std::fprintf(stderr, "kor-supervisor: %s\n",
                     program.texts().sentence(program.notices().take().message).toUtf8().constData());
    return exitCode;
}

/// With --console no display is needed, nor one there.
std::unique_ptr<QCoreApplication> makeApplication(int &argumentCount, char **arguments)
{
    const std::span all(arguments, static_cast<size_t>(argumentCount));
    const bool console = std::any_of(all.begin(), all.end(), [](const char *argument) {
        return std::string_view(argument) == "--console" || std::string_view(argument) == "-console";
    });
    const bool display = qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
                         qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (console || !display)
        return std::make_unique<QCoreApplication>(argumentCount, arguments);
    // The window system's library has threads of its own.
    holdEndSignals();
    return std::make_unique<QApplication>(argumentCount, arguments);
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    forbidCoreDumps();
    const std::unique_ptr<QCoreApplication> application = makeApplication(argumentCount, arguments);
    QCoreApplication::setApplicationName(QStringLiteral("kor-supervisor"));
    QCoreApplication::setApplicationVersion(programVersion());
    Options options;
    if (const QString wrong = parse(options); !wrong.isEmpty())
        return refuse(wrong);
    if (!options.console && !qobject_cast<QApplication *>(application.get()))
        return refuse(QStringLiteral("there is no display for the window: add --console to work on the terminal."));

    const int language = systemLanguage();
    Texts texts;
    texts.fill(language);
    std::optional<Termination> termination;
    std::optional<Demonstration> demonstration;
    if (options.demo) {
        // What a demonstration has made is removed, whenever it ends.
        termination.emplace();
        demonstration.emplace(QCoreApplication::applicationDirPath());
        if (const Result<void> started = demonstration->start(); !started)
            return refuse(texts.sentence({OwnText::DemoCannotStart, {started.fault().subject}, started.fault()}));
        options.folder = demonstration->folder();
        options.port = Demonstration::Port;
    }

    const Clock clock;
    const Printers printers;
    Program program(options.folder, clock, printers);
    if (const std::optional<StartFault> fault = program.prepare(language, options.port))
        return refuse(texts.sentence(fault->message));
    return options.console ? runConsole(program, options, termination) : runWindow(program, termination);
}
