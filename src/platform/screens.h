#pragma once

#include "platform/geometry.h"

#include <vector>

namespace glyma {

struct Screen {
    Rect frame;
    /// `frame` without panels and docks.
    Rect visibleFrame;
    /// Device pixels a logical pixel.
    double scale = 1;
    bool operator==(const Screen&) const = default;
};

/// The screens and the pointer on them. Main thread.
class Screens {
public:
    virtual ~Screens() = default;

    /// The main screen first; empty when there is none.
    virtual std::vector<Screen> all() = 0;
    virtual Point pointerLocation() = 0;
};

/// The attention sound. Main thread.
class Bell {
public:
    virtual ~Bell() = default;
    virtual void ring() = 0;
};

} // namespace glyma
