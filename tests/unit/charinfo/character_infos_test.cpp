#include "../data/resource_folder.h"
#include "charinfo/character_infos.h"
#include "charinfo/detail_rows.h"
#include "charinfo/stand_in.h"
#include "data/store.h"
#include "unicode/text.h"

#include <gmock/gmock.h>

namespace glyma {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto thumb = "\U0001F44D";
constexpr auto tonedThumb = "\U0001F44D\U0001F3FD";
constexpr auto keycap = "1\uFE0F\u20E3";

class CharacterInfosTest : public testing::Test {
protected:
    CharacterInfosTest() {
        auto store = Store::open(file).value();
        EXPECT_TRUE(store.insertBlocks(
            std::vector<UnicodeBlock>{{"Basic Latin", 0, 0x7F, 1, "", true},
                                      {"Arrows", 0x2190, 0x21FF, 0, "", false},
                                      {"Dingbats", 0x2700, 0x27BF, 1, "", true},
                                      {"Private Use Area", 0xE000, 0xF8FF, 0, "", false}}));
        auto off = makeUnicodeChar("→", "rightwards arrow", {}, "Arrows");
        off.isEnabled = false;
        EXPECT_TRUE(store.insertCharacters(std::vector<UnicodeChar>{
            makeUnicodeChar(thumb, "thumbs up", {"+1", "good", "yes"},
                            "Miscellaneous Symbols and Pictographs"),
            makeUnicodeChar("❤\uFE0F", "red heart", {"love"}, "Dingbats"),
            makeUnicodeChar(keycap, "keycap: 1", {}, "Basic Latin"),
            makeUnicodeChar("\U0001F575\u200D♂\uFE0F", "man detective", {}, "Emoticons"), off}));
        EXPECT_TRUE(store.setUsage(thumb, 3, Timestamp(std::chrono::seconds(1'700'000'000))));
    }

    CharacterInfo about(std::string_view character) {
        auto built = infos.buildInfos(character, shownCharacters);
        EXPECT_THAT(built, SizeIs(1)) << character;
        return built.empty() ? CharacterInfo{} : built.front();
    }
    std::vector<std::string> charactersOf(std::string_view text, std::size_t limit = shownCharacters) {
        std::vector<std::string> characters;
        for (auto& info : infos.buildInfos(text, limit))
            characters.push_back(std::move(info.character));
        return characters;
    }

    test::ResourceFolder folder;
    std::filesystem::path file = folder.path() / "Glyma.store";
    CharacterInfos infos{file, test::shippedFiles};
};

TEST_F(CharacterInfosTest, TakesTheDistinctCharactersInTheirOrderWithoutControls) {
    EXPECT_THAT(charactersOf("aab"), ElementsAre("a", "b"));
    EXPECT_THAT(charactersOf("b e\u0301\ta\r\ne\u0301"), ElementsAre("b", " ", "e\u0301", "a"));
    EXPECT_THAT(charactersOf("\n\t\r\n"), IsEmpty());
    EXPECT_THAT(charactersOf("abcd", 3), ElementsAre("a", "b", "c"));
    EXPECT_THAT(charactersOf("a", 0), IsEmpty());
    EXPECT_THAT(charactersOf("\xC3(\xFF"), ElementsAre("\uFFFD", "("));
    std::string many;
    for (char32_t face = 0x1F600; face < 0x1F600 + 30; ++face)
        many += unicode::fromScalar(face);
    EXPECT_THAT(charactersOf(many), SizeIs(24));
}

TEST_F(CharacterInfosTest, FindsTheStoredCharacterUnderEverySpelling) {
    const auto toned = about(tonedThumb);
    EXPECT_EQ(toned.character, tonedThumb);
    EXPECT_EQ(toned.name, "thumbs up");
    EXPECT_THAT(toned.keywords, ElementsAre("+1", "good", "yes"));
    EXPECT_EQ(toned.appliedToneName, "medium skin tone");
    EXPECT_EQ(toned.usageCount, 3);
    EXPECT_EQ(toned.isEnabled, true);
    for (const auto* heart : {"❤", "❤\uFE0F"})
        EXPECT_EQ(about(heart).name, "red heart") << heart;
    for (const auto* detective : {"\U0001F575\u200D♂", "\U0001F575\uFE0F\u200D♂\uFE0F",
                                  "\U0001F575\U0001F3FE\u200D♂", "\U0001F575\U0001F3FE\u200D♂\uFE0F"})
        EXPECT_EQ(about(detective).name, "man detective") << detective;
    EXPECT_EQ(about("→").isEnabled, false);
}

TEST_F(CharacterInfosTest, NamesWhatTheCatalogueDoesNotHave) {
    const auto letter = about("e\u0301");
    EXPECT_EQ(letter.name, "LATIN SMALL LETTER E + COMBINING ACUTE ACCENT");
    EXPECT_EQ(letter.block, "Basic Latin");
    EXPECT_EQ(letter.isEnabled, std::nullopt);
    EXPECT_EQ(about("\u200D").name, "ZERO WIDTH JOINER");
    EXPECT_EQ(about("\U0001F3FD").name, "EMOJI MODIFIER FITZPATRICK TYPE-4");
    EXPECT_EQ(about("\U0001F468\U0001F3FD\u200D\U0001F680").name, "MAN + ROCKET");
    EXPECT_EQ(about("\U0001F1E9\U0001F1EA").name,
              "REGIONAL INDICATOR SYMBOL LETTER D + REGIONAL INDICATOR SYMBOL LETTER E");
    EXPECT_EQ(about("\uE000").name, "UNNAMED CHARACTER");
    EXPECT_EQ(about("\uE000").block, "Private Use Area");
    EXPECT_EQ(about("\u0378").name, "UNNAMED CHARACTER");
    EXPECT_EQ(about("\u6F22").name, "CJK UNIFIED IDEOGRAPH-6F22");
    // Younger than the installed ICU.
    EXPECT_EQ(about("\U0001FAEA").name, "DISTORTED FACE");
    EXPECT_EQ(about("\U000323B0").name, "CJK UNIFIED IDEOGRAPH-323B0");
}

TEST_F(CharacterInfosTest, TellsEmojiFromTheirParts) {
    EXPECT_TRUE(about(keycap).isEmoji);
    EXPECT_TRUE(about("❤").isEmoji);
    EXPECT_FALSE(about("1").isEmoji);
    EXPECT_FALSE(about("\U0001F1E9").isEmoji);
    EXPECT_FALSE(about("→").isEmoji);
    EXPECT_TRUE(about(thumb).supportsSkinTone);
    EXPECT_FALSE(about("❤").supportsSkinTone);
    EXPECT_EQ(about("\U0001F602").popularityRank, 1);
    EXPECT_EQ(about("❤").popularityRank, about("❤\uFE0F").popularityRank);
    EXPECT_NE(about("❤").popularityRank, std::nullopt);
    EXPECT_EQ(about("a").popularityRank, std::nullopt);
}

TEST_F(CharacterInfosTest, AnswersFromUnicodeWhereThereIsNoStore) {
    CharacterInfos storeless(folder.path() / "nothing", test::shippedFiles);
    const auto built = storeless.buildInfos("→", shownCharacters);
    ASSERT_THAT(built, SizeIs(1));
    EXPECT_EQ(built[0].name, "RIGHTWARDS ARROW");
    EXPECT_EQ(built[0].block, "");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "nothing"));
}

TEST_F(CharacterInfosTest, DescribesTheBeginningOfAHeapOfMarks) {
    std::string heap = "a";
    for (int mark = 0; mark < 500'000; ++mark)
        heap += "\u0301";
    const auto info = about(heap);
    EXPECT_THAT(info.scalars, SizeIs(describedScalars));
    EXPECT_EQ(info.omittedScalars, 500'001 - describedScalars);
    EXPECT_EQ(info.character, heap);
    EXPECT_LT(info.name.size(), 4096U);
    EXPECT_TRUE(detailRows(info, inEnglish)[1].value.ends_with(" …"));
}

TEST_F(CharacterInfosTest, PutsTheFactsIntoRows) {
    const auto rowsOf = [&](const CharacterInfo& info) {
        std::string text;
        for (const auto& [label, value] : detailRows(info, inEnglish))
            text += label + ": " + value + "\n";
        return text;
    };
    EXPECT_EQ(rowsOf(about("\u0378")), "UTF-8: CD B8\nLibrary: Not in library\n");
    EXPECT_EQ(rowsOf(about("→")), "Block: Arrows\nUTF-8: E2 86 92\nLibrary: Disabled in picker\n");
    EXPECT_EQ(rowsOf(about(tonedThumb)),
              "Block: Miscellaneous Symbols and Pictographs\nKeywords: +1, good, yes\n"
              "UTF-8: F0 9F 91 8D F0 9F 8F BD\nSkin tone: medium skin tone\n"
              "Usage: 3 times · last Nov 14, 2023\nLibrary: Enabled in picker\n");
    CharacterInfo info;
    info.character = "a";
    info.supportsSkinTone = true;
    info.usageCount = 1;
    info.popularityRank = 4;
    EXPECT_EQ(rowsOf(info), "UTF-8: 61\nSkin tone: supported\nUsage: 1 time\n"
                            "Popularity: #5 of the most-used emoji\nLibrary: Not in library\n");
}

TEST(CharacterCopies, StandForTheCharacterElsewhere) {
    EXPECT_EQ(utf8Bytes(tonedThumb), "F0 9F 91 8D F0 9F 8F BD");
    EXPECT_EQ(htmlEntities(tonedThumb), "&#x1F44D;&#x1F3FD;");
    EXPECT_EQ(codePoints("e\u0301"), "U+0065 U+0301");
}

TEST(StandIn, ShowsWhatCouldNotBeSeen) {
    EXPECT_EQ(invisibleStandIn("\u200D"), "ZWJ");
    EXPECT_EQ(invisibleStandIn("\u202E"), "RLO");
    EXPECT_EQ(invisibleStandIn(" "), "SP");
    EXPECT_EQ(invisibleStandIn("\u200B\uFE0F"), "ZWSP VS16");
    EXPECT_EQ(invisibleStandIn("\U000E0041"), "TAG A");
    EXPECT_EQ(invisibleStandIn("\uFFA1"), "") << "a letter, half as wide";
    EXPECT_EQ(invisibleStandIn("a\u200D"), "");
    EXPECT_EQ(invisibleStandIn("\uE000"), "");
    EXPECT_EQ(missingGlyphStandIn("\uE000"), "E000");
    EXPECT_EQ(withCarrier("\u0301"), "\u25CC\u0301");
    EXPECT_EQ(withCarrier("e\u0301"), "e\u0301");
}

} // namespace
} // namespace glyma
