#include "link/ConfigFields.h"

ConfigFields configFields(const InterfaceConfig &config, const Texts &texts)
{
    ConfigFields fields;
    if (config.told != InterfaceConfig::Told::All) {
        fields.ProtCom = QStringLiteral("-1");
        fields.Ver = config.version.value_or(QString());
        return fields;
    }

    const auto yesNo = [&texts](bool yes) { return texts[yes ? Text::Si : Text::No]; };
    const auto onOff = [](bool on) { return on ? QStringLiteral("ON") : QStringLiteral("OFF"); };
    const Protocol protocol = config.protocolCode();
    // This protocol says by the mark of channel information that its codes are decimal digits; it has none itself.
    const bool isBcd = protocol == Protocol::Wiegand37D10302Bcd;
    // These two always carry it and do not say so.
    const bool alwaysHasChannels = protocol == Protocol::RsC || protocol == Protocol::Iso2;
    fields.ProtCom = isBcd ? config.protocol + QStringLiteral(" BCD") : config.protocol;
    fields.Enable = texts[config.isEnabled ? Text::Abilitata : Text::Disabilitata];
    fields.CanaliAb = config.channels;
    fields.InfCan = yesNo(alwaysHasChannels || (config.hasChannelInfo && !isBcd));
    fields.Ponte = onOff(config.isBridgeOn);
    fields.Pc = onOff(config.isPcOn);
    fields.J1 = onOff(config.isJ1On);
    fields.CodSito = yesNo(config.hasSiteCode);
    fields.Ver = config.version.value_or(QStringLiteral("--"));
    return fields;
}
