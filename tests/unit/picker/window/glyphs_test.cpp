#include "picker/qt/glyphs.h"

#include <gtest/gtest.h>

namespace glyma::qt {
namespace {

TEST(Glyphs, KnowWhatIsDrawnInColour) {
    for (const auto* character :
         {"😀", "❤\uFE0F", "👋\U0001F3FD", "🖐\U0001F3FD", "👩‍🚀", "1\uFE0F\u20E3", "🇫🇷"})
        EXPECT_TRUE(hasEmojiPresentation(character)) << character;
    for (const auto* character :
         {"❤", "☺", "😀\uFE0E", "a", "1", "½", "☞", "\u2060", "e\u0301", "नि", "क्‍ष", ""})
        EXPECT_FALSE(hasEmojiPresentation(character)) << character;
}

} // namespace
} // namespace glyma::qt
