#include "unicode/text.h"

#include <gtest/gtest.h>

#include <thread>

using namespace glyma::unicode;
using namespace std::string_view_literals;

namespace {

constexpr auto family = "👨‍👩‍👧‍👦"sv;
constexpr auto flag = "🇩🇪"sv;
constexpr auto keycap = "1️⃣"sv;
constexpr auto thumb = "👍🏽"sv;

TEST(Graphemes, AreWhatAReaderCallsACharacter) {
    for (const auto one :
         {"a"sv, family, flag, keycap, thumb, "e\u0301"sv, "\r\n"sv, "각"sv, "❤️‍🔥"sv})
        EXPECT_EQ(graphemeCount(one), 1u) << one;
    const auto text = "a" + std::string(family) + "e\u0301\r\n" + std::string(flag) + std::string(flag);
    EXPECT_EQ(graphemes(text), (std::vector<std::string_view>{"a", family, "e\u0301", "\r\n", flag, flag}));
    EXPECT_EQ(graphemeCount(text), 6u);
    EXPECT_EQ(graphemeCount("a\rb\nc"), 5u);
    EXPECT_TRUE(graphemes("").empty());
    EXPECT_EQ(graphemeCount(""), 0u);
}

TEST(Graphemes, CutAtEitherEndWithoutSplittingACharacter) {
    const auto text = "x" + std::string(family) + std::string(thumb);
    EXPECT_EQ(firstGraphemes(text, 0), "");
    EXPECT_EQ(firstGraphemes(text, 2), "x" + std::string(family));
    EXPECT_EQ(firstGraphemes(text, 99), text);
    EXPECT_EQ(lastGraphemes(text, 0), "");
    EXPECT_EQ(lastGraphemes(text, 1), thumb);
    EXPECT_EQ(lastGraphemes(text, 99), text);
    EXPECT_EQ(withoutLastGrapheme(text), "x" + std::string(family));
    EXPECT_EQ(withoutLastGrapheme("ab"), "a");
    EXPECT_EQ(withoutLastGrapheme("ab\r\n"), "ab");
    EXPECT_EQ(firstGraphemes("abc", 2), "ab");
    EXPECT_EQ(lastGraphemes("abc", 5), "abc");
    for (const auto empty : {firstGraphemes("", 3), lastGraphemes("", 3), withoutLastGrapheme("")})
        EXPECT_EQ(empty, "");
}

TEST(Graphemes, CoverIllFormedTextToTheLastByte) {
    const auto text = "a\xF0\x9F\x98 b\xFFé\x80"sv;
    std::string joined;
    for (const auto cluster : graphemes(text))
        joined += cluster;
    EXPECT_EQ(joined, text);
    EXPECT_EQ(withoutLastGrapheme(text), text.substr(0, text.size() - 1));
}

TEST(Graphemes, CanBeCountedFromSeveralThreadsAtOnce) {
    std::vector<std::thread> threads;
    std::vector<std::size_t> counts(4);
    for (std::size_t index = 0; index < counts.size(); ++index) {
        threads.emplace_back([&, index] {
            std::string text;
            for (std::size_t round = 0; round < 200; ++round) {
                text += index % 2 ? family : flag;
                counts[index] += graphemeCount(text) == round + 1;
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(counts, std::vector<std::size_t>(4, 200));
}

TEST(Utf16, OffsetsMeetTheBytesOfTheSameCharacter) {
    const auto text = "aé😀b"sv; // UTF-16: a é hi lo b
    EXPECT_EQ(utf16Length(text), 5u);
    EXPECT_EQ(utf8Offset(text, 0), 0u);
    EXPECT_EQ(utf8Offset(text, 1), 1u);
    EXPECT_EQ(utf8Offset(text, 2), 3u);
    EXPECT_EQ(utf8Offset(text, 3), 3u) << "inside the pair: its start";
    EXPECT_EQ(utf8Offset(text, 4), 7u);
    EXPECT_EQ(utf8Offset(text, 5), text.size());
    EXPECT_EQ(utf8Offset(text, 6), text.size());
    EXPECT_EQ(utf8Offset(text, std::string_view::npos), text.size());
    EXPECT_EQ(utf8Offset("", 1), 0u);
    EXPECT_EQ(utf16Length(family), 11u);
}

TEST(Utf16, SubstringsAreClampedAndNeverSplitAPair) {
    const auto text = "aé😀b"sv;
    EXPECT_EQ(utf16Substring(text, 1, 3), "é😀");
    EXPECT_EQ(utf16Substring(text, 1, 2), "é") << "the pair does not fit";
    EXPECT_EQ(utf16Substring(text, 3, 1), "😀") << "from inside the pair to its end";
    EXPECT_EQ(utf16Substring(text, 4, 99), "b");
    EXPECT_EQ(utf16Substring(text, 2, std::string_view::npos), "😀b");
    EXPECT_EQ(utf16Substring(text, 9, 1), "");
    EXPECT_EQ(utf16Substring(text, 0, 0), "");
}

TEST(Scalars, IllFormedSequencesBecomeOneReplacementEach) {
    // Truncated, overlong, surrogate, beyond the last plane, stray continuation.
    EXPECT_EQ(scalars("\xF0\x9F\x98"), U"\uFFFD");
    EXPECT_EQ(scalars("\xC0\xAF"), U"\uFFFD\uFFFD");
    EXPECT_EQ(scalars("\xED\xA0\x80"), U"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(scalars("a\x80z"), U"a\uFFFDz");
    EXPECT_EQ(sanitized("a\xF0\x9F\x98 😀\xFF"), "a\uFFFD 😀\uFFFD");
    EXPECT_EQ(utf16Length("a\xF0\x9F\x98z"), 3u);
    EXPECT_EQ(firstScalar("\xFFz"), U'\uFFFD');
    EXPECT_EQ(fromScalars(U"a\x110000"), "a\uFFFD");
    EXPECT_EQ(fromScalar(char32_t{0xD800}), "\uFFFD");
}

TEST(Scalars, RoundTrip) {
    const auto text = "A é € 😀 \U0010FFFF";
    EXPECT_EQ(fromScalars(scalars(text)), text);
    EXPECT_EQ(firstScalar("😀x"), U'😀');
    EXPECT_EQ(firstScalar(""), U'\0');
}

TEST(VariationSelector16, IsRemovedWhereverItStands) {
    EXPECT_EQ(withoutVariationSelector16("\uFE0F❤️‍🔥1️⃣\uFE0F\uFE0F"), "❤\u200D🔥1\u20E3");
    EXPECT_EQ(withoutVariationSelector16("❤\uFE0E"), "❤\uFE0E");
}

TEST(Quoted, KeepsALogMessageOnOneLine) {
    EXPECT_EQ(quoted("a\"b\\c\n\t\r"), R"("a\"b\\c\n\t\r")");
    EXPECT_EQ(quoted("\0\x1B\u2028é😀"sv), "\"\\0\\u{1B}\\u{2028}é😀\"");
    EXPECT_EQ(quoted("\xFF"), "\"\uFFFD\"");
}

} // namespace
