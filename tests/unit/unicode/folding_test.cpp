#include "unicode/text.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

using namespace glyma::unicode;

namespace {

TEST(Fold, FindsALetterWithoutItsCaseAndAccents) {
    EXPECT_EQ(fold("Café CRÈME"), "cafe creme");
    EXPECT_EQ(fold("cafe\u0301"), "cafe");
    EXPECT_EQ(fold("Å ñ Ü Ž"), "a n u z");
    EXPECT_EQ(fold("İstanbul"), "istanbul");
    EXPECT_EQ(fold("Άλφα Ёлка Й"), "αλφα елка и");
    EXPECT_EQ(fold("ø ß ł"), "ø ß ł") << "letters of their own, not accented ones";
}

TEST(Fold, StraightensTypographicQuotes) {
    EXPECT_EQ(fold("Woman’s “Hat”"), "woman's \"hat\"");
    EXPECT_EQ(fold("\u201C\u201D\u201E\u201F\u2018\u2019\u201A\u201B"), "\"\"\"\"''''");
    EXPECT_EQ(fold("\u2039\u2032"), "\u2039\u2032");
}

TEST(Fold, KeepsScriptsWhoseVowelsAreMarks) {
    EXPECT_EQ(fold("한국어"), "한국어") << "syllables are put together again";
    EXPECT_EQ(fold("हिन्दी"), fold(fold("हिन्दी")));
    EXPECT_NE(fold("कु"), fold("कि")) << "one vowel sign is nonspacing, the other spacing";
    EXPECT_NE(fold("กิน"), fold("กน"));
    EXPECT_NE(fold("ತಿ"), fold("ತೀ"));
    EXPECT_EQ(fold("שָׁלוֹם"), "שלום");
    EXPECT_EQ(fold("مُحَمَّد"), "محمد");
}

TEST(Fold, IsStableUnderRepetitionForEveryScalar) {
    // Each scalar alone, after a letter, after and before marks: whatever composes must stay composed.
    constexpr char32_t batch = 64;
    for (char32_t first = 0; first < 0xE1000; first += batch) {
        if (first == 0x40000)
            first = 0xE0000; // nothing is assigned between, nor after but for private use
        std::u32string text;
        for (auto scalar = first; scalar < first + batch; ++scalar) {
            for (const auto* before : {U" ", U" a", U" \u0338"})
                text += before + std::u32string(1, scalar) + scalar + U'\u0301';
        }
        const auto once = fold(fromScalars(text));
        ASSERT_EQ(fold(once), once) << fmt::format("from U+{:04X}", static_cast<std::uint32_t>(first));
    }
}

TEST(Lowercased, ChangesTheLettersOfAsciiAlone) {
    std::string text;
    std::string expected;
    for (char byte = 0; byte < 127; ++byte) {
        text += byte;
        expected += static_cast<char>(byte >= 'A' && byte <= 'Z' ? byte + 32 : byte);
    }
    for (std::size_t start = 0; start < 16; ++start) // each byte at each place of a machine word
        EXPECT_EQ(lowercased(text.substr(start)), expected.substr(start));
}

TEST(Lowercased, IsThatOfNoLanguage) {
    EXPECT_EQ(lowercased("TITLE I"), "title i");
    EXPECT_EQ(lowercased("ÀÉ İ"), "àé i\u0307");
    EXPECT_EQ(lowercased("A\xFFZ"), "a\uFFFDz");
    EXPECT_EQ(lowercased(""), "");
}

} // namespace
