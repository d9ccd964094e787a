#include "startup/OptionTable.h"

#include "texts/OwnText.h"

#include <algorithm>

namespace {

constexpr qsizetype lineWidth = 80;

} // namespace

QString typed(const Option &option)
{
    const QString name = QStringLiteral("--") + QLatin1String(option.name);
    return *option.value ? name + QLatin1Char(' ') + QLatin1String(option.value) : name;
}

void addOptions(QCommandLineParser &parser, std::span<const Option> options)
{
    for (const Option &option : options) {
        QStringList names{QLatin1String(option.name)};
        if (*option.letter)
            names.append(QLatin1String(option.letter));
        parser.addOption({names, {}, QLatin1String(option.value)});
    }
}

Message misunderstood(const QCommandLineParser &parser, const QStringList &arguments, std::span<const Option> options)
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

QString optionsHelp(std::span<const Option> options, const Texts &texts)
{
    qsizetype width = 0;
    for (const Option &option : options)
        width = std::max(width, typed(option).size());
    QString help = texts[OwnText::HelpOptions];
    for (const Option &option : options) {
        const QString letter = *option.letter ? QStringLiteral("-%1, ").arg(QLatin1String(option.letter)) : QString();
        help += QStringLiteral("\n  ") + letter.leftJustified(4) + typed(option).leftJustified(width + 2) +
                wrapped(texts[option.meaning].split(QLatin1Char(' ')), width + 8);
    }
    return help + QLatin1Char('\n');
}
