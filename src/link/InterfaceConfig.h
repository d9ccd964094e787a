#pragma once

#include <QByteArray>
#include <QString>

/// What the interface tells about itself; everything is empty or 0 when it did not answer.
struct InterfaceConfig {
    QString protocol;    ///< protocol name; "" = no answer, "-1" = banner but no usable configuration line
    int siteCode = 0;    ///< 1 when a site code is set
    QString enable;      ///< "ENABLE" or "DISABLE"
    QString channels;    ///< enabled channels as the interface lists them
    QString j1;          ///< "ON" or "OFF"
    int channelInfo = 0; ///< 1 when channel information is on
    int bridge = 0;      ///< 1 when the answer does not hold the word BRIDGE
    int pc = 0;          ///< 1 when the answer does not hold the word PC
    QString version;     ///< three characters, "--" when not told

    bool answered() const { return !protocol.isEmpty(); }
    bool operator==(const InterfaceConfig &) const = default;
};

/// First line of the interface's answer.
QByteArray interfaceBanner();

/// Reads the second and the third line of the answer, without their line ends. A second line without a channel list, or
/// without a blank behind it, counts as empty: its other parts cannot be told apart.
InterfaceConfig parseReply(const QByteArray &line2, const QByteArray &line3);
