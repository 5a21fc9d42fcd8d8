#include "data/unicode_data_importer.h"
#include "resource_folder.h"
#include "unicode/text.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace glyma {
namespace {

using BlockData = UnicodeDataImporter::BlockData;
using CharData = UnicodeDataImporter::CharData;

const std::vector<BlockData> twoBlocks = {{"Basic Latin", 0, 0x7F}, {"Emoticons", 0x1F600, 0x1F64F}};

TEST(Blocks, AreReadFromWellFormedLinesOnly) {
    const auto blocks = UnicodeDataImporter::parseBlocks("# 0000..007F; Comment\n"
                                                         "\n"
                                                         "0000..007F; Basic Latin\r\n"
                                                         "  0080..00ff ;\tLatin-1 Supplement  \n"
                                                         "0100..017F Latin Extended-A\n" // no semicolon
                                                         "0180; Latin Extended-B\n"      // one end
                                                         "0250..02AF..02FF; IPA\n"       // three
                                                         "02B0..02FG; Spacing\n"         // not hexadecimal
                                                         "0300 .. 036F; Combining\n"     // inner spaces
                                                         "FFFFFFFFFFFFFFFFFF..1; Far\n"  // beyond 64 bits
                                                         "+0400....+04FF; Cyrillic; and more\n"
                                                         "100000..10FFFF; Last");
    EXPECT_EQ(blocks, (std::vector<BlockData>{{"Basic Latin", 0, 0x7F},
                                              {"Latin-1 Supplement", 0x80, 0xFF},
                                              {"Cyrillic; and more", 0x400, 0x4FF},
                                              {"Last", 0x100000, 0x10FFFF}}));
}

TEST(Blocks, HoldACodePointUpToTheirLast) {
    const auto blockOf = [](std::int64_t codepoint) {
        return UnicodeDataImporter::blockOf(codepoint, twoBlocks);
    };
    EXPECT_EQ(blockOf(0), "Basic Latin");
    EXPECT_EQ(blockOf(0x7F), "Basic Latin");
    EXPECT_EQ(blockOf(0x80), "No_Block");
    EXPECT_EQ(blockOf(0x1F5FF), "No_Block");
    EXPECT_EQ(blockOf(0x1F64F), "Emoticons");
    EXPECT_EQ(blockOf(0x1F650), "No_Block");
    EXPECT_EQ(blockOf(-1), "No_Block");
    EXPECT_EQ(UnicodeDataImporter::blockOf(0x41, {}), "No_Block");
}

TEST(UnicodeData, KeepsWhatHasANameOfItsOwn) {
    const auto characters =
        UnicodeDataImporter::parseCharacters("0000;<control>;Cc;0;BN;;;;;N;NULL;;;;\n"
                                             "0041;LATIN CAPITAL LETTER A;Lu;0;L;;;;;N;;;;0061;\n"
                                             "4E00;<CJK Ideograph, First>;Lo;0;L;;;;;N;;;;;\n"
                                             "9FFF;<CJK Ideograph, Last>;Lo;0;L;;;;;N;;;;;\n"
                                             "E000;PRIVATE;Co\n"
                                             "D800;SURROGATE;Lo\n"
                                             "DFFF;SURROGATE;Lo\n"
                                             "110000;BEYOND;Lo\n"
                                             "-41;NEGATIVE;Lo\n"
                                             "0x41;PREFIXED;Lo\n"
                                             ";NOTHING;Lo\n"
                                             "0042;TWO FIELDS\n"
                                             "\r\n"
                                             "0043;THREE;Cc\r\n"
                                             "0044;;Lu\n"
                                             "2603;SNOWMAN;So;\r\n"
                                             "1F600;GRINNING FACE;So",
                                             twoBlocks);
    EXPECT_EQ(characters, (std::vector<CharData>{{0x41, "A", "latin capital letter a", "Basic Latin"},
                                                 {0x44, "D", "", "Basic Latin"},
                                                 {0x2603, "☃", "snowman", "No_Block"},
                                                 {0x1F600, "😀", "grinning face", "Emoticons"}}));
}

TEST(UnicodeData, ShippedFilesAreReadToTheEnd) {
    const UnicodeDataImporter importer(test::shippedFiles);
    const auto blocks = importer.loadBlocks();
    ASSERT_TRUE(blocks) << blocks.error();
    EXPECT_EQ(blocks->size(), 346u);
    EXPECT_TRUE(std::ranges::is_sorted(*blocks, {}, &BlockData::rangeStart));
    EXPECT_EQ(blocks->back().rangeEnd, 0x10FFFF);

    const auto characters = importer.loadCharacters(*blocks);
    ASSERT_TRUE(characters) << characters.error();
    EXPECT_EQ(characters->size(), 40470u);
    EXPECT_EQ(characters->front().name, "space");
    EXPECT_EQ(characters->back().codepoint, 0xE01EF);
    for (const auto& character : *characters) {
        ASSERT_EQ(unicode::scalars(character.character),
                  std::u32string(1, static_cast<char32_t>(character.codepoint)));
        ASSERT_FALSE(character.name.empty()) << character.codepoint;
        ASSERT_NE(character.blockName, "No_Block") << character.codepoint;
    }
}

} // namespace
} // namespace glyma
