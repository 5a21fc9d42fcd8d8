#include "unicode/properties.h"

#include <gtest/gtest.h>

using namespace glyma::unicode;

namespace {

TEST(Emoji, OnesYoungerThanTheLibraryAreKnown) {
    // Bags under the eyes (16.0), distorted face (17.0), landslide (17.0).
    for (const auto scalar : {U'\U0001FAE9', U'\U0001FAEA', U'\U0001F6D8'}) {
        EXPECT_TRUE(isEmoji(scalar)) << std::hex << static_cast<std::uint32_t>(scalar);
        EXPECT_TRUE(isEmojiPresentation(scalar)) << std::hex << static_cast<std::uint32_t>(scalar);
    }
    for (const auto scalar : {U'\U0001FA54', U'\U0001F8B0', U'\U000E0080', U'\U00000378'})
        EXPECT_FALSE(isEmoji(scalar)) << std::hex << static_cast<std::uint32_t>(scalar);
}

TEST(Emoji, LooksLikeOneAsItStandsAlone) {
    for (const auto* emoji : {"😀", "©", "❤️", "🇩🇪", "#️⃣", "👨‍👩‍👧", "Ⓜ", "ab"})
        EXPECT_TRUE(looksLikeEmoji(emoji)) << emoji;
    for (const auto* other : {"", "a", "5", "#", "*", "🏽", "🇩", "①", "é"})
        EXPECT_FALSE(looksLikeEmoji(other)) << other;
    for (const auto* component : {"5", "#", "*", "🏽", "🇩"})
        EXPECT_TRUE(isBareEmojiComponent(component)) << component;
    for (const auto* other : {"", "😀", "55", "5\uFE0F", "+", "/", ":"})
        EXPECT_FALSE(isBareEmojiComponent(other)) << other;
}

TEST(EmojiPresentation, IsAskedForWhereTextIsTheDefault) {
    struct Case {
        const char* given;
        const char* expected;
    };
    const Case cases[] = {
        {"\u263A", "\u263A\uFE0F"},
        {"\u2764\uFE0F", "\u2764\uFE0F"},
        {"\u2764\uFE0E", "\u2764\uFE0E"},
        {"\u261D\U0001F3FB", "\u261D\U0001F3FB"},
        {"\u2764\u200D\U0001F525", "\u2764\u200D\U0001F525"},
        {"\U0001F600", "\U0001F600"},
        {"5", "5\uFE0F"},
        {"#\uFE0F\u20E3", "#\uFE0F\u20E3"},
        {"\u00A9\u00AE", "\u00A9\uFE0F\u00AE\uFE0F"},
        // Only the very next scalar counts, and the last of a joined sequence still gets its own.
        {"\U0001F3F4\u200D\u2620", "\U0001F3F4\u200D\u2620\uFE0F"},
        {"plain", "plain"},
        {"", ""},
    };
    for (const auto& [given, expected] : cases) {
        EXPECT_EQ(withEmojiPresentation(given), expected) << given;
        EXPECT_EQ(withEmojiPresentation(expected), expected) << "again";
    }
}

TEST(SeparatorOrFormat, AreTheInvisibleOnes) {
    for (const auto scalar :
         {U'\u0020', U'\u00A0', U'\u2028', U'\u2029', U'\u200D', U'\u200B', U'\u00AD', U'\u2060'})
        EXPECT_TRUE(isSeparatorOrFormat(scalar)) << std::hex << static_cast<std::uint32_t>(scalar);
    for (const auto scalar : {U'a', U'\u2026', U'\u2014', U'\n', U'\uFE0F'})
        EXPECT_FALSE(isSeparatorOrFormat(scalar)) << std::hex << static_cast<std::uint32_t>(scalar);
}

} // namespace
