#include "startup/WindowPlace.h"

#include "startup/Numbers.h"

#include <QStringList>

namespace {

constexpr QSize smallest(100, 60);

}

QString placeText(const WindowPlace &place)
{
    const QRect &geometry = place.geometry;
    return QStringLiteral("%1,%2,%3,%4,%5")
        .arg(geometry.x())
        .arg(geometry.y())
        .arg(geometry.width())
        .arg(geometry.height())
        .arg(place.isMaximised ? 1 : 0);
}

std::optional<WindowPlace> placeFrom(const QString &text, QSize area)
{
    QList<int> numbers;
    for (const QString &part : text.split(QLatin1Char(','))) {
        const std::optional<int> number = wholeNumber(part);
        if (!number)
            return {};
        numbers.append(*number);
    }
    if (numbers.size() != 5 || numbers[4] < 0 || numbers[4] > 1)
        return {};
    const QRect geometry(numbers[0], numbers[1], numbers[2], numbers[3]);
    const bool isSeen = geometry.width() >= smallest.width() && geometry.height() >= smallest.height();
    if (!isSeen || !QRect(QPoint(), area).contains(geometry))
        return {};
    return WindowPlace{geometry, numbers[4] == 1};
}
