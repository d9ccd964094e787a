#pragma once

#include <QByteArray>
#include <QDate>
#include <QMap>

#include <optional>

namespace tool {

/// Where somebody stands who follows the events of a day.
struct Place {
    int file = 0;      ///< archives that had been set aside of the day
    qint64 number = 0; ///< of the latest event in its archive, 0 = none yet
    quint32 mark = 0;  ///< of what is stored of it, by which another archive in the place of that one is known
    bool operator==(const Place &) const = default;
};

/// The days that are followed, at any time few: "20040304.0.2000.9f3a1234~20040305.0.12.77bc0abc".
using Cursor = QMap<QDate, Place>;

QByteArray cursorText(const Cursor &cursor);
/// @return nothing for any other text
std::optional<Cursor> cursorOf(const QString &text);

} // namespace tool
