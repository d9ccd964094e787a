#include "mainwindow/ConsoleGate.h"
#include "mainwindow/Demonstration.h"
#include "mainwindow/MDIForm1.h"
#include "platform/Awake.h"
#include "platform/CoreDump.h"
#include "platform/ServiceManager.h"
#include "platform/SystemLanguage.h"
#include "platform/Termination.h"
#include "startup/CommandLine.h"
#include "startup/ProgramPlaces.h"
#include "startup/Version.h"
#include "texts/OwnText.h"
#include "widgets/Accessibility.h"
#include "widgets/DesktopStyle.h"

#include <QApplication>
#include <QMessageBox>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace {

constexpr int cannotStart = 2;

int refuse(const QString &line, std::optional<Termination> &termination)
{
    const QString oneLine = QString(line).replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    std::fprintf(stderr, "kor-supervisor: %s\n", oneLine.toUtf8().constData());
    // Whoever started it from a desktop sees no terminal.
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return cannotStart;
    if (!termination)
        termination.emplace();
    QMessageBox box(QMessageBox::Critical, QStringLiteral("KOR"), line);
    QObject::connect(&*termination, &Termination::requested, &box, &QDialog::reject);
    box.exec();
    return cannotStart;
}

int tell(const QString &text)
{
    std::fputs(text.toUtf8().constData(), stdout);
    return EXIT_SUCCESS;
}

int runConsole(Program &program, const CommandLine &options, std::optional<Termination> &termination)
{
    if (!termination)
        termination.emplace();
    QObject::connect(&*termination, &Termination::requested, qApp, &QCoreApplication::quit);
    ConsoleGate gate(program, {options.passwordFile, options.demo ? program.texts()[OwnText::ConsoleDemo] : QString()});
    QObject::connect(&gate, &ConsoleGate::refused, qApp,
                     [&termination](const QString &why) { QCoreApplication::exit(refuse(why, termination)); });
    ServiceManager manager;
    QObject::connect(&gate, &ConsoleGate::works, &manager, &ServiceManager::ready, Qt::QueuedConnection);
    QTimer::singleShot(0, &gate, &ConsoleGate::run);
    const int exitCode = QCoreApplication::exec();
    manager.stopping();
    gate.end();
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
    constexpr std::array named = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
    const bool display =
        std::any_of(named.begin(), named.end(), [](const char *name) { return !qEnvironmentVariableIsEmpty(name); });
    if (console || !display)
        return std::make_unique<QCoreApplication>(argumentCount, arguments);
    auto application = std::make_unique<QApplication>(argumentCount, arguments);
    // Docks find the menu entry by it, with its name and icon.
    QApplication::setDesktopFileName(QStringLiteral("kor-supervisor"));
    QApplication::setStyle(new DesktopStyle);
    installAccessibility();
    return application;
}

} // namespace

int main(int argumentCount, char *arguments[])
{
    forbidCoreDumps();
    // The libraries of window system and message bus start threads of their own.
    holdEndSignals();
    const std::unique_ptr<QCoreApplication> application = makeApplication(argumentCount, arguments);
    QCoreApplication::setApplicationName(QStringLiteral("kor-supervisor"));
    QCoreApplication::setApplicationVersion(programVersion());
    const int language = systemLanguage();
    Texts texts;
    texts.fill(language);
    std::optional<Termination> termination;
    CommandLine options = readCommandLine(QCoreApplication::arguments());
    if (options.wrong)
        return refuse(texts.sentence(*options.wrong), termination);
    if (options.help)
        return tell(commandLineHelp(texts));
    if (options.version)
        return tell(QStringLiteral("kor-supervisor %1\n").arg(programVersion()));
    if (!options.console && !qobject_cast<QApplication *>(application.get()))
        return refuse(texts[OwnText::NoDisplay], termination);
    const QString programs = QCoreApplication::applicationDirPath();
    ProgramPlaces places =
        programPlaces(options.folder, programs, QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));

    std::optional<Demonstration> demonstration;
    if (options.demo) {
        // What a demonstration has made is removed, whenever it ends.
        termination.emplace();
        demonstration.emplace(programs, places.installation);
        if (const Result<void> started = demonstration->start(); !started)
            return refuse(texts.sentence({OwnText::DemoCannotStart, {started.fault().subject}, started.fault()}),
                          termination);
        places.folder = demonstration->folder();
        options.port = Demonstration::Port;
    } else if (places.isUsersOwn) {
        Disk disk;
        if (const Result<void> made = makeUsersFolder(places.folder, disk); !made)
            return refuse(texts.sentence({OwnText::FolderCannotBePrepared, {made.fault().subject}, made.fault()}),
                          termination);
    }

    const Clock clock;
    const Printers printers;
    Program program(places, clock, printers);
    if (const std::optional<StartFault> fault = program.prepare(language, options.port))
        return refuse(program.texts().sentence(fault->message), termination);
    Awake awake(clock);
    program.keepAwake(awake);
    return options.console ? runConsole(program, options, termination) : runWindow(program, termination);
}
