#include "data/cldr_importer.h"
#include "data/unicode_data_importer.h"
#include "resource_folder.h"
#include "unicode/properties.h"
#include "unicode/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace glyma {
namespace {

using CharData = CLDRImporter::CharData;

std::vector<CharData> entries(const std::string& members) {
    const auto result = CLDRImporter::parse(R"({"annotations": {"annotations": {)" + members + "}}}");
    EXPECT_TRUE(result) << result.error();
    return result.value_or(std::vector<CharData>{});
}

TEST(Annotations, AreTakenInTheFilesOrderAndInEmojiPresentation) {
    EXPECT_EQ(entries(R"("☺": {"default": ["face", "smile"], "tts": ["smiling face", "other"]},
                         "😀": {"tts": ["grinning face"], "default": ["grin"]},
                         "#⃣": {"default": ["keycap"], "tts": ["keycap: #"]},
                         "🇩🇪": {"default": ["flag"], "tts": ["flag: Germany"]},
                         "#️⃣": {"default": [], "tts": ["again"]},
                         "©": {"tts": ["copyright"]})"),
              (std::vector<CharData>{{"☺️", "smiling face", {"face", "smile"}},
                                     {"😀", "grinning face", {"grin"}},
                                     {"#️⃣", "keycap: #", {"keycap"}},
                                     {"🇩🇪", "flag: Germany", {"flag"}},
                                     {"#️⃣", "again", {}},
                                     {"©️", "copyright", {}}}));
}

TEST(Annotations, WithoutANameOrOfKeyboardCharactersAreDropped) {
    for (const auto* member : {
             R"("😀": {"default": ["grin"]})",
             R"("😀": {"default": ["grin"], "tts": []})",
             R"("😀": {"default": ["grin"], "tts": [""]})",
             R"("😀": {"default": ["grin"], "tts": ["", "second"]})",
             R"("😀": {"default": ["grin"], "tts": "grinning face"})",
             R"("😀": {"default": ["grin"], "tts": ["grinning face", 1]})",
             R"("😀": {"default": ["grin"], "tts": [["grinning face"]]})",
             R"("😀": {"default": ["grin"], "tts": {"tts": ["grinning face"]}})",
             R"("😀": {"tts": {"x": ["grinning face"]}})",
             R"("😀": {"inner": {"tts": ["grinning face"]}})",
             R"("😀": {})",
             R"("😀": ["tts", "grinning face"])",
             R"("😀": [{"tts": ["grinning face"]}])",
             R"("😀": "grinning face")",
             R"("😀": null)",
             R"("#": {"default": ["hash"], "tts": ["hash sign"]})",
             R"("": {"default": ["nothing"], "tts": ["nothing"]})",
         }) {
        EXPECT_TRUE(entries(member).empty()) << member;
        const auto withSound = entries(std::string(member) + R"(, "é": {"tts": ["e"], "default": ["x"]})");
        EXPECT_EQ(withSound, (std::vector<CharData>{{"é", "e", {"x"}}})) << "after " << member;
    }
}

TEST(Annotations, NeverBorrowFromTheEntryBefore) {
    EXPECT_TRUE(entries(R"("#": {"default": ["x"], "tts": ["hash sign"]}, "é": {"default": ["y"]})").empty());
    EXPECT_EQ(entries(R"("#": {"default": ["x"], "tts": ["hash sign"]}, "é": {"tts": ["e"]})"),
              (std::vector<CharData>{{"é", "e", {}}}));
}

TEST(Annotations, KeepTheirNameWhenTheKeywordsCannotBeUsed) {
    for (const auto* keywords :
         {R"("grin")", R"(["grin", 1])", R"(["grin", null, "x"])", R"(["grin", ["x"]])",
          R"(["grin", {"x": "y"}])", R"({"default": ["grin"]})", "null", "[]"}) {
        EXPECT_EQ(entries(R"("😀": {"tts": ["grinning face"], "default": )" + std::string(keywords) + "}"),
                  (std::vector<CharData>{{"😀", "grinning face", {}}}))
            << keywords;
    }
}

TEST(Annotations, OtherMembersAreIgnoredAtEveryLevel) {
    const auto result = CLDRImporter::parse(R"({
        "version": {"annotations": {"annotations": {"😁": {"tts": ["no"]}}}},
        "list": [{"annotations": {"😁": {"tts": ["no"]}}}],
        "annotations": {
            "identity": {"annotations": {"😁": {"tts": ["no"]}}},
            "annotations": {"😀": {"since": [1.5, -2, true], "tts": ["yes"], "more": {"tts": ["no"]}}},
            "default": ["no"]
        }
    })");
    ASSERT_TRUE(result) << result.error();
    EXPECT_EQ(*result, (std::vector<CharData>{{"😀", "yes", {}}}));
}

TEST(Annotations, OfAnotherShapeAreRefused) {
    for (const auto* json :
         {"[]", "1", "null", "{}", R"({"annotations": "x"})", R"({"annotations": []})",
          R"({"annotations": {"annotations": []}})", R"({"annotations": {"annotations": "x"}})",
          R"({"a": {"annotations": {"annotations": {}}}})", R"([{"annotations": {"annotations": {}}}])"}) {
        const auto result = CLDRImporter::parse(json);
        ASSERT_FALSE(result) << json;
        EXPECT_EQ(result.error(), "Unexpected top-level JSON structure") << json;
    }
    EXPECT_EQ(CLDRImporter::parse(R"({"annotations": {"annotations": {}}})").value(),
              std::vector<CharData>{});
}

TEST(Annotations, CutShortGiveNothing) {
    const std::string whole = R"({"annotations": {"annotations": {"😀": {"tts": ["grinning face"]}}}})";
    ASSERT_TRUE(CLDRImporter::parse(whole));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(CLDRImporter::parse(whole.substr(0, length))) << length;
    EXPECT_FALSE(CLDRImporter::parse(whole + "}"));
}

TEST(Annotations, ShippedFileIsReadToTheEnd) {
    test::RecordingLog log;
    const auto annotations = CLDRImporter(test::shippedFiles, log.log).load();
    ASSERT_TRUE(annotations) << annotations.error();
    EXPECT_EQ(annotations->size(), 2282u);
    EXPECT_EQ(std::ranges::count_if(*annotations, [](const auto& entry) { return entry.keywords.empty(); }),
              20);
    std::set<std::string> characters;
    for (const auto& entry : *annotations) {
        EXPECT_TRUE(characters.insert(entry.character).second) << entry.character << " twice";
        EXPECT_EQ(unicode::withEmojiPresentation(entry.character), entry.character);
    }
    for (const auto* character :
         {"❤️", "🇺🇦", "5️⃣", "🏴󠁧󠁢󠁷󠁬󠁳󠁿", "👨‍👩‍👧‍👦"})
        EXPECT_TRUE(characters.contains(character)) << character;
}

TEST(Annotations, OfEmojiBlocksAreEmojiForTheUnicodeLibrary) {
    // The library may be years older than the file.
    const UnicodeDataImporter unicodeData(test::shippedFiles);
    const auto blocks = unicodeData.loadBlocks();
    test::RecordingLog log;
    const auto annotations = CLDRImporter(test::shippedFiles, log.log).load();
    ASSERT_TRUE(blocks && annotations);
    std::size_t count = 0;
    for (const auto& entry : *annotations) {
        const auto block = UnicodeDataImporter::blockOf(unicode::firstScalar(entry.character), *blocks);
        if (block != "Emoticons" && block != "Transport and Map Symbols" &&
            block != "Symbols and Pictographs Extended-A")
            continue;
        EXPECT_TRUE(unicode::looksLikeEmoji(entry.character)) << entry.name;
        ++count;
    }
    EXPECT_GT(count, 300u);
}

} // namespace
} // namespace glyma
