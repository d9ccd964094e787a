#pragma once

#include <QRect>
#include <QString>

#include <optional>

/// Where a window stands in the client area, as the settings keep it: "x,y,width,height,maximised", in pixels.
struct WindowPlace {
    QRect geometry; ///< of its frame, when it is not maximised
    bool isMaximised = false;

    bool operator==(const WindowPlace &) const = default;
};

QString placeText(const WindowPlace &place);

/// @param area  size of the client area
/// @return none for a text that is no place, and for a window that would not lie in the area or be too small to be seen
std::optional<WindowPlace> placeFrom(const QString &text, QSize area);
