#include "picker/placement.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

namespace glyma {

static void PrintTo(const Rect& rect, std::ostream* out) {
    *out << rect.x << "," << rect.y << " " << rect.width << "x" << rect.height;
}

namespace {

const Screen mainScreen{{0, 0, 1920, 1080}, {0, 30, 1920, 1050}, 1};
const Screen sharpScreen{{1920, 0, 3840, 2160}, {1920, 0, 3840, 2100}, 2};
const std::vector<Screen> both{mainScreen, sharpScreen};

TEST(Placement, IsAsHighAsItsRows) {
    const Rect caret{200, 200, 1, 20};
    const auto height = [&](std::size_t items, std::int64_t rows) {
        return pickerFrame(caret, items, rows, false, both).height;
    };
    EXPECT_EQ(height(0, 7), 101) << "an empty list takes one row";
    EXPECT_EQ(height(3, 7), 197);
    EXPECT_EQ(height(30, 7), 389);
    EXPECT_EQ(height(30, 1), 101);
    EXPECT_EQ(pickerFrame(caret, 3, 7, true, both).width, 440) << "wider with the ranking info";
}

TEST(Placement, FindsRoomAtTheCaret) {
    struct Case {
        const char* what;
        Rect caret;
        Rect frame; ///< of a picker with 7 rows: 320 x 389, twice that on the sharp screen
    };
    const Case cases[] = {
        {"below", {200, 200, 1, 24}, {200, 228, 320, 389}},
        {"a low caret counts as 20 high", {200, 200, 1, 2}, {200, 224, 320, 389}},
        {"just fits below", {200, 663, 1, 24}, {200, 691, 320, 389}},
        {"above when it would not fit", {200, 688, 1, 24}, {200, 295, 320, 389}},
        {"a low caret at the bottom", {200, 1078, 1, 2}, {200, 685, 320, 389}},
        {"no higher than the panel at the top allows", {200, 380, 1, 690}, {200, 34, 320, 389}},
        {"kept inside on the right", {1910, 200, 1, 20}, {1596, 224, 320, 389}},
        {"kept inside on the left", {0, 200, 1, 20}, {4, 224, 320, 389}},
        {"the caret's own screen, in its own scale", {2000, 100, 2, 30}, {2000, 148, 640, 778}},
        {"off every screen: the main one", {-500, 200, 1, 20}, {4, 224, 320, 389}},
    };
    for (const auto& [what, caret, frame] : cases)
        EXPECT_EQ(pickerFrame(caret, 7, 7, false, both), frame) << what;
    EXPECT_EQ(pickerFrame({1430, 890, 1, 20}, 7, 7, false, {}), (Rect{1116, 497, 320, 389}))
        << "no screen at all";
}

} // namespace
} // namespace glyma
