#include "import_fixture.h"

#include <algorithm>
#include <map>

namespace glyma {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

const std::vector<std::string> allPhases{"Importing Blocks.txt",     "Importing UnicodeData.txt",
                                         "Checking font coverage",   "Importing annotations.json",
                                         "Importing Unikemet.txt",   "Inserting characters",
                                         "Inserting Unicode blocks", "Finalizing",
                                         "Restoring user data"};

class ImportedSmallCatalogue : public ImportTest {
protected:
    ImportedSmallCatalogue() { summary = *pipeline().run(store); }
    UnicodeChar character(std::string_view text) {
        const auto found = need(store.character(text));
        EXPECT_TRUE(found) << text;
        return found.value_or(UnicodeChar{});
    }

    Store store = need(Store::open(storeFile()));
    ImportSummary summary;
};

TEST_F(ImportedSmallCatalogue, TellsItsPhasesAndFigures) {
    EXPECT_EQ(phases, allPhases);
    // Fifteen characters without the undrawable one, and three sequences.
    EXPECT_EQ(summary, (ImportSummary{17, 9}));
    EXPECT_EQ(need(store.characterCount()), 17);
    EXPECT_THAT(
        lines.lines(),
        IsSupersetOf({"Glyma: parsed 9 Unicode blocks", "Glyma: parsed 15 characters from UnicodeData.txt",
                      "Glyma: filtered 1 unrenderable characters", "Glyma: parsed 9 CLDR annotations",
                      "Glyma: enriched 1 characters with Unikemet descriptions",
                      "Glyma: ✓ imported 17 chars + 9 blocks"}));
}

TEST_F(ImportedSmallCatalogue, StoresCharactersInEmojiPresentation) {
    EXPECT_EQ(character("1\uFE0F").name, "digit one");
    EXPECT_EQ(character("™\uFE0F").name, "trade mark");
    EXPECT_EQ(character("❤\uFE0F").keywords, std::vector<std::string>{"heart"});
    EXPECT_EQ(character("😀").name, "grinning face");
    for (const auto* unqualified : {"1", "™", "❤"})
        EXPECT_EQ(need(store.character(unqualified)), std::nullopt) << unqualified;
}

TEST_F(ImportedSmallCatalogue, NamesAndKeywordsComeFromTheBestSource) {
    EXPECT_EQ(character("😀"), makeUnicodeChar("😀", "grinning face", {"face", "grin"}, "Emoticons"));
    // An annotation without keywords still names its character.
    EXPECT_THAT(character("™\uFE0F").keywords, IsEmpty());
    // The keywords that no file gives follow, without repeating one.
    EXPECT_THAT(character("⌘").keywords, ElementsAre("cmd", "key", "command"));
    const auto hieroglyph = character("𓀀");
    EXPECT_EQ(hieroglyph.name, "egyptian hieroglyph a001");
    EXPECT_THAT(hieroglyph.keywords, IsSupersetOf({"eat", "seated", "man", "hand", "mouth"}));
    EXPECT_THAT(character("😂").keywords, IsEmpty());
}

TEST_F(ImportedSmallCatalogue, SequencesComeFromTheAnnotations) {
    const auto flag = character("🇦🇨");
    EXPECT_EQ(flag.name, "flag: Ascension Island");
    EXPECT_EQ(flag.unicodeBlock, "Enclosed Alphanumeric Supplement");
    EXPECT_EQ(character("1️⃣").unicodeBlock, "Basic Latin");
    EXPECT_EQ(character("👩‍🚀").unicodeBlock, "No_Block");
}

TEST_F(ImportedSmallCatalogue, NothingUndrawableComesIn) {
    EXPECT_EQ(need(store.character("😁")), std::nullopt);
    EXPECT_EQ(need(store.character("😀‍😁")), std::nullopt);
}

TEST_F(ImportedSmallCatalogue, StartsWithTheRightCharactersSwitchedOn) {
    for (const auto* on : {"1\uFE0F", "@", "™\uFE0F", "❤\uFE0F", "𓀀", "🇦🇨", "1️⃣", "😀"})
        EXPECT_TRUE(character(on).isEnabled) << on;
    for (const auto* off : {"A", "Ж", "🇦", "👩‍🚀"})
        EXPECT_FALSE(character(off).isEnabled) << off;
}

TEST_F(ImportedSmallCatalogue, BlocksCarryTheirFigures) {
    std::map<std::string, UnicodeBlock> blocks;
    for (const auto& block : need(store.blocks()))
        blocks[block.name] = block;
    EXPECT_EQ(blocks.size(), 9U);
    EXPECT_EQ(blocks["Basic Latin"], (UnicodeBlock{"Basic Latin", 0, 0x7F, 4, "1@A", true}));
    EXPECT_EQ(blocks["Emoticons"], (UnicodeBlock{"Emoticons", 0x1F600, 0x1F64F, 5, "😀😂😃😄", true}));
    EXPECT_EQ(blocks["Enclosed Alphanumeric Supplement"].characterCount, 2);
    EXPECT_EQ(blocks["Braille Patterns"], (UnicodeBlock{"Braille Patterns", 0x2800, 0x28FF, 0, "", false}));
    EXPECT_EQ(blocks["Cyrillic"], (UnicodeBlock{"Cyrillic", 0x400, 0x4FF, 1, "Ж", false}));
}

TEST_F(ImportTest, ABlockCountsSequencesAlsoWhenNoneOfItsCharactersCanBeDrawn) {
    fonts.missing.insert("🇦");
    auto store = need(Store::open(storeFile()));
    EXPECT_EQ(pipeline().run(store), (ImportSummary{16, 9}));
    for (const auto& block : need(store.blocks()))
        if (block.name == "Enclosed Alphanumeric Supplement") {
            EXPECT_EQ(block.characterCount, 1);
        }
}

TEST_F(ImportTest, AMissingOrDamagedFileEndsItWithAnEmptyStore) {
    struct Case {
        const char* file;
        const char* text; ///< null: missing
    };
    for (const auto& [file, text] :
         {Case{"Blocks.txt", nullptr}, Case{"UnicodeData.txt", nullptr}, Case{"annotations.json", nullptr},
          Case{"annotations.json", "{\"annotations\": {"}, Case{"annotations.json", "[]"}}) {
        const SmallResources damaged;
        damaged.remove(file);
        if (text != nullptr)
            damaged.replace(file, text);
        const ResourceLocator locator(damaged.path());
        auto store = need(Store::open(storeFile()));
        const auto result = ImportPipeline{locator, fonts, log, {}}.run(store);
        ASSERT_FALSE(result) << file;
        EXPECT_THAT(result.error(), HasSubstr(file));
        EXPECT_THAT(lines.lines(), Contains("Glyma: ⚠️ import failed — " + result.error()));
        EXPECT_EQ(need(store.characterCount()), 0);
        EXPECT_THAT(need(store.blocks()), IsEmpty());
    }
}

TEST_F(ImportTest, HieroglyphDescriptionsMayBeMissing) {
    files.remove("Unikemet.txt");
    auto store = need(Store::open(storeFile()));
    EXPECT_EQ(pipeline().run(store), (ImportSummary{17, 9}));
    EXPECT_EQ(phases, allPhases);
    EXPECT_THAT(need(store.character("𓀀"))->keywords, IsEmpty());
    EXPECT_THAT(lines.lines(), Contains(HasSubstr("Glyma: ⚠️ Unikemet import failed — ")));
}

TEST_F(ImportTest, AStoreFilledByAnotherProcessMeanwhileIsTakenAsItIs) {
    auto store = need(Store::open(storeFile()));
    auto first = pipeline();
    auto isFirst = true;
    first.progress = [&](std::string_view phase) {
        phases.emplace_back(phase);
        if (phase != "Checking font coverage" || !std::exchange(isFirst, false))
            return;
        auto other = need(Store::open(storeFile()));
        EXPECT_TRUE((ImportPipeline{resources, fonts, log, {}}.run(other)));
        need(other.setUsage("😀", 1, std::nullopt));
    };
    EXPECT_EQ(first.run(store), (ImportSummary{17, 9}));
    EXPECT_EQ(phases, allPhases);
    EXPECT_EQ(need(store.character("😀"))->usageCount, 1);
}

TEST_F(ImportTest, TheWholeOfUnicodeComesIn) {
    const ResourceLocator real(GLYMA_SOURCE_DIR "/resources");
    fonts.missing.clear();
    auto store = need(Store::open(storeFile()));
    const auto summary = ImportPipeline{real, fonts, log, {}}.run(store);
    ASSERT_TRUE(summary) << summary.error();
    EXPECT_EQ(need(store.characterCount()), summary->characters);
    EXPECT_GT(summary->characters, 40'000);
    EXPECT_GT(summary->blocks, 300);

    auto inBlocks = std::int64_t{0};
    for (const auto& block : need(store.blocks()))
        inBlocks += block.characterCount;
    EXPECT_EQ(inBlocks, summary->characters);
    EXPECT_EQ(need(store.enabledBlockNames()).size(), 39U);

    std::vector<std::string> names;
    need(store.visitKeyworded([&](const CharacterRow& row) { names.emplace_back(row.name); }));
    EXPECT_GT(names.size(), 3'000U);
    const auto position = [&](const char* name) { return std::ranges::find(names, name) - names.begin(); };
    EXPECT_LT(position("keycap: 9"), position("keycap: 10"));
    EXPECT_LT(position("keycap: 10"), position("zombie"));
    EXPECT_LT(position("zombie"), std::ssize(names));
    for (const auto* character : {"1\uFE0F", "#\uFE0F", "🇫🇷", "👩‍🚀", "😄", "𓀀", "⌘", "é"})
        EXPECT_TRUE(need(store.character(character))) << character;
    EXPECT_THAT(need(store.character("␣"))->keywords, Contains("space"));
}

} // namespace
} // namespace glyma
