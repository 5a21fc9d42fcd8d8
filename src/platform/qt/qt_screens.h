#pragma once

#include "platform/screens.h"

#include <QPoint>
#include <QRect>

namespace glyma::qt {

/// Qt keeps each screen's top left corner in device pixels and counts in logical pixels from there, also
/// where a screen's neighbours have another scale. These two undo that.
Rect deviceRect(QRect logical, QPoint screenOrigin, double scale);
Point devicePoint(QPoint logical, QPoint screenOrigin, double scale);

class QtScreens : public Screens {
public:
    std::vector<Screen> all() override;
    Point pointerLocation() override;
};

class QtBell : public Bell {
public:
    void ring() override;
};

} // namespace glyma::qt
