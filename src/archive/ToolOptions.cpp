#include "archive/ToolOptions.h"

#include "archive/Cursor.h"
#include "archive/DayText.h"
#include "startup/OptionTable.h"
#include "startup/PlainText.h"
#include "texts/DateTimeText.h"
#include "texts/OwnText.h"
#include "users/UserLines.h"

#include <QLocale>

#include <algorithm>
#include <array>

namespace tool {

namespace {

struct Described {
    const char *name;
    OwnText meaning;
};

/// In the order of CommandName.
constexpr std::array commands = {
    Described{"search", OwnText::ToolSearch}, Described{"follow", OwnText::ToolFollow},
    Described{"users", OwnText::ToolUsers},   Described{"coverage", OwnText::ToolCoverage},
    Described{"verify", OwnText::ToolVerify}, Described{"backup", OwnText::ToolBackup},
    Described{"prune", OwnText::ToolPrune},
};

constexpr std::array options = {
    Option{"folder", "", "DIR", OwnText::HelpFolder},
    Option{"password-file", "", "FILE", OwnText::ToolPasswordFile},
    Option{"from", "", "DATE", OwnText::ToolFrom},
    Option{"to", "", "DATE", OwnText::ToolTo},
    Option{"between", "", "TIMES", OwnText::ToolBetween},
    Option{"code", "", "N", OwnText::ToolCode},
    Option{"surname", "", "S", OwnText::ToolSurname},
    Option{"name", "", "S", OwnText::ToolName},
    Option{"channels", "", "ABCD", OwnText::ToolChannels},
    Option{"type", "", "TYPES", OwnText::ToolType},
    Option{"only", "", "STATE", OwnText::ToolOnly},
    Option{"format", "", "FORMAT", OwnText::ToolFormat},
    Option{"separator", "", "C", OwnText::ToolSeparator},
    Option{"output", "", "FILE", OwnText::ToolOutput},
    Option{"after", "", "CURSOR", OwnText::ToolAfter},
    Option{"quick", "", "", OwnText::ToolQuick},
    Option{"before", "", "DATE", OwnText::ToolBefore},
    Option{"yes", "", "", OwnText::ToolYes},
    Option{"help", "h", "", OwnText::HelpHelp},
    Option{"version", "v", "", OwnText::HelpVersion},
};

QStringList listed(std::initializer_list<const char *> list)
{
    QStringList all;
    for (const char *name : list)
        all.append(QLatin1String(name));
    return all;
}

/// Options of a command besides those that all have.
QStringList optionsOf(CommandName command)
{
    switch (command) {
    case CommandName::Search:
        return listed({"from", "to", "between", "code", "surname", "name", "channels", "type", "only", "format",
                       "separator", "output"});
    case CommandName::Follow:
        return listed({"after", "format", "separator"});
    case CommandName::Users:
        return listed({"format", "separator", "output"});
    case CommandName::Coverage:
        return listed({"from", "to", "format", "output"});
    case CommandName::Verify:
        return listed({"quick"});
    case CommandName::Backup:
        return {};
    case CommandName::Prune:
        return listed({"before", "yes"});
    }
    return {};
}

QStringList formatsOf(CommandName command)
{
    switch (command) {
    case CommandName::Search:
        return listed({"table", "csv", "json", "xls"});
    case CommandName::Follow:
        return listed({"json", "csv"});
    case CommandName::Coverage:
        return listed({"table", "json"});
    default:
        return listed({"table", "csv", "json"});
    }
}

/// Takes the values of a command line over, up to the first that is wrong.
class Reading
{
public:
    Reading(const QCommandLineParser &parser, ToolOptions &into, QDate today)
        : m_parser(parser), m_options(into), m_today(today)
    {
    }

    void read();

private:
    bool has(const char *name) const { return m_parser.isSet(QLatin1String(name)); }
    QString value(const char *name) const { return m_parser.value(QLatin1String(name)); }
    void refuse(Message why)
    {
        if (!m_options.wrong)
            m_options.wrong = std::move(why);
    }
    void refuseValue(const char *name)
    {
        refuse({OwnText::ArgumentValue, {QStringLiteral("--") + QLatin1String(name), value(name)}, {}});
    }

    QString command() const { return QLatin1String(commands.at(static_cast<size_t>(m_options.command)).name); }
    bool readCommand();
    void readFilter();
    void readOutput();
    QString day(const char *name);
    void readTimes();

    const QCommandLineParser &m_parser;
    ToolOptions &m_options;
    const QDate m_today;
};

bool Reading::readCommand()
{
    const QStringList arguments = m_parser.positionalArguments();
    QStringList known;
    for (const Described &one : commands)
        known.append(QLatin1String(one.name));
    if (arguments.isEmpty()) {
        refuse({OwnText::ArgumentCommand, {known.join(QStringLiteral(", "))}, {}});
        return false;
    }
    const qsizetype place = known.indexOf(arguments.constFirst());
    const bool hasTarget = place == static_cast<qsizetype>(CommandName::Backup);
    if (place < 0 || arguments.size() > (hasTarget ? 2 : 1)) {
        refuse({OwnText::ArgumentUnexpected, {place < 0 ? arguments.constFirst() : arguments.constLast()}, {}});
        return false;
    }
    m_options.command = static_cast<CommandName>(place);
    m_options.target = arguments.value(1);
    if (hasTarget && m_options.target.isEmpty())
        refuse({OwnText::ArgumentNeeded, {QStringLiteral("backup"), QStringLiteral("TARGET")}, {}});
    const QStringList allowed = optionsOf(m_options.command) + listed({"folder", "password-file", "help", "version"});
    for (const Option &option : options) {
        if (has(option.name) && !allowed.contains(QLatin1String(option.name)))
            refuse({OwnText::ArgumentNotOf, {QStringLiteral("--") + QLatin1String(option.name), command()}, {}});
        else if (has(option.name) && *option.value && value(option.name).isEmpty())
            refuse({OwnText::ArgumentWithoutValue, {typed(option)}, {}});
    }
    return !m_options.wrong;
}

QString Reading::day(const char *name)
{
    if (!has(name))
        return DataBarre(m_today);
    QString text = dayText(value(name), m_today);
    if (text.isEmpty())
        refuseValue(name);
    return text;
}

void Reading::readTimes()
{
    const QStringList times = value("between").split(QStringLiteral(".."));
    m_options.query.from = timeText(times.constFirst());
    m_options.query.to = timeText(times.constLast());
    // Times past midnight would find nothing and say nothing.
    if (times.size() != 2 || m_options.query.from.isEmpty() || m_options.query.to.isEmpty() ||
        m_options.query.from > m_options.query.to)
        refuseValue("between");
}

void Reading::readFilter()
{
    TypedQuery &query = m_options.query;
    query.firstDay = day("from");
    query.lastDay = day("to");
    if (has("between"))
        readTimes();
    query.code = value("code");
    if (SoloCifre(query.code) != query.code)
        refuseValue("code");
    m_options.surname = value("surname");
    m_options.name = value("name");
    if (has("code") && (has("surname") || has("name")))
        refuse({OwnText::ArgumentNotOf, {QStringLiteral("--code"), QStringLiteral("--surname, --name")}, {}});
    if (has("channels")) {
        query.channels = {};
        for (const QChar channel : value("channels").toUpper()) {
            if (channel < u'A' || channel > u'D')
                refuseValue("channels");
            else
                query.channels.at(channel.unicode() - u'A') = true;
        }
    }
    if (has("type")) {
        query.transmitters = query.keypads = false;
        for (const QString &type : value("type").toLower().split(QLatin1Char(','))) {
            if (type != QStringLiteral("tx") && type != QStringLiteral("dks"))
                refuseValue("type");
            (type == QStringLiteral("tx") ? query.transmitters : query.keypads) = true;
        }
    }
    if (has("only") && value("only") != QStringLiteral("enabled") && value("only") != QStringLiteral("disabled"))
        refuseValue("only");
    if (has("only"))
        query.state = value("only") == QStringLiteral("enabled") ? EventChoice::State::OnlyEnabled
                                                                 : EventChoice::State::OnlyDisabled;
}

void Reading::readOutput()
{
    const QStringList formats = formatsOf(m_options.command);
    static const QStringList all = listed({"table", "csv", "json", "xls"});
    const QString format = has("format") ? value("format") : formats.constFirst();
    if (!formats.contains(format))
        refuseValue("format");
    m_options.format = static_cast<Format>(std::max<qsizetype>(all.indexOf(format), 0));
    m_options.output = value("output");
    if (m_options.format == Format::Xls && m_options.output.isEmpty())
        refuse({OwnText::ArgumentNeeded, {QStringLiteral("--format xls"), QStringLiteral("--output FILE")}, {}});
    if (!has("separator")) {
        if (m_options.command == CommandName::Users)
            m_options.separator = fieldSeparator(QLocale::system());
        return;
    }
    const QString separator = value("separator") == QStringLiteral("\\t") ? QStringLiteral("\t") : value("separator");
    if (separator.size() != 1 || separator[0] >= u'\u0080' || separator[0] == u'"' || separator[0] == u'\n' ||
        separator[0] == u'\r')
        refuseValue("separator");
    m_options.separator = separator[0].toLatin1();
}

void Reading::read()
{
    m_options.help = has("help");
    m_options.version = has("version");
    m_options.folder = value("folder");
    m_options.passwordFile = value("password-file");
    if (m_options.help || m_options.version || !readCommand())
        return;
    m_options.cursor = value("after");
    if (has("after") && !cursorOf(m_options.cursor))
        refuseValue("after");
    m_options.isQuick = has("quick");
    m_options.isSure = has("yes");
    readFilter();
    readOutput();
    if (m_options.command != CommandName::Prune)
        return;
    if (!has("before"))
        refuse({OwnText::ArgumentNeeded, {QStringLiteral("prune"), QStringLiteral("--before DATE")}, {}});
    else
        m_options.before = rangeDay(day("before"), End::First);
}

} // namespace

ToolOptions readToolOptions(const QStringList &arguments, QDate today)
{
    QCommandLineParser parser;
    addOptions(parser, options);
    ToolOptions read;
    if (parser.parse(arguments))
        Reading(parser, read, today).read();
    else
        read.wrong = misunderstood(parser, arguments, options);
    return read;
}

QString toolHelp(const Texts &texts)
{
    constexpr qsizetype indent = 14;
    QString help = texts[OwnText::HelpUsage].arg(QStringLiteral("kor-archive search|follow|users|coverage|verify|")) +
                   QStringLiteral("backup|prune\n       [--folder DIR] [TARGET] ...\n\n") +
                   wrapped(texts[OwnText::ToolDescription].split(QLatin1Char(' ')), 0) + QStringLiteral("\n\n") +
                   texts[OwnText::ToolCommands];
    for (const Described &command : commands)
        help += QStringLiteral("\n  ") + QString::fromLatin1(command.name).leftJustified(indent - 2) +
                wrapped(texts[command.meaning].split(QLatin1Char(' ')), indent);
    return help + QStringLiteral("\n\n") + optionsHelp(options, texts);
}

} // namespace tool
