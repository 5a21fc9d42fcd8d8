#include "picker/placement.h"

#include <algorithm>

namespace glyma {

namespace {

// Logical pixels.
constexpr double rowHeight = 48;
constexpr double headerAndMargins = 53;
constexpr double plainWidth = 320;
constexpr double rankingWidth = 440;
constexpr double gap = 4;
constexpr double lowestCaret = 20;

constexpr Screen fallbackScreen{{0, 0, 1440, 900}, {0, 0, 1440, 900}, 1};

} // namespace

Screen screenOf(Point point, std::span<const Screen> screens) {
    if (screens.empty())
        return fallbackScreen;
    const auto found =
        std::ranges::find_if(screens, [point](const Screen& screen) { return screen.frame.contains(point); });
    return found == screens.end() ? screens.front() : *found;
}

Rect pickerFrame(const Rect& caret, std::size_t itemCount, std::int64_t visibleRows, bool showRankingInfo,
                 std::span<const Screen> screens) {
    const auto [frame, visible, scale] = screenOf(caret.centre(), screens);
    const auto rows =
        std::min<std::int64_t>(std::max<std::int64_t>(static_cast<std::int64_t>(itemCount), 1), visibleRows);
    const double height = (static_cast<double>(rows) * rowHeight + headerAndMargins) * scale;
    const double width = (showRankingInfo ? rankingWidth : plainWidth) * scale;
    const double margin = gap * scale;

    const double caretBottom = caret.y + std::max(caret.height, lowestCaret * scale);
    const bool fitsBelow = height + margin <= visible.bottom() - caretBottom;
    const double y =
        fitsBelow ? caretBottom + margin : std::max(visible.y + margin, caret.y - margin - height);
    const double x = std::max(visible.x + margin, std::min(visible.right() - width - margin, caret.x));
    return {x, y, width, height};
}

} // namespace glyma
