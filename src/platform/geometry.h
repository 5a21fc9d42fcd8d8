#pragma once

#include <algorithm>

namespace glyma {

/// Desktop coordinates: device pixels of the whole desktop, origin at its top left, y growing downwards.
/// Everything that crosses a port is in them; only the windows themselves think in logical pixels
/// (Screen::scale).
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double right() const { return x + width; }
    double bottom() const { return y + height; }
    Point centre() const { return {x + width / 2, y + height / 2}; }
    bool contains(Point point) const {
        return point.x >= x && point.x < right() && point.y >= y && point.y < bottom();
    }
    bool operator==(const Rect&) const = default;
};

} // namespace glyma
