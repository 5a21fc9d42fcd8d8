#include "../adapters/xdg/temporary_folder.h"
#include "app/learned_data.h"

#include <gtest/gtest.h>

namespace glyma {
namespace {

Timestamp at(int seconds) {
    return Timestamp(std::chrono::seconds(seconds));
}

std::vector<UnicodeChar> characters(std::initializer_list<const char*> texts, const char* block) {
    std::vector<UnicodeChar> result;
    for (const auto* text : texts)
        result.push_back(makeUnicodeChar(text, std::string("name of ") + text, {"key"}, block));
    return result;
}

TEST(LearnedData, MovesToARebuiltStoreAndLeavesOutWhatIsGone) {
    xdg::TemporaryFolder folder;
    auto old = Store::open(folder.path() / "old.store").value();
    auto fresh = Store::open(folder.path() / "fresh.store").value();
    const std::vector<UnicodeBlock> blocks{{"Arrows", 1, 9, 3, "", true}, {"Dingbats", 10, 19, 1, "", true}};
    ASSERT_TRUE(old.insertCharacters(characters({"a", "b", "gone"}, "Arrows")));
    ASSERT_TRUE(old.insertBlocks(blocks));
    ASSERT_TRUE(old.setUsage("a", 7, at(1000)));
    ASSERT_TRUE(old.setUsage("gone", 3, at(1000)));
    ASSERT_TRUE(old.insertTermSelections(std::vector{makeTermSelection("arr", "a", at(2000))}));
    ASSERT_TRUE(old.setCharacterEnabled("b", false));
    ASSERT_TRUE(old.setBlockEnabled("Dingbats", false));
    ASSERT_TRUE(fresh.insertCharacters(characters({"a", "b", "new"}, "Arrows")));
    ASSERT_TRUE(fresh.insertBlocks(blocks));

    const auto carried = carryLearnedDataOver(old, fresh);
    ASSERT_TRUE(carried) << carried.error();
    const auto used = fresh.usedCharacters().value();
    ASSERT_EQ(used.size(), 1u);
    EXPECT_EQ(used[0].character, "a");
    EXPECT_EQ(used[0].usageCount, 7);
    EXPECT_EQ(used[0].lastUsed, at(1000));
    EXPECT_EQ(fresh.termSelections().value(), old.termSelections().value());
    EXPECT_FALSE(fresh.character("b").value()->isEnabled);
    EXPECT_TRUE(fresh.character("new").value()->isEnabled);
    EXPECT_EQ(fresh.enabledBlockNames().value(), (std::set<std::string, std::less<>>{"Arrows"}));
}

} // namespace
} // namespace glyma
