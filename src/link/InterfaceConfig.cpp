#include "link/InterfaceConfig.h"

#include "codes/CodeRules.h"

QByteArray interfaceBanner()
{
    return QByteArrayLiteral("TOLMAR ELETTRONICA - INTERFACCIA MULTIPROTOCOLLO -");
}

Protocol InterfaceConfig::protocolCode() const
{
    return ::protocolCode(protocol, hasSiteCode, hasChannelInfo);
}

InterfaceConfig parseReply(const QByteArray &line2, const QByteArray &line3)
{
    InterfaceConfig config;
    const QString line = QString::fromLatin1(line2);
    const QString version = QString::fromLatin1(line3);
    const qsizetype list = line.indexOf(QStringLiteral("CH:"));
    const qsizetype listEnd = list < 0 ? -1 : line.indexOf(QLatin1Char(' '), list + 3);
    if (listEnd < 0) {
        config.told = InterfaceConfig::Told::BannerOnly;
        config.version = version;
        return config;
    }

    // Each part is cut together with the character that separates it from what stands before.
    const auto cut = [](QString &text, const QString &mark) {
        const qsizetype at = text.indexOf(mark);
        if (at >= 0)
            text.truncate(qMax<qsizetype>(0, at - 1));
        return at >= 0;
    };
    config.told = InterfaceConfig::Told::All;
    config.protocol = line.left(qMax<qsizetype>(0, list - 1));
    config.hasChannelInfo = cut(config.protocol, QStringLiteral("+CH"));
    config.hasSiteCode = cut(config.protocol, QStringLiteral("SITO"));
    config.channels = line.sliced(list + 3, listEnd - list - 3);
    // The interface names what is switched off.
    config.isPcOn = !line.contains(QStringLiteral("PC"));
    config.isBridgeOn = !line.contains(QStringLiteral("BRIDGE"));
    config.isJ1On = line.endsWith(QStringLiteral("J1"));
    config.isEnabled = line.contains(QStringLiteral("ENABLE"));
    if (!version.isEmpty())
        config.version = version.mid(9, 3);
    return config;
}
