#include "picker/qt/picker_layout.h"

#include <algorithm>
#include <cmath>

namespace glyma::qt {

namespace {

constexpr double caretGap = 4;

} // namespace

int ListGeometry::maximumOffset() const {
    return std::max(0, static_cast<int>(itemCount) * layout::rowHeight - viewportHeight());
}

QRect ListGeometry::viewport() const {
    // Rows scroll through the margin above them, not through the one that keeps clear of the rounded corners.
    const int top = layout::listTop - layout::listMargin;
    return {0, top, panel.width(), panel.height() - top - layout::listMargin};
}

QRect ListGeometry::row(std::size_t index) const {
    return {layout::rowInset, layout::listTop + static_cast<int>(index) * layout::rowHeight - offset,
            panel.width() - 2 * layout::rowInset, layout::rowHeight};
}

std::optional<std::size_t> ListGeometry::rowAt(QPoint point) const {
    const int distance = point.y() - layout::listTop + offset;
    if (!viewport().contains(point) || distance < 0)
        return std::nullopt;
    const auto index = static_cast<std::size_t>(distance / layout::rowHeight);
    return index < itemCount ? std::optional(index) : std::nullopt;
}

std::size_t ListGeometry::firstVisible() const {
    return static_cast<std::size_t>(std::max(0, offset - layout::listMargin) / layout::rowHeight);
}

std::size_t ListGeometry::endVisible() const {
    const int bottom = offset + viewportHeight();
    return std::min(
        itemCount, static_cast<std::size_t>(std::max(0, bottom + layout::rowHeight - 1) / layout::rowHeight));
}

int ListGeometry::offsetShowing(std::size_t index) const {
    const int top = static_cast<int>(index) * layout::rowHeight;
    const int least = top + layout::rowHeight - viewportHeight();
    return std::clamp(std::clamp(offset, std::min(least, top), top), 0, maximumOffset());
}

QRect logicalRect(const Rect& device, QPoint screenOrigin, double scale) {
    const auto coordinate = [scale](double value, int origin) {
        return origin + static_cast<int>(std::lround((value - origin) / scale));
    };
    return {coordinate(device.x, screenOrigin.x()), coordinate(device.y, screenOrigin.y()),
            static_cast<int>(std::lround(device.width / scale)),
            static_cast<int>(std::lround(device.height / scale))};
}

Rect keptAbove(const Rect& previous, const Rect& next, const Rect& caret, double scale) {
    const bool wasAbove = previous.bottom() <= caret.y;
    const bool goesBelow = next.y >= caret.y;
    const double y = caret.y - caretGap * scale - next.height;
    if (!wasAbove || !goesBelow || y < previous.y)
        return next;
    return {next.x, y, next.width, next.height};
}

} // namespace glyma::qt
