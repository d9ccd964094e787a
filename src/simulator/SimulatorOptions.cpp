#include "simulator/SimulatorOptions.h"

#include "simulator/Commands.h"

#include <QCommandLineParser>

#include <algorithm>
#include <array>

namespace simulator {

namespace {

constexpr double lowestRate = 0.001;
constexpr double highestRate = 10'000;
constexpr qint64 highestCount = 1'000'000'000;

struct Option {
    const char *name;
    const char *value; ///< what it is followed by; nullptr for a switch
};

constexpr std::array<Option, 23> knownOptions = {{
    {"help", nullptr},         {"link", "path"},     {"protocol", "name"},        {"site", nullptr},
    {"channel-info", nullptr}, {"channels", "list"}, {"disabled", nullptr},       {"pc", nullptr},
    {"bridge", nullptr},       {"j1", nullptr},      {"version-text", "text"},    {"crlf", nullptr},
    {"fault", "name"},         {"file", "path"},     {"repeat", nullptr},         {"rate", "number"},
    {"count", "number"},       {"burst", "number"},  {"codes", "list"},           {"seed", "number"},
    {"fast", nullptr},         {"verbose", nullptr}, {"exit-when-done", nullptr},
}};

/// The values of the command line in the forms that are wanted, and the first of them that is wrong.
class Values
{
public:
    explicit Values(const QStringList &arguments)
    {
        for (const Option &option : knownOptions) {
            const QString name = QString::fromLatin1(option.name);
            m_parser.addOption(option.value == nullptr
                                   ? QCommandLineOption(name)
                                   : QCommandLineOption(name, QString(), QString::fromLatin1(option.value)));
        }
        m_parser.addOption(QCommandLineOption(QStringLiteral("h")));
        if (!m_parser.parse(arguments))
            m_fault = m_parser.errorText();
        else if (!m_parser.positionalArguments().isEmpty())
            m_fault = QStringLiteral("\"%1\" is no option").arg(m_parser.positionalArguments().constFirst());
    }

    const QString &fault() const { return m_fault; }
    void refuse(const QString &fault)
    {
        if (m_fault.isEmpty())
            m_fault = fault;
    }

    bool has(const char *name) const { return m_parser.isSet(QString::fromLatin1(name)); }
    QString text(const char *name) const { return m_parser.value(QString::fromLatin1(name)); }

    QString path(const char *name)
    {
        if (has(name) && text(name).isEmpty())
            refuse(QStringLiteral("--%1 needs a path").arg(QString::fromLatin1(name)));
        return text(name);
    }

    /// Printable characters as the wire carries them; @p otherwise when the option is not given.
    QByteArray wireText(const char *name, const QByteArray &otherwise)
    {
        if (!has(name))
            return otherwise;
        QByteArray bytes = text(name).toUtf8();
        if (!std::ranges::all_of(bytes, [](char c) { return c >= ' ' && c <= '~'; }))
            refuse(QStringLiteral("--%1 takes printable ASCII characters").arg(QString::fromLatin1(name)));
        return bytes;
    }

    double number(const char *name, double lowest, double highest, double otherwise)
    {
        if (!has(name))
            return otherwise;
        bool isNumber = false;
        const double value = text(name).toDouble(&isNumber);
        if (isNumber && value >= lowest && value <= highest)
            return value;
        refuse(
            QStringLiteral("--%1 takes a number from %2 to %3, not \"%4\"")
                .arg(QString::fromLatin1(name), QString::number(lowest), QString::number(highest, 'f', 0), text(name)));
        return otherwise;
    }

    qint64 whole(const char *name, qint64 lowest, qint64 highest, qint64 otherwise)
    {
        if (!has(name))
            return otherwise;
        bool isNumber = false;
        const qint64 value = text(name).toLongLong(&isNumber);
        if (isNumber && value >= lowest && value <= highest)
            return value;
        refuse(QStringLiteral("--%1 takes a whole number from %2 to %3, not \"%4\"")
                   .arg(QString::fromLatin1(name))
                   .arg(lowest)
                   .arg(highest)
                   .arg(text(name)));
        return otherwise;
    }

private:
    QCommandLineParser m_parser;
    QString m_fault;
};

InterfaceSetting settingFrom(Values &values)
{
    InterfaceSetting setting;
    setting.protocol = values.wireText("protocol", setting.protocol);
    setting.siteCode = values.has("site");
    setting.channelInformation = values.has("channel-info");
    setting.channels = values.wireText("channels", setting.channels);
    setting.disabled = values.has("disabled");
    setting.pc = values.has("pc");
    setting.bridge = values.has("bridge");
    setting.j1 = values.has("j1");
    setting.version = values.wireText("version-text", setting.version);
    setting.lineFeeds = values.has("crlf");
    if (setting.protocol.isEmpty())
        values.refuse(QStringLiteral("--protocol needs a name"));
    if (setting.channels.contains(' '))
        values.refuse(QStringLiteral("--channels takes no blanks"));
    if (setting.version.size() != 3)
        values.refuse(
            QStringLiteral("--version-text takes three characters, not \"%1\"").arg(values.text("version-text")));
    return setting;
}

QList<Code> codesFrom(Values &values)
{
    const QString list = values.has("codes") ? values.text("codes") : QStringLiteral("tx:12345,tx:67890,dks:777");
    QList<Code> codes;
    for (const QByteArray &entry : list.toUtf8().split(',')) {
        const QByteArray text = entry.trimmed();
        const qsizetype colon = text.indexOf(':');
        const QByteArray kind = text.first(std::max<qsizetype>(colon, 0));
        const std::optional<quint32> number = codeFromText(QByteArrayView(text).sliced(colon + 1));
        if (!number || (kind != "tx" && kind != "dks")) {
            values.refuse(QStringLiteral("--codes takes a list such as tx:12345,dks:777; \"%1\" is no code of it")
                              .arg(QString::fromUtf8(text)));
            return codes;
        }
        codes.append({kind == "tx" ? CodeKind::Transmitter : CodeKind::Keypad, *number});
    }
    return codes;
}

void readTraffic(Values &values, SimulatorOptions &options)
{
    options.file = values.path("file");
    options.repeat = values.has("repeat");
    options.exitWhenDone = values.has("exit-when-done");
    options.traffic.burst = static_cast<int>(values.whole("burst", 1, burstLimit, 0));
    const double rate = values.number("rate", lowestRate, highestRate, 0);
    if (!options.file.isEmpty()) {
        options.filePerSecond = rate;
        if (values.has("count"))
            values.refuse(QStringLiteral("--count goes with generated records, not with --file"));
    } else {
        if (values.has("count"))
            options.traffic.count = values.whole("count", 1, highestCount, 0);
        options.traffic.perSecond = values.has("count") && !values.has("rate") ? 1 : rate;
    }
    if (options.repeat && options.file.isEmpty())
        values.refuse(QStringLiteral("--repeat needs --file"));
    const bool ends = options.traffic.perSecond <= 0 || options.traffic.count;
    const bool sends = options.traffic.burst > 0 || options.traffic.perSecond > 0 || !options.file.isEmpty();
    if (options.exitWhenDone && (!ends || !sends || options.repeat))
        values.refuse(QStringLiteral("--exit-when-done needs an end: --count, --burst, or --file without --repeat"));
}

} // namespace

ParsedOptions parseOptions(const QStringList &arguments)
{
    Values values(arguments);
    ParsedOptions parsed;
    SimulatorOptions &options = parsed.options;
    options.help = values.fault().isEmpty() && (values.has("help") || values.has("h"));
    if (!values.fault().isEmpty() || options.help) {
        parsed.fault = values.fault();
        return parsed;
    }
    options.link = values.path("link");
    options.setting = settingFrom(values);
    if (values.has("fault")) {
        const std::optional<ReplyFault> fault = faultFromName(values.text("fault").toUtf8());
        if (!fault)
            values.refuse(QStringLiteral("--fault does not know \"%1\"").arg(values.text("fault")));
        options.fault = fault.value_or(ReplyFault::None);
    }
    readTraffic(values, options);
    options.codes = codesFrom(values);
    if (values.has("seed"))
        options.seed = static_cast<quint32>(values.whole("seed", 0, 4'294'967'295, 0));
    options.fast = values.has("fast");
    options.verbose = values.has("verbose");
    parsed.fault = values.fault();
    return parsed;
}

} // namespace simulator
