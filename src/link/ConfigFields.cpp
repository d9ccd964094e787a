#include "link/ConfigFields.h"

ConfigFields configFields(const InterfaceConfig &config, const Texts &texts)
{
    ConfigFields fields;
    fields.ProtCom = config.protocol;
    fields.Ver = config.version;
    if (config.protocol == QStringLiteral("-1"))
        return fields;

    const auto yesNo = [&texts](bool yes) { return texts[yes ? Text::Si : Text::No]; };
    const auto onOff = [](int flag) { return flag == 1 ? QStringLiteral("ON") : QStringLiteral("OFF"); };
    // This protocol says by the same mark that its codes are decimal digits; it has no channel information.
    const bool isBcdMark = config.protocol == QStringLiteral("WIEGAND 37 BIT HID D10302");
    // These two always carry it and do not say so.
    const bool alwaysHasChannels =
        config.protocol == QStringLiteral("RS_C") || config.protocol == QStringLiteral("ISO2");
    if (isBcdMark && config.channelInfo == 1)
        fields.ProtCom += QStringLiteral(" BCD");
    fields.Enable = texts[config.enable == QStringLiteral("ENABLE") ? Text::Abilitata : Text::Disabilitata];
    fields.CanaliAb = config.channels;
    fields.InfCan = yesNo(alwaysHasChannels || (config.channelInfo == 1 && !isBcdMark));
    fields.Ponte = onOff(config.bridge);
    fields.Pc = onOff(config.pc);
    fields.J1 = config.j1;
    fields.CodSito = yesNo(config.siteCode == 1);
    return fields;
}
