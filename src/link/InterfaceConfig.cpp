#include "link/InterfaceConfig.h"

QByteArray interfaceBanner()
{
    return QByteArrayLiteral("TOLMAR ELETTRONICA - INTERFACCIA MULTIPROTOCOLLO -");
}

InterfaceConfig parseReply(const QByteArray &line2, const QByteArray &line3)
{
    InterfaceConfig config;
    const QString line = QString::fromLatin1(line2);
    const QString version = QString::fromLatin1(line3);
    const qsizetype list = line.indexOf(QStringLiteral("CH:"));
    const qsizetype listEnd = list < 0 ? -1 : line.indexOf(QLatin1Char(' '), list + 3);
    if (listEnd < 0) {
        config.protocol = QStringLiteral("-1");
        config.version = version;
        return config;
    }

    // Each part is cut together with the character that separates it from what stands before.
    const auto cut = [](QString &text, const QString &mark) {
        const qsizetype at = text.indexOf(mark);
        if (at >= 0)
            text.truncate(qMax<qsizetype>(0, at - 1));
        return at >= 0 ? 1 : 0;
    };
    config.protocol = line.left(qMax<qsizetype>(0, list - 1));
    config.channelInfo = cut(config.protocol, QStringLiteral("+CH"));
    config.siteCode = cut(config.protocol, QStringLiteral("SITO"));
    config.channels = line.sliced(list + 3, listEnd - list - 3);
    config.pc = line.contains(QStringLiteral("PC")) ? 0 : 1;
    config.bridge = line.contains(QStringLiteral("BRIDGE")) ? 0 : 1;
    config.j1 = line.endsWith(QStringLiteral("J1")) ? QStringLiteral("ON") : QStringLiteral("OFF");
    config.enable = line.contains(QStringLiteral("ENABLE")) ? QStringLiteral("ENABLE") : QStringLiteral("DISABLE");
    config.version = version.isEmpty() ? QStringLiteral("--") : version.mid(9, 3);
    return config;
}
