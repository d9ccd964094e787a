#include "simulator/Records.h"

#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <utility>

namespace simulator {

namespace {

constexpr std::array<std::pair<ReplyFault, const char *>, 8> faultNames = {{
    {ReplyFault::None, "none"},
    {ReplyFault::Silence, "silence"},
    {ReplyFault::Late, "late"},
    {ReplyFault::Third, "third"},
    {ReplyFault::Empty, "empty"},
    {ReplyFault::NoThird, "no-third"},
    {ReplyFault::Garbage, "garbage"},
    {ReplyFault::NoChannels, "no-channels"},
}};

QByteArray configurationLine(const InterfaceSetting &setting, bool withChannels)
{
    QByteArray line = setting.protocol;
    if (setting.siteCode)
        line += " SITO";
    if (setting.channelInformation)
        line += " +CH";
    if (withChannels)
        line += " CH:" + setting.channels;
    line += setting.disabled ? " DISABLE" : " ENABLE";
    if (setting.pc)
        line += " PC";
    if (setting.bridge)
        line += " BRIDGE";
    if (setting.j1)
        line += " J1";
    return line;
}

} // namespace

QByteArray faultName(ReplyFault fault)
{
    const auto *found = std::ranges::find(faultNames, fault, &std::pair<ReplyFault, const char *>::first);
    return found->second;
}

std::optional<ReplyFault> faultFromName(QByteArrayView name)
{
    for (const auto &[fault, known] : faultNames) {
        if (name == QByteArrayView(known))
            return fault;
    }
    return {};
}

std::optional<quint32> codeFromText(QByteArrayView digits)
{
    const bool onlyDigits = std::ranges::all_of(digits, [](char c) { return c >= '0' && c <= '9'; });
    if (digits.isEmpty() || digits.size() > 9 || !onlyDigits)
        return {};
    return digits.toByteArray().toUInt();
}

QByteArray recordBytes(const EventRecord &record)
{
    QByteArray bytes;
    bytes += record.kind == CodeKind::Transmitter ? "R/" : "K/";
    bytes += record.channel;
    bytes += '-';
    bytes += QByteArray::number(record.code).rightJustified(9, '0');
    bytes += record.channelEnabled ? 'X' : '.';
    bytes += record.interfaceDisabled ? 'D' : '.';
    bytes += ".\r\n";
    return bytes;
}

QByteArray replyBytes(const InterfaceSetting &setting, ReplyFault fault)
{
    const QByteArray end = setting.lineFeeds ? "\r\n" : "\r";
    QByteArray bytes = "TOLMAR ELETTRONICA - INTERFACCIA MULTIPROTOCOLLO -" + end;
    if (fault != ReplyFault::Empty)
        bytes += configurationLine(setting, fault != ReplyFault::NoChannels);
    bytes += end;
    // The version is read by its place: nine characters stand before it.
    if (fault != ReplyFault::NoThird)
        bytes += "VERSIONE " + setting.version + end;
    return bytes;
}

QByteArray garbage(int length, QRandomGenerator &random)
{
    QByteArray bytes;
    while (bytes.size() < length) {
        const char byte = static_cast<char>(random.bounded(1, 128));
        if (byte != '\n')
            bytes += byte;
    }
    return bytes;
}

} // namespace simulator
