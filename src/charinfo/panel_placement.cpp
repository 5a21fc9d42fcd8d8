#include "charinfo/panel_placement.h"

#include "picker/placement.h"

#include <algorithm>

namespace glyma {

namespace {

// Logical pixels.
constexpr double margin = 8;
constexpr double pointerGap = 10;

Size sizeFor(std::size_t cards) {
    return cards == 1 ? Size{340, 440} : cards == 2 ? Size{620, 440} : Size{620, 560};
}

/// Behind the pointer if there is room, else as far as there is, but not before the start.
double placed(double pointer, double length, double start, double end) {
    return std::max(start, std::min(end - length, pointer));
}

} // namespace

Rect characterInfoFrame(Point pointer, std::size_t cards, std::span<const Screen> screens) {
    const auto [frame, visible, scale] = screenOf(pointer, screens);
    const double inset = margin * scale;
    const double gap = pointerGap * scale;
    const auto wanted = sizeFor(cards);
    const double width = std::min(wanted.width * scale, visible.width - 2 * inset);
    const double height = std::min(wanted.height * scale, visible.height - 2 * inset);
    return {placed(pointer.x + gap, width, visible.x + inset, visible.right() - inset),
            placed(pointer.y + gap, height, visible.y + inset, visible.bottom() - inset), width, height};
}

} // namespace glyma
