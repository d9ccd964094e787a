#pragma once

#include "startup/Protocol.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// What the interface tells about itself.
struct InterfaceConfig {
    enum class Told {
        Nothing,    ///< it did not answer
        BannerOnly, ///< it answered, but its configuration line is of no use: only the version may be known
        All,
    };

    Told told = Told::Nothing;
    QString protocol; ///< name as the interface tells it
    bool hasSiteCode = false;
    bool isEnabled = false;
    QString channels; ///< enabled channels as the interface lists them
    bool isJ1On = false;
    bool hasChannelInfo = false;
    bool isBridgeOn = false;
    bool isPcOn = false;
    std::optional<QString> version; ///< nothing when it is not told; after the banner alone the whole line of it

    /// An answer that names no protocol counts as none.
    bool answered() const { return told == Told::BannerOnly || !protocol.isEmpty(); }
    Protocol protocolCode() const;
    bool operator==(const InterfaceConfig &) const = default;
};

/// First line of the interface's answer.
QByteArray interfaceBanner();

/// Reads the second and the third line of the answer, without their line ends. A second line without a channel list, or
/// without a blank behind it, is of no use: its other parts cannot be told apart.
InterfaceConfig parseReply(const QByteArray &line2, const QByteArray &line3);
