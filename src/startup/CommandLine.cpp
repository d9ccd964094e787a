#include "startup/CommandLine.h"

#include "startup/OptionTable.h"
#include "texts/OwnText.h"

#include <array>

namespace {

constexpr int highestPort = 8;

constexpr std::array options = {
    Option{"console", "", "", OwnText::HelpConsole},  Option{"demo", "", "", OwnText::HelpDemo},
    Option{"folder", "", "DIR", OwnText::HelpFolder}, Option{"password-file", "", "FILE", OwnText::HelpPasswordFile},
    Option{"port", "", "N", OwnText::HelpPort},       Option{"help", "h", "", OwnText::HelpHelp},
    Option{"version", "v", "", OwnText::HelpVersion},
};

} // namespace

CommandLine readCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    addOptions(parser, options);
    CommandLine line;
    if (!parser.parse(arguments)) {
        line.wrong = misunderstood(parser, arguments, options);
        return line;
    }
    line.console = parser.isSet(QStringLiteral("console"));
    line.demo = parser.isSet(QStringLiteral("demo"));
    line.help = parser.isSet(QStringLiteral("help"));
    line.version = parser.isSet(QStringLiteral("version"));
    line.folder = parser.value(QStringLiteral("folder"));
    line.passwordFile = parser.value(QStringLiteral("password-file"));
    const bool isPortSet = parser.isSet(QStringLiteral("port"));
    const QString port = parser.value(QStringLiteral("port"));
    bool isNumber = false;
    if (isPortSet)
        line.port = port.toInt(&isNumber);

    if (!parser.positionalArguments().isEmpty())
        line.wrong = {OwnText::ArgumentUnexpected, {parser.positionalArguments().constFirst()}, {}};
    else if (line.folder.isEmpty() && parser.isSet(QStringLiteral("folder")))
        line.wrong = {OwnText::ArgumentWithoutValue, {QStringLiteral("--folder DIR")}, {}};
    else if (line.demo && (isPortSet || !line.folder.isEmpty()))
        line.wrong = {OwnText::ArgumentsExclude, {}, {}};
    else if (isPortSet && (!isNumber || *line.port < 1 || *line.port > highestPort))
        line.wrong = {OwnText::ArgumentPortRange, {port}, {}};
    return line;
}

QString commandLineHelp(const Texts &texts)
{
    QStringList usage{QStringLiteral("kor-supervisor")};
    for (const Option &option : options)
        usage.append(QStringLiteral("[%1]").arg(typed(option)));
    const QString used = texts[OwnText::HelpUsage].arg(QString());
    return used + wrapped(usage, used.size()) + QStringLiteral("\n\n") +
           wrapped(texts[OwnText::HelpDescription].split(QLatin1Char(' ')), 0) + QStringLiteral("\n\n") +
           optionsHelp(options, texts);
}
