#include "data/block_tables.h"
#include "data/unicode_data_importer.h"
#include "resource_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace glyma {
namespace {

TEST(BlockTables, NameBlocksThatExist) {
    const auto blocks = UnicodeDataImporter(test::shippedFiles).loadBlocks();
    ASSERT_TRUE(blocks);
    for (const auto table : {defaultEnabledBlocks(), emojiBlocks(), emojiOnlyBlocks()}) {
        for (const auto name : table)
            EXPECT_EQ(std::ranges::count(*blocks, name, &UnicodeDataImporter::BlockData::name), 1) << name;
        EXPECT_EQ(std::set(table.begin(), table.end()).size(), table.size());
    }
    EXPECT_EQ(defaultEnabledBlocks().size(), 39u);
    EXPECT_EQ(emojiBlocks().size(), 24u);
    EXPECT_EQ(emojiOnlyBlocks().size(), 6u);
    EXPECT_TRUE(isDefaultEnabledBlock("Transport and Map Symbols"));
    EXPECT_FALSE(isDefaultEnabledBlock("Cyrillic"));
    EXPECT_FALSE(isDefaultEnabledBlock("basic latin"));
    EXPECT_TRUE(isEmojiBlock("Latin-1 Supplement"));
    EXPECT_FALSE(isEmojiBlock("Mathematical Operators"));
}

TEST(HiddenByDefault, IsWhatIsTypedDirectlyOrNeverWanted) {
    struct Case {
        const char* block;
        const char* character;
        const char* name;
        bool hidden;
    };
    const Case cases[] = {
        {"Basic Latin", "@", "commercial at", false},
        {"Basic Latin", "~", "tilde", false},
        {"Basic Latin", "A", "latin capital letter a", true},
        {"Basic Latin", " ", "space", true},
        {"Basic Latin", "5", "digit five", true},
        {"Basic Latin", "5️", "digit five", false}, // as the import stores it: two scalars
        {"Basic Latin", "", "", false},
        {"Latin-1 Supplement", "\u00AD", "soft hyphen", true},
        {"Latin-1 Supplement", "\u00AD", "SOFT HYPHEN", true},
        {"Latin-1 Supplement", "©️", "copyright", false},
        {"Dingbats", "➀", "dingbat circled sans-serif digit one", true},
        {"Dingbats", "➉", "DINGBAT CIRCLED SANS-SERIF NUMBER TEN", true},
        {"Dingbats", "✂️", "scissors", false},
        {"Dingbats", "x", "circled digit, a dingbat", false},
        {"General Punctuation", "\u200B", "zero width space", true},
        {"General Punctuation", "\u2028", "line separator", true},
        {"General Punctuation", "\u2003", "em space", true},
        {"General Punctuation", "—", "em dash", false},
        {"General Punctuation", "", "", false},
        {"Control Pictures", "␣", "open box", false},
        {"Control Pictures", "␀", "symbol for null", true},
        {"Control Pictures", "", "", true},
        {"Greek and Coptic", "π", "greek small letter pi", false},
        {"Greek and Coptic", "Π", "greek capital letter pi", true},
        {"Greek and Coptic", "", "", true},
        {"Enclosed Alphanumerics", "①", "circled digit one", true},
        {"Enclosed Alphanumerics", "Ⓜ️", "circled latin capital letter m", false},
        {"Enclosed Alphanumerics", "", "", true},
        {"Enclosed Alphanumeric Supplement", "🇩", "regional indicator symbol letter d", true},
        {"Enclosed Alphanumeric Supplement", "🇩🇪", "flag: germany", false},
        {"Mahjong Tiles", "🀄", "mahjong tile red dragon", false},
        {"Mahjong Tiles", "🀀", "mahjong tile east wind", true},
        {"Playing Cards", "🃏", "joker", false},
        {"Arrows", "→", "rightwards arrow", false},
        {"No_Block", "x", "soft hyphen", false},
    };
    for (const auto& [block, character, name, hidden] : cases)
        EXPECT_EQ(isHiddenByDefault(character, name, block), hidden)
            << block << ": " << character << " " << name;
}

TEST(ExtraKeywords, BelongToTheCharacterAlone) {
    EXPECT_TRUE(std::ranges::equal(extraKeywords("⌘"), std::array{"command", "cmd"}));
    EXPECT_TRUE(std::ranges::equal(extraKeywords("⌫"), std::array{"del"}));
    EXPECT_TRUE(extraKeywords("⌘\uFE0F").empty());
    EXPECT_TRUE(extraKeywords("").empty());
}

} // namespace
} // namespace glyma
