#include "picker/placement.h"
#include "picker/qt/picker_layout.h"
#include "picker/qt/x11_window.h"
#include "platform/qt/qt_screens.h"

#include <gtest/gtest.h>

#include <vector>

namespace glyma::qt {
namespace {

ListGeometry sevenOf(std::size_t count, int offset = 0) {
    return {count, QSize(320, 7 * 48 + 53), offset};
}

TEST(ListGeometry, FillsThePanelThatPlacementMakesForIt) {
    const std::vector<Screen> screens = {{{0, 0, 1920, 1080}, {0, 0, 1920, 1080}, 1}};
    for (const std::size_t items : {1U, 3U, 7U, 30U}) {
        const auto frame = pickerFrame({100, 100, 2, 20}, items, 7, false, screens);
        const ListGeometry list{items, QSize(int(frame.width), int(frame.height)), 0};
        EXPECT_EQ(list.endVisible(), std::min<std::size_t>(items, 7));
        const auto last = list.row(list.endVisible() - 1);
        EXPECT_EQ(last.bottom() + 1 + layout::listMargin, int(frame.height));
        EXPECT_EQ(list.maximumOffset(), items > 7 ? int(items - 7) * 48 : 0);
    }
}

TEST(ListGeometry, FindsTheRowUnderThePointer) {
    for (const int offset : {0, 48, 100}) {
        const auto list = sevenOf(30, offset);
        for (auto index = list.firstVisible(); index < list.endVisible(); ++index) {
            const auto seen = list.row(index).intersected(list.viewport());
            EXPECT_EQ(list.rowAt(seen.center()), index);
            EXPECT_EQ(list.rowAt(seen.topLeft()), index);
        }
    }
    EXPECT_EQ(sevenOf(30).rowAt({100, 20}), std::nullopt); // the header
    EXPECT_EQ(sevenOf(30, 48).rowAt({100, 20}), std::nullopt);
    EXPECT_EQ(sevenOf(2).rowAt({100, 200}), std::nullopt);  // below the last row
    EXPECT_EQ(sevenOf(30).rowAt({100, 388}), std::nullopt); // the margin
}

TEST(ListGeometry, ScrollsNoFurtherThanNeeded) {
    const auto after = [](int offset, std::size_t index) { return sevenOf(30, offset).offsetShowing(index); };
    EXPECT_EQ(after(0, 0), 0);
    EXPECT_EQ(after(0, 6), 0);
    EXPECT_EQ(after(0, 7), 48);
    EXPECT_EQ(after(0, 10), 4 * 48);
    EXPECT_EQ(after(4 * 48, 5), 4 * 48);
    EXPECT_EQ(after(4 * 48, 3), 3 * 48);
    EXPECT_EQ(after(100, 2), 96);
    EXPECT_EQ(after(0, 29), 23 * 48);
    EXPECT_EQ(sevenOf(3).offsetShowing(2), 0);
}

TEST(LogicalRect, UndoesTheDevicePixelsOfEveryScale) {
    for (const double scale : {1.0, 1.25, 1.5, 2.0})
        for (const QPoint origin : {QPoint(0, 0), QPoint(1920, 0), QPoint(-2560, 300)}) {
            const QRect logical(origin + QPoint(200, 96), QSize(320, 388));
            EXPECT_EQ(logicalRect(deviceRect(logical, origin, scale), origin, scale), logical) << scale;
        }
    // The size is that of whole rows, whatever the position's rounding.
    EXPECT_EQ(logicalRect({101, 33, 400, 486.25}, {0, 0}, 1.25).size(), QSize(320, 389));
}

TEST(KeptAbove, StaysOnItsSideWhileTheListGetsShorter) {
    const Rect caret{300, 700, 2, 20};
    const Rect above{300, 307, 320, 389};
    const Rect below{300, 724, 320, 101};
    EXPECT_EQ(keptAbove(above, below, caret, 1), (Rect{300, 595, 320, 101}));
    EXPECT_EQ(keptAbove(above, below, caret, 2).bottom(), 700 - 8);
    EXPECT_EQ(keptAbove(below, below, caret, 1), below);
    const Rect shorterAbove{300, 595, 320, 101};
    EXPECT_EQ(keptAbove(above, shorterAbove, caret, 1), shorterAbove);
    // A picker that had no room above either does not count as attached.
    const Rect squeezed{300, 304, 320, 389};
    EXPECT_EQ(keptAbove(squeezed, below, {300, 200, 2, 20}, 1), below);
}

TEST(RoundedStrips, CoverTheRectangleButItsCorners) {
    const QRect rect(36, 36, 320, 101);
    const auto strips = roundedStrips(rect, 16);
    int y = rect.top();
    long covered = 0;
    for (const auto& strip : strips) {
        EXPECT_EQ(strip.top(), y);
        EXPECT_EQ(strip.center().x(), rect.center().x());
        EXPECT_TRUE(rect.contains(strip));
        y += strip.height();
        covered += long(strip.width()) * strip.height();
    }
    EXPECT_EQ(y, rect.bottom() + 1);
    const double corners = (4 - 3.14159265) * 16 * 16;
    EXPECT_NEAR(double(covered), 320 * 101 - corners, 20);
}

} // namespace
} // namespace glyma::qt
