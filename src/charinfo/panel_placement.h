#pragma once

#include "platform/screens.h"

#include <cstddef>
#include <span>

namespace glyma {

/// Where the panel with so many cards goes: below and to the right of the pointer, 8 logical pixels inside
/// the visible frame of its screen, and no larger than fits there. \param screens  the main one first; none:
/// one of 1440 by 900.
Rect characterInfoFrame(Point pointer, std::size_t cards, std::span<const Screen> screens);

} // namespace glyma
