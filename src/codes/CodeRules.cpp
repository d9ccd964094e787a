#include "codes/CodeRules.h"

#include "startup/Numbers.h"
#include "startup/PlainText.h"

namespace {

/// The last @p digits of a code above @p limit, one digit less where these are above it themselves.
QString tail(const QString &code, double limit, int digits)
{
    if (leadingNumber(code) <= limit)
        return {};
    const QString longer = code.right(digits);
    return leadingNumber(longer) <= limit ? longer : code.right(digits - 1);
}

} // namespace

QString typeText(std::optional<CodeType> type)
{
    if (!type)
        return {};
    return type == CodeType::Transmitter ? QStringLiteral("TX") : QStringLiteral("DKS");
}

std::optional<CodeType> typeOf(const QString &text)
{
    for (const CodeType type : {CodeType::Transmitter, CodeType::Keypad}) {
        if (text == typeText(type))
            return type;
    }
    return {};
}

EntryCheck checkEntry(const QString &typed, CodeType type)
{
    const QString code = TogliZeri(typed);
    const double value = leadingNumber(code);
    if (value <= 0)
        return {EntryFault::NotAboveZero, {}};
    if (type == CodeType::Transmitter && value > HighestTransmitterCode)
        return {EntryFault::AboveTransmitterMaximum, {}};
    if (type == CodeType::Keypad && value > HighestKeypadCode)
        return {EntryFault::AboveKeypadMaximum, {}};
    return {EntryFault::None, code};
}

Protocol protocolCode(const QString &name, bool hasSiteCode, bool hasChannelInfo)
{
    using enum Protocol;
    if (name == QStringLiteral("WIEGAND 26 BIT"))
        return !hasSiteCode ? Wiegand26 : hasChannelInfo ? Wiegand26SiteChannel : Wiegand26Site;
    if (name == QStringLiteral("WIEGAND 37 BIT HID")) {
        if (hasSiteCode)
            return hasChannelInfo ? Wiegand37SiteChannel : Wiegand37Site;
        return hasChannelInfo ? Wiegand37Channel : Wiegand37;
    }
    if (name == QStringLiteral("WIEGAND 37 BIT HID D10302"))
        return hasChannelInfo ? Wiegand37D10302Bcd : Wiegand37D10302;
    if (name == QStringLiteral("WIEGAND 50 BIT"))
        return hasChannelInfo ? Wiegand50Channel : Wiegand50;
    if (name == QStringLiteral("TOLMAR"))
        return Tolmar;
    if (name == QStringLiteral("ISO2"))
        return Iso2;
    return name == QStringLiteral("RS_C") ? RsC : NotKnown;
}

bool hasTruncatedCodes(Protocol protocol)
{
    using enum Protocol;
    switch (protocol) {
    case Wiegand26:
    case Wiegand26SiteChannel:
    case Wiegand26Site:
    case Wiegand37SiteChannel:
    case Wiegand37Site:
    case Wiegand37D10302Bcd:
    case RsC:
        return true;
    default:
        return false;
    }
}

QString truncatedCode(const QString &code, Protocol protocol)
{
    using enum Protocol;
    switch (protocol) {
    case Wiegand26:
        return tail(code, (1 << 24) - 1, 8);
    case Wiegand26SiteChannel:
    case Wiegand26Site:
        return tail(code, (1 << 16) - 1, 5);
    case Wiegand37SiteChannel:
    case Wiegand37Site:
        return tail(code, (1 << 19) - 1, 6);
    case Wiegand37D10302Bcd:
        return leadingNumber(code) > 99'999'999 ? code.right(8) : QString();
    case RsC:
        return (QStringLiteral("00000") + QString::number(static_cast<qulonglong>(leadingNumber(code)), 16).toUpper())
            .right(5);
    default:
        return {};
    }
}
