#pragma once

#include "platform/geometry.h"

#include <QPoint>
#include <QRect>
#include <QRectF>

#include <cstddef>
#include <optional>

namespace glyma::qt {

/// Where things are within the panel, in logical pixels from its top left corner.
namespace layout {

inline constexpr double panelRadius = 16;
inline constexpr int rowHeight = 48;
inline constexpr int headerHeight = 44;
inline constexpr int separatorHeight = 1;
inline constexpr int listMargin = 4;
inline constexpr int rowInset = 4;      ///< from the panel's edge to a row's background
inline constexpr int contentInset = 12; ///< from there to what the row shows
inline constexpr double rowRadius = 6;
inline constexpr int iconColumn = 34;
inline constexpr int iconGap = 10;
inline constexpr double iconSize = 24;
inline constexpr int listTop = headerHeight + separatorHeight + listMargin;
/// All but the rows.
inline constexpr int chromeHeight = listTop + listMargin;

} // namespace layout

/// The list's scroll position and what it shows. Logical pixels; the first row's top at offset 0.
struct ListGeometry {
    std::size_t itemCount = 0;
    QSize panel;
    int offset = 0;

    int viewportHeight() const { return panel.height() - layout::chromeHeight; }
    int maximumOffset() const;
    /// The part of the panel that rows are drawn in.
    QRect viewport() const;
    /// Background of a row, relative to the panel; may be outside the viewport.
    QRect row(std::size_t index) const;
    std::optional<std::size_t> rowAt(QPoint point) const;
    std::size_t firstVisible() const;
    /// One past the last.
    std::size_t endVisible() const;
    /// The offset, changed as little as needed to show the whole row.
    int offsetShowing(std::size_t index) const;
};

/// Desktop coordinates in device pixels as Qt's logical ones: Qt keeps each screen's top left corner and
/// counts in logical pixels from there.
QRect logicalRect(const Rect& device, QPoint screenOrigin, double scale);

/// Keeps an open picker that sits above its caret there as long as it fits, where a shorter list would place
/// it below: it must not jump while the user types. \param previous  the frame so far.  \param next  where
/// the picker would go.  \param scale  device pixels a logical.
Rect keptAbove(const Rect& previous, const Rect& next, const Rect& caret, double scale);

} // namespace glyma::qt
