#include "picker/qt/row_content.h"
#include "picker/qt/skin_tones.h"

#include <gtest/gtest.h>

namespace glyma::qt {
namespace {

EmojiEntry entry(std::string character, std::string name, std::vector<std::string> keywords = {}) {
    EmojiEntry result;
    result.character = std::move(character);
    result.name = std::move(name);
    result.keywords = std::move(keywords);
    result.rankingInfo = RankingInfo{130, 30, 0, 0, 150};
    return result;
}

TEST(RowContent, ShowsWhatWouldBeInserted) {
    const QueryMatch match("", false);
    EXPECT_EQ(rowContent(entry("👋", "waving hand"), match, {"\U0001F3FD"}).icon, "👋\U0001F3FD");
    EXPECT_EQ(rowContent(entry("❤\uFE0F", "red heart"), match, {}).icon, "❤\uFE0F");
    EXPECT_EQ(rowContent(entry("❤\uFE0F", "red heart"), match, {std::nullopt, true}).icon, "❤");
}

TEST(RowContent, TellsWhyAnEntryIsListed) {
    const auto grin = entry("😀", "grinning face", {"cheerful", "happy"});
    EXPECT_EQ(rowContent(grin, {"happ", false}, {}).keyword, "… happy");
    EXPECT_EQ(rowContent(grin, {"grin", false}, {}).keyword, "");
    EXPECT_TRUE(rowContent(grin, {"grin", false}, {}).name.front().isEmphasised);
    EXPECT_EQ(rowContent(grin, {"grin", false}, {}).ranking, "");
    EXPECT_EQ(rowContent(grin, {"grin", false}, {std::nullopt, false, true}).ranking,
              "text:130 pop:30 usage:0 term:0 cache:150 = 310");
}

TEST(RowContent, ShowsASnippetsTextInOneLine) {
    auto snippet = entry("Kind regards,\r\nAda\tLovelace\n", "Greeting", {"bye", "regards"});
    snippet.unicodeBlock = std::string(userReplacementsBlock);
    const auto content = rowContent(snippet, {"greet", false}, {"\U0001F3FD", true});
    EXPECT_EQ(content.iconKind, RowContent::Icon::snippet);
    EXPECT_EQ(content.detail, "Kind regards, ⏎ Ada Lovelace ⏎ ");
    EXPECT_EQ(content.keyword, "bye, regards");
    snippet.character = "½";
    EXPECT_EQ(rowContent(snippet, {"greet", false}, {}).iconKind, RowContent::Icon::character);
}

TEST(RowContent, TellsTheSpecialsApart) {
    EXPECT_EQ(randomPoolOf(SpecialEntry{"random-emoji", "Random emoji", {}, {}}), true);
    EXPECT_EQ(randomPoolOf(SpecialEntry{"random-unicode", "Random character", {}, {}}), false);
    EXPECT_EQ(randomPoolOf(SpecialEntry{"about", "About", {}, {}}), std::nullopt);
    EXPECT_EQ(randomPoolOf(entry("😀", "grinning face")), std::nullopt);
    EXPECT_EQ(rowContent(SpecialEntry{"about", "About", {}, {}}, {"", false}, {}).icon, "?");
}

TEST(SkinTones, FindTheirPlaceInTheMenu) {
    EXPECT_EQ(skinToneIndex(std::nullopt), 0U);
    EXPECT_EQ(skinToneIndex("\U0001F3FF"), 5U);
    EXPECT_EQ(skinToneIndex("x"), 0U);
    EXPECT_EQ(skinToneGlyph(""), "\U0001F590\uFE0F");
    EXPECT_EQ(skinToneGlyph(skinTones[3].modifier), "\U0001F590\U0001F3FD");
}

} // namespace
} // namespace glyma::qt
