#include "charinfo/panel_placement.h"

#include <gtest/gtest.h>

#include <vector>

namespace glyma {
namespace {

const std::vector<Screen> oneScreen{{{0, 0, 1920, 1080}, {0, 30, 1920, 1050}, 1}};

TEST(PanelPlacement, IsBelowThePointerAndStaysInside) {
    EXPECT_EQ(characterInfoFrame({100, 200}, 1, oneScreen), (Rect{110, 210, 340, 440}));
    EXPECT_EQ(characterInfoFrame({100, 200}, 2, oneScreen), (Rect{110, 210, 620, 440}));
    EXPECT_EQ(characterInfoFrame({100, 200}, 24, oneScreen), (Rect{110, 210, 620, 560}));
    EXPECT_EQ(characterInfoFrame({1919, 1079}, 3, oneScreen), (Rect{1292, 512, 620, 560}));
    EXPECT_EQ(characterInfoFrame({0, 0}, 1, oneScreen), (Rect{10, 38, 340, 440}));
    EXPECT_EQ(characterInfoFrame({1439, 899}, 1, {}), (Rect{1092, 452, 340, 440}));
}

TEST(PanelPlacement, CountsInThePixelsOfThePointersScreen) {
    const std::vector<Screen> screens{oneScreen[0], {{1920, 0, 3840, 2160}, {1920, 0, 3840, 2160}, 2}};
    EXPECT_EQ(characterInfoFrame({2000, 100}, 1, screens), (Rect{2020, 120, 680, 880}));
    EXPECT_EQ(characterInfoFrame({5759, 100}, 1, screens), (Rect{5760 - 16 - 680, 120, 680, 880}));
}

TEST(PanelPlacement, IsSmallerWhereTheScreenIs) {
    const std::vector<Screen> small{{{0, 0, 800, 600}, {0, 40, 800, 560}, 2}};
    EXPECT_EQ(characterInfoFrame({400, 300}, 3, small), (Rect{16, 56, 768, 528}));
}

} // namespace
} // namespace glyma
