#include "data/json_date.h"
#include "store_fixture.h"

#include <chrono>
#include <limits>
#include <map>

namespace glyma {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using Backup = UserDataBackup;

const Timestamp noon = Timestamp(std::chrono::seconds(1'760'000'000)) + 125ms;

class UserData : public testing::Test {
protected:
    static Store freshStore(const std::filesystem::path& file) {
        auto store = need(Store::open(file));
        need(store.insertCharacters(std::vector{
            makeUnicodeChar("b", "b", {}, "Some"), makeUnicodeChar("a", "a", {"k"}, "Some"),
            makeUnicodeChar("c", "c", {}, "Some"), makeUnicodeChar("d", "d", {}, "On"),
            disabled(makeUnicodeChar("e", "e", {}, "Off")), makeUnicodeChar("f", "f", {}, "No block")}));
        std::vector<UnicodeBlock> blocks;
        for (const auto* name : {"Some", "On", "Off", "Empty and on", "Empty and off"})
            blocks.push_back(
                {name, 0, 9, 1, "", name != std::string("Off") && name != std::string("Empty and off")});
        need(store.insertBlocks(blocks));
        return store;
    }
    static std::map<std::string, bool> switches(const Store& store) {
        std::map<std::string, bool> result;
        for (const auto& block : need(store.blocks())) {
            result[block.name] = block.isEnabled;
            for (const auto& character : need(store.charactersInBlock(block.name)))
                result[character.character] = character.isEnabled;
        }
        return result;
    }

    TemporaryFolder folder;
    Store store = freshStore(folder / "Glyma.store");
};

TEST_F(UserData, IsUsageTermsAndTheStateOfEachBlock) {
    need(store.setUsage("c", 4, noon));
    need(store.setUsage("e", 1, std::nullopt));
    need(store.insertTermSelections(std::vector{makeTermSelection("t|u", "a", noon)}));
    need(store.setCharacterEnabled("b", false));
    Backup expected;
    expected.exportDate = noon + 1s;
    expected.charUsage = {{"c", {4, noon}}, {"e", {1, std::nullopt}}};
    expected.termSelections = {{"t|u", "a", 1, noon}};
    expected.blockStates = {{"Some", Backup::Partial{{"a", "c"}}},
                            {"On", Backup::AllEnabled{}},
                            {"Off", Backup::AllDisabled{}},
                            {"Empty and on", Backup::AllEnabled{}},
                            {"Empty and off", Backup::AllDisabled{}}};
    EXPECT_EQ(need(store.userData(noon + 1s)), expected);
}

TEST_F(UserData, GoesIntoAnotherStoreAndComesOutUnchanged) {
    need(store.setUsage("c", 4, noon));
    need(store.insertTermSelections(std::vector{makeTermSelection("t", "a", noon)}));
    need(store.setCharacterEnabled("b", false));
    need(store.setCharactersEnabled("On", false));
    need(store.setBlockEnabled("On", false));
    need(store.setCharactersEnabled("Off", true));
    need(store.setBlockEnabled("Off", true));
    need(store.setBlockEnabled("Empty and on", false));
    need(store.setBlockEnabled("Empty and off", true));

    auto other = freshStore(folder / "other.store");
    need(other.restoreUserData(need(store.userData(noon))));
    EXPECT_EQ(need(other.userData(noon)), need(store.userData(noon)));
    EXPECT_EQ(switches(other), switches(store));
    EXPECT_EQ(need(other.termSelections()), need(store.termSelections()));
    EXPECT_EQ(need(other.usedCharacters()), need(store.usedCharacters()));
}

TEST_F(UserData, APartialStateSwitchesTheBlockOnAndOthersOff) {
    Backup backup;
    backup.blockStates = {{"Off", Backup::Partial{{"e", "gone"}}}, {"Some", Backup::Partial{{"c"}}}};
    need(store.restoreUserData(backup));
    EXPECT_EQ(switches(store), (std::map<std::string, bool>{{"Some", true},
                                                            {"a", false},
                                                            {"b", false},
                                                            {"c", true},
                                                            {"On", true},
                                                            {"d", true},
                                                            {"Off", true},
                                                            {"e", true},
                                                            {"Empty and on", true},
                                                            {"Empty and off", false}}));
}

TEST_F(UserData, WhatTheStoreLacksIsLeftOutAndWhatTheBackupLacksStays) {
    need(store.setUsage("a", 2, noon));
    need(store.insertTermSelections(std::vector{makeTermSelection("kept", "a", noon)}));
    Backup backup;
    backup.charUsage = {
        {"gone", {9, noon}}, {"d", {std::numeric_limits<std::int64_t>::max(), noon}}, {"e", {-5, noon}}};
    backup.termSelections = {{"of gone", "gone", 2, noon}};
    backup.blockStates = {{"Gone", Backup::AllEnabled{}}};
    const auto before = switches(store);
    need(store.restoreUserData(backup));
    EXPECT_EQ(switches(store), before);
    EXPECT_EQ(need(store.character("a"))->usageCount, 2);
    EXPECT_EQ(need(store.character("e"))->usageCount, 0);
    const auto count = need(store.character("d"))->usageCount;
    EXPECT_GT(count, 1'000'000);
    EXPECT_LT(count, std::numeric_limits<std::int64_t>::max()) << "one more can still be counted";
    EXPECT_EQ(need(store.termSelections()).size(), 2U);
}

TEST_F(UserData, RemovingTheCatalogueLeavesTheTerms) {
    need(store.insertTermSelections(std::vector{makeTermSelection("kept", "a", noon)}));
    need(store.removeCatalogue());
    EXPECT_EQ(need(store.characterCount()), 0);
    EXPECT_THAT(need(store.blocks()), IsEmpty());
    EXPECT_EQ(need(store.termSelections()).size(), 1U);
}

TEST_F(UserData, AStoreIsKnownByItsFirstBytes) {
    { const auto closed = std::move(store); }
    EXPECT_TRUE(Store::isStore(folder / "Glyma.store"));
    SQLite::Database(folder / "other", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
        .exec("CREATE TABLE x (y)");
    write(folder / "short", "SQLite format 3");
    for (const auto* name : {"other", "short", "absent", "."})
        EXPECT_FALSE(Store::isStore(folder / name)) << name;
}

} // namespace
} // namespace glyma
