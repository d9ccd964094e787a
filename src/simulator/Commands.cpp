#include "simulator/Commands.h"

#include <QList>

#include <algorithm>
#include <array>

namespace simulator {

namespace {

constexpr double longestWaitSeconds = 86'400;

/// A command, or what is wrong with its arguments.
using Parsed = std::variant<Command, QString>;

QList<QByteArray> words(const QByteArray &text)
{
    const QByteArray simplified = text.simplified();
    return simplified.isEmpty() ? QList<QByteArray>() : simplified.split(' ');
}

Parsed parseRecord(CodeKind kind, const QByteArray &arguments)
{
    const QList<QByteArray> given = words(arguments);
    const std::optional<quint32> code = given.isEmpty() ? std::nullopt : codeFromText(given.first());
    if (!code)
        return QStringLiteral("a code of 1 to 9 digits is needed");
    EventRecord record;
    record.kind = kind;
    record.code = *code;
    for (const QByteArray &word : given.sliced(1)) {
        const QByteArray channel = word.toUpper();
        if (word == "off")
            record.channelEnabled = false;
        else if (word == "disabled")
            record.interfaceDisabled = true;
        else if (channel.size() == 1 && channel[0] >= 'A' && channel[0] <= 'D')
            record.channel = channel[0];
        else
            return QStringLiteral("\"%1\" is no channel A to D, \"off\" or \"disabled\"").arg(QString::fromUtf8(word));
    }
    return SendRecord{record};
}

Parsed parseTransmitter(const QByteArray &arguments)
{
    return parseRecord(CodeKind::Transmitter, arguments);
}

Parsed parseKeypad(const QByteArray &arguments)
{
    return parseRecord(CodeKind::Keypad, arguments);
}

Parsed parseRaw(const QByteArray &arguments)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] != '\\') {
            bytes += arguments[i];
            continue;
        }
        const char letter = i + 1 < arguments.size() ? arguments[i + 1] : ' ';
        const QByteArray digits = arguments.mid(i + 2, 2);
        bool isHexadecimal = false;
        const uint value = digits.toUInt(&isHexadecimal, 16);
        if (letter == 'r') {
            bytes += '\r';
        } else if (letter == 'n') {
            bytes += '\n';
        } else if (letter == '\\') {
            bytes += '\\';
        } else if (letter == 'x' && digits.size() == 2 && isHexadecimal) {
            bytes += static_cast<char>(value);
            i += 2;
        } else {
            return QStringLiteral("after \\ comes r, n, \\ or x and two hexadecimal digits");
        }
        ++i;
    }
    if (bytes.isEmpty())
        return QStringLiteral("a text is needed");
    return SendBytes{bytes};
}

Parsed parseLineOfText(const QByteArray &arguments)
{
    Parsed parsed = parseRaw(arguments);
    if (auto *command = std::get_if<Command>(&parsed))
        std::get<SendBytes>(*command).bytes += "\r\n";
    return parsed;
}

Parsed parseRepower(const QByteArray &arguments)
{
    const QByteArray mark = arguments.trimmed();
    if (mark != "" && mark != "0" && mark != "128")
        return QStringLiteral("the byte is 0 or 128");
    return SendBytes{QByteArray(1, mark == "128" ? '\x80' : '\0')};
}

Parsed parseFault(const QByteArray &arguments)
{
    if (const std::optional<ReplyFault> fault = faultFromName(arguments.trimmed()))
        return SetFault{*fault};
    return QStringLiteral("the fault is none, silence, late, third, empty, no-third, garbage or no-channels");
}

Parsed parseProtocol(const QByteArray &arguments)
{
    const QByteArray name = arguments.trimmed();
    if (name.isEmpty())
        return QStringLiteral("a name is needed");
    return SetProtocol{name};
}

Parsed parseWait(const QByteArray &arguments)
{
    bool isNumber = false;
    const double seconds = arguments.trimmed().toDouble(&isNumber);
    if (!isNumber || !(seconds >= 0 && seconds <= longestWaitSeconds))
        return QStringLiteral("seconds from 0 to 86400 are needed");
    return Wait{static_cast<int>(seconds * 1000)};
}

Parsed parseBurst(const QByteArray &arguments)
{
    bool isNumber = false;
    const int records = arguments.trimmed().toInt(&isNumber);
    if (!isNumber || records < 1 || records > burstLimit)
        return QStringLiteral("a number of records from 1 to 100000 is needed");
    return SendBurst{records};
}

template<class Plain>
Parsed parsePlain(const QByteArray &arguments)
{
    if (!arguments.trimmed().isEmpty())
        return QStringLiteral("nothing may follow");
    return Command{Plain{}};
}

struct Word {
    QByteArrayView name;
    Parsed (*parse)(const QByteArray &arguments);
};

constexpr std::array<Word, 15> vocabulary = {{
    {"tx", parseTransmitter},
    {"dks", parseKeypad},
    {"raw", parseRaw},
    {"record", parseLineOfText},
    {"repower", parseRepower},
    {"burst", parseBurst},
    {"off", parsePlain<SwitchOff>},
    {"on", parsePlain<SwitchOn>},
    {"fault", parseFault},
    {"protocol", parseProtocol},
    {"wait", parseWait},
    {"status", parsePlain<TellStatus>},
    {"unplug", parsePlain<Unplug>},
    {"plug", parsePlain<Plug>},
    {"quit", parsePlain<Quit>},
}};

} // namespace

ParsedLine parseLine(const QByteArray &line)
{
    QByteArray text = line.endsWith('\r') ? line.chopped(1) : line;
    while (text.startsWith(' ') || text.startsWith('\t'))
        text.remove(0, 1);
    if (text.isEmpty() || text.startsWith('#'))
        return {};

    // What follows the one blank after the word is the argument as it stands: raw text may begin and end with blanks.
    const auto *blank = std::ranges::find_if(text.cbegin(), text.cend(), [](char c) { return c == ' ' || c == '\t'; });
    const qsizetype length = blank - text.cbegin();
    const QByteArray name = text.first(length);
    const auto *known = std::ranges::find(vocabulary, QByteArrayView(name), &Word::name);
    ParsedLine parsed;
    if (known == vocabulary.cend()) {
        parsed.fault = QStringLiteral("%1: no such command").arg(QString::fromUtf8(name));
        return parsed;
    }
    const Parsed outcome = known->parse(text.mid(length + 1));
    if (const auto *command = std::get_if<Command>(&outcome))
        parsed.command = *command;
    else
        parsed.fault = QStringLiteral("%1: %2").arg(QString::fromUtf8(text), std::get<QString>(outcome));
    return parsed;
}

bool sendsBytes(const Command &command)
{
    return std::holds_alternative<SendRecord>(command) || std::holds_alternative<SendBytes>(command) ||
           std::holds_alternative<SendBurst>(command);
}

} // namespace simulator
