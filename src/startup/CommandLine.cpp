#include "startup/CommandLine.h"

#include "texts/OwnText.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>

namespace {

constexpr int highestPort = 8;
constexpr qsizetype lineWidth = 80;

struct Option {
    const char *name;
    const char *letter; ///< "" when it has no short form
    const char *value;  ///< what follows it; "" when nothing does
    OwnText meaning;
};

constexpr std::array options = {
    Option{"console", "", "", OwnText::HelpConsole},  Option{"demo", "", "", OwnText::HelpDemo},
    Option{"folder", "", "DIR", OwnText::HelpFolder}, Option{"password-file", "", "FILE", OwnText::HelpPasswordFile},
    Option{"port", "", "N", OwnText::HelpPort},       Option{"help", "h", "", OwnText::HelpHelp},
    Option{"version", "v", "", OwnText::HelpVersion},
};

/// As it is typed: "--port N".
QString typed(const Option &option)
{
    const QString name = QStringLiteral("--") + QLatin1String(option.name);
    return *option.value ? name + QLatin1Char(' ') + QLatin1String(option.value) : name;
}

/// @p words in lines, each but the first behind @p indent blanks.
QString wrapped(const QStringList &words, qsizetype indent)
{
    QString lines;
    qsizetype column = indent;
    for (const QString &word : words) {
        if (column > indent && column + 1 + word.size() > lineWidth) {
            lines += QLatin1Char('\n') + QString(indent, QLatin1Char(' '));
            column = indent;
        } else if (column > indent) {
            lines += QLatin1Char(' ');
            ++column;
        }
        lines += word;
        column += word.size();
    }
    return lines;
}

/// The parser knows what it did not understand in English words only.
Message misunderstood(const QCommandLineParser &parser, const QStringList &arguments)
{
    if (const QStringList unknown = parser.unknownOptionNames(); !unknown.isEmpty()) {
        const QString &name = unknown.constFirst();
        return {OwnText::ArgumentUnknown, {QLatin1String(name.size() == 1 ? "-" : "--") + name}, {}};
    }
    for (const Option &option : options) {
        const QString name = QLatin1String(option.name);
        if (*option.value && parser.isSet(name) && parser.values(name).isEmpty())
            return {OwnText::ArgumentWithoutValue, {typed(option)}, {}};
    }
    // What is left: a value behind an option that takes none.
    const auto withValue =
        std::find_if(arguments.begin() + 1, arguments.end(), [](const QString &one) { return one.contains(u'='); });
    return {OwnText::ArgumentUnexpected, {withValue == arguments.end() ? arguments.constLast() : *withValue}, {}};
}

} // namespace

CommandLine readCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    for (const Option &option : options) {
        QStringList names{QLatin1String(option.name)};
        if (*option.letter)
            names.append(QLatin1String(option.letter));
        parser.addOption({names, {}, QLatin1String(option.value)});
    }

    CommandLine line;
    if (!parser.parse(arguments)) {
        line.wrong = misunderstood(parser, arguments);
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
    qsizetype width = 0;
    QStringList usage{QStringLiteral("kor-supervisor")};
    for (const Option &option : options) {
        width = std::max(width, typed(option).size());
        usage.append(QStringLiteral("[%1]").arg(typed(option)));
    }
    const QString used = texts[OwnText::HelpUsage].arg(QString());
    QString help = used + wrapped(usage, used.size()) + QStringLiteral("\n\n") +
                   wrapped(texts[OwnText::HelpDescription].split(QLatin1Char(' ')), 0) + QStringLiteral("\n\n") +
                   texts[OwnText::HelpOptions];
    for (const Option &option : options) {
        const QString letter = *option.letter ? QStringLiteral("-%1, ").arg(QLatin1String(option.letter)) : QString();
        help += QStringLiteral("\n  ") + letter.leftJustified(4) + typed(option).leftJustified(width + 2) +
                wrapped(texts[option.meaning].split(QLatin1Char(' ')), width + 8);
    }
    return help + QLatin1Char('\n');
}
