#pragma once

#include "codes/CodeRules.h"

#include <QDate>
#include <QString>

/// An event as the archives hold it; the names are those of the fields. What an archive holds in another form reads as
/// nothing: a day or time that is not valid, a type without a value.
struct Event {
    QString Codice; ///< without leading zeros
    QDate Data;
    QTime Ora; ///< whole seconds
    std::optional<CodeType> Tipo;
    QString Canale;      ///< "A" to "D"
    bool AbCh = false;   ///< the channel was not enabled
    bool KorDis = false; ///< the interface was disabled
    bool operator==(const Event &) const = default;
};

/// "X" for what is marked, "" for what is not.
inline QString markText(bool isMarked)
{
    return isMarked ? QStringLiteral("X") : QString();
}
