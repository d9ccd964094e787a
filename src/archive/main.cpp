#include "archive/Tool.h"
#include "platform/CoreDump.h"
#include "platform/SystemLanguage.h"
#include "platform/Termination.h"
#include "startup/Version.h"
#include "texts/OwnText.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <cstdio>
#include <cstdlib>

using namespace tool;

int main(int argumentCount, char *arguments[])
{
    forbidCoreDumps();
    holdEndSignals();
    keepFilesPrivate();
    const QCoreApplication application(argumentCount, arguments);
    QCoreApplication::setApplicationName(QStringLiteral("kor-archive"));
    const int language = systemLanguage();
    Texts texts;
    texts.fill(language);
    const Clock clock;
    const ToolOptions options = readToolOptions(QCoreApplication::arguments(), clock.date());
    if (options.wrong) {
        std::fprintf(stderr, "kor-archive: %s\n", texts.sentence(*options.wrong).toUtf8().constData());
        return Tool::NotDone;
    }
    if (options.help || options.version) {
        const QString text = options.help ? toolHelp(texts) : QStringLiteral("kor-archive %1\n").arg(programVersion());
        std::fputs(text.toUtf8().constData(), stdout);
        return EXIT_SUCCESS;
    }
    const ProgramPlaces places = programPlaces(options.folder, QCoreApplication::applicationDirPath(),
                                               QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    const Termination termination;
    Tool tool(options, places, language, clock);
    QObject::connect(&termination, &Termination::requested, &tool, &Tool::stop);
    QObject::connect(&tool, &Tool::ended, &application, &QCoreApplication::exit, Qt::QueuedConnection);
    QTimer::singleShot(0, &tool, &Tool::run);
    return QCoreApplication::exec();
}
