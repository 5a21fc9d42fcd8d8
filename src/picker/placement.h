#pragma once

#include "platform/geometry.h"
#include "platform/screens.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace glyma {

/// The screen that holds the point, else the main one, which comes first; one of 1440 by 900 when there is
/// none.
Screen screenOf(Point point, std::span<const Screen> screens);

/// Where the picker goes: below the caret if its height fits there, else above, left-aligned with the caret
/// and 4 logical pixels inside the visible frame of the caret's screen. 48 logical pixels a row plus 53; 320
/// wide, 440 with ranking info. \param caret        a caret lower than 20 logical pixels counts as 20 high,
/// measured down from its top. \param itemCount    an empty list takes one row. \param visibleRows  more than
/// 0. \param screens      the main one first; none: one of 1440 by 900.
Rect pickerFrame(const Rect& caret, std::size_t itemCount, std::int64_t visibleRows, bool showRankingInfo,
                 std::span<const Screen> screens);

} // namespace glyma
