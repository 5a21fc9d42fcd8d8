#include "catalogue/skin_tone.h"

#include <gtest/gtest.h>

namespace glyma {
namespace {

TEST(SkinTone, FollowsEveryScalarThatTakesOne) {
    const std::optional<std::string> medium = "🏽";
    EXPECT_EQ(applySkinTone("👍", medium), "👍🏽");
    EXPECT_EQ(applySkinTone("👨‍👩‍👧", medium), "👨🏽‍👩🏽‍👧🏽");
    EXPECT_EQ(applySkinTone("👩‍🚀", medium), "👩🏽‍🚀");
    EXPECT_EQ(applySkinTone("☝\uFE0F", medium), "☝🏽\uFE0F") << "nothing but the tone is added";
    EXPECT_EQ(applySkinTone("👍🏿", medium), "👍🏽🏿") << "nor replaced";
    EXPECT_EQ(applySkinTone("Best, 👋!", medium), "Best, 👋🏽!") << "a snippet";
}

TEST(SkinTone, LeavesEverythingElseAlone) {
    for (const auto* text : {"😀", "❤️", "🇩🇪", "", "a", "bad \xFF byte"})
        EXPECT_EQ(applySkinTone(text, "🏽"), text);
    EXPECT_EQ(applySkinTone("👍", std::nullopt), "👍");
}

} // namespace
} // namespace glyma
