#include "store_fixture.h"

#include <chrono>

namespace glyma {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

const Timestamp noon = Timestamp(std::chrono::seconds(1'760'000'000)) + 125ms;

std::vector<UnicodeChar> someCharacters() {
    return {
        makeUnicodeChar("❤️", "red heart", {"love", "Café"}, "Dingbats"),
        makeUnicodeChar("x10", "item 10", {}, "Arrows"),
        makeUnicodeChar("x9", "Item 9", {}, "Arrows"),
        makeUnicodeChar("é", "éclair", {"cake"}, "Latin-1 Supplement"),
        makeUnicodeChar("z", "zebra", {"animal"}, "Basic Latin"),
        disabled(makeUnicodeChar("h", "hidden", {"secret"}, "Basic Latin")),
        disabled(makeUnicodeChar("p", "plain hidden", {}, "Basic Latin")),
        used(makeUnicodeChar("u", "used", {}, "Arrows"), 3, noon),
    };
}

class StoreTest : public testing::Test {
protected:
    TemporaryFolder folder;
    std::filesystem::path file = folder / "Glyma.store";
    Store store = need(Store::open(file));
};

TEST(Records, DeriveTheirFields) {
    const auto heart = makeUnicodeChar("♥", "lover’s “heart”", {"love", "l’amour"}, "Dingbats");
    EXPECT_EQ(heart.keywordsRaw, "love,l’amour");
    EXPECT_EQ(heart.searchBagOfWords, "lover's \"heart\" love l'amour");
    EXPECT_EQ(heart.name, "lover’s “heart”");
    EXPECT_EQ(makeUnicodeChar("a", "letter", {}, "Basic Latin").searchBagOfWords, "letter");
    const auto selection = makeTermSelection("a|b", "c", noon);
    EXPECT_EQ(selection.id, "a|b|c");
    EXPECT_EQ(selection.count, 1);
}

TEST_F(StoreTest, GivesBackWholeRecords) {
    auto character =
        used(makeUnicodeChar("👩‍🚀", "astronaut, \"woman\"", {"a,b", "", "q\"uote", "é"}, "Emoticons"),
             7, noon);
    character.isEnabled = false;
    const UnicodeBlock block{"Emoticons", 0x1F600, 0x1F64F, 80, "😀😁", true};
    auto selection = makeTermSelection("Wom", "👩‍🚀", noon);
    selection.count = 4;
    need(store.insertCharacters(std::vector{character}));
    need(store.insertBlocks(std::vector{block}));
    need(store.insertTermSelections(std::vector{selection}));

    store = need(Store::open(file));
    EXPECT_EQ(need(store.character("👩‍🚀")), character);
    EXPECT_EQ(need(store.character("👩")), std::nullopt);
    EXPECT_THAT(need(store.blocks()), ElementsAre(block));
    EXPECT_EQ(need(store.termSelection("Wom|👩‍🚀")), selection);
    EXPECT_EQ(need(store.termSelection("wom|👩‍🚀")), std::nullopt);
}

TEST_F(StoreTest, GivesBackKeywordsWhateverTheyHold) {
    const std::vector<std::vector<std::string>> lists{
        {}, {""}, {"a", "b"}, {"", "b", ""}, {"a,b"}, {"a,b", "c"}, {"back\\slash"}, {"[\"", "\"]"}, {"\n"}};
    std::vector<UnicodeChar> characters;
    for (std::size_t place = 0; place < lists.size(); ++place)
        characters.push_back(
            makeUnicodeChar(std::to_string(place), std::to_string(place), lists[place], "Arrows"));
    need(store.insertCharacters(characters));
    for (const auto& character : need(store.charactersInBlock("Arrows")))
        EXPECT_EQ(character.keywords, lists[std::stoul(character.character)]);
}

TEST_F(StoreTest, VisitsTheRightRowsInNameOrder) {
    need(store.insertCharacters(someCharacters()));
    EXPECT_THAT(visited(store, &Store::visitKeyworded), ElementsAre("é", "❤️", "z"));
    EXPECT_THAT(visited(store, &Store::visitWithoutKeywords), ElementsAre("x9", "x10", "u"));
    EXPECT_THAT(visited(store, &Store::visitUsedWithoutKeywords), ElementsAre("u"));
    EXPECT_EQ(need(store.characterCount()), 8);
    EXPECT_THAT(need(store.enabledCharactersAndBlocks()),
                UnorderedElementsAre(Pair("❤️", "Dingbats"), Pair("x10", "Arrows"), Pair("x9", "Arrows"),
                                     Pair("é", "Latin-1 Supplement"), Pair("z", "Basic Latin"),
                                     Pair("u", "Arrows")));

    std::vector<std::string> inBlock;
    for (const auto& character : need(store.charactersInBlock("Basic Latin")))
        inBlock.push_back(character.character);
    EXPECT_THAT(inBlock, ElementsAre("h", "p", "z"));
}

TEST_F(StoreTest, KeepsNameOrderWhenCharactersAreAddedLater) {
    need(store.insertCharacters(someCharacters()));
    need(store.insertCharacters(std::vector{makeUnicodeChar("m", "monkey", {"animal"}, "Emoticons"),
                                            makeUnicodeChar("a", "aardvark 9", {}, "Emoticons"),
                                            makeUnicodeChar("z", "ant", {"animal"}, "Basic Latin")}));
    EXPECT_THAT(visited(store, &Store::visitKeyworded), ElementsAre("z", "é", "m", "❤️"));
    EXPECT_THAT(visited(store, &Store::visitWithoutKeywords), ElementsAre("a", "x9", "x10", "u"));
}

TEST_F(StoreTest, VisitsRowsByIdInTheOrderAsked) {
    need(store.insertCharacters(someCharacters()));
    std::vector<std::int64_t> ids;
    need(store.visitKeyworded([&](const CharacterRow& row) { ids.push_back(row.id); }));
    ASSERT_EQ(ids.size(), 3U);
    std::vector<std::string> names;
    need(store.visitRows(std::vector{ids[2], std::int64_t{999}, ids[0]}, [&](const CharacterRow& row) {
        names.push_back(std::string(row.name) + "/" + std::string(row.foldedName) + "/" +
                        std::string(row.foldedKeywords) + "/" + std::string(row.unicodeBlock));
    }));
    EXPECT_THAT(names,
                ElementsAre("zebra/zebra/animal/Basic Latin", "éclair/eclair/cake/Latin-1 Supplement"));
}

TEST_F(StoreTest, InsertingAKnownKeyUpdatesTheRecord) {
    auto characters = someCharacters();
    characters.push_back(makeUnicodeChar("z", "last of the batch", {"k"}, "Arrows"));
    need(store.insertCharacters(characters));
    EXPECT_EQ(need(store.characterCount()), 8);
    EXPECT_EQ(need(store.character("z")), characters.back());

    const auto again = used(makeUnicodeChar("z", "again", {}, "Dingbats"), 2, noon);
    need(store.insertCharacters(std::vector{again}));
    EXPECT_EQ(need(store.characterCount()), 8);
    EXPECT_EQ(need(store.character("z")), again);

    const UnicodeBlock block{"Arrows", 1, 2, 3, "s", false};
    const UnicodeBlock changed{"Arrows", 4, 5, 6, "t", true};
    need(store.insertBlocks(std::vector{block, changed}));
    EXPECT_THAT(need(store.blocks()), ElementsAre(changed));

    auto selection = makeTermSelection("a", "z", noon);
    need(store.insertTermSelections(std::vector{selection, makeTermSelection("b", "z", noon)}));
    selection.count = 2;
    selection.lastUsed = noon + 1h;
    need(store.insertTermSelections(std::vector{selection}));
    EXPECT_THAT(need(store.termSelections()),
                UnorderedElementsAre(selection, makeTermSelection("b", "z", noon)));
}

TEST_F(StoreTest, RecordsUse) {
    need(store.insertCharacters(someCharacters()));
    const auto chosen = used(*need(store.character("x9")), 1, noon);
    need(store.recordUse(chosen, makeTermSelection("it", "x9", noon)));
    need(store.recordUse(std::nullopt, makeTermSelection("r", "special:random-emoji", noon)));
    need(store.recordUse(makeUnicodeChar("no such", "", {}, ""), std::nullopt));
    need(store.setUsage("❤️", 9, std::nullopt));

    EXPECT_THAT(visited(store, &Store::visitUsedWithoutKeywords), ElementsAre("x9", "u"));
    EXPECT_EQ(need(store.character("x9")), chosen);
    std::vector<std::string> usedCharacters;
    for (const auto& character : need(store.usedCharacters()))
        usedCharacters.push_back(character.character);
    EXPECT_THAT(usedCharacters, ElementsAre("x9", "❤️", "u"));
    EXPECT_EQ(need(store.termSelections()).size(), 2U);
    EXPECT_EQ(need(store.characterCount()), 8);
}

TEST_F(StoreTest, SwitchesCharactersAndBlocks) {
    need(store.insertCharacters(someCharacters()));
    need(store.insertBlocks(
        std::vector<UnicodeBlock>{{"Arrows", 1, 2, 3, "", false}, {"Dingbats", 4, 5, 6, "", true}}));
    need(store.setCharactersEnabled("Basic Latin", true));
    EXPECT_THAT(visited(store, &Store::visitKeyworded), ElementsAre("é", "h", "❤️", "z"));
    need(store.setCharactersEnabled("Arrows", false));
    need(store.setCharacterEnabled("x10", true));
    EXPECT_THAT(visited(store, &Store::visitWithoutKeywords), ElementsAre("x10", "p"));
    need(store.setBlockEnabled("Arrows", true));
    need(store.setBlockEnabled("Dingbats", false));
    EXPECT_THAT(need(store.enabledBlockNames()), ElementsAre("Arrows"));
    const auto counts = need(store.enabledCounts());
    EXPECT_THAT(counts, UnorderedElementsAre(Pair("Arrows", 1), Pair("Basic Latin", 3), Pair("Dingbats", 1),
                                             Pair("Latin-1 Supplement", 1)));
    need(store.setCharactersEnabled("Dingbats", false));
    EXPECT_FALSE(need(store.enabledCounts()).contains("Dingbats"));
}

TEST_F(StoreTest, SeesWhatAnotherConnectionCommitted) {
    auto other = need(Store::open(file));
    {
        auto transaction = need(store.begin());
        need(store.insertCharacters(someCharacters()));
        EXPECT_EQ(need(other.characterCount()), 0);
        need(transaction.commit());
    }
    EXPECT_EQ(need(other.characterCount()), 8);
    EXPECT_THAT(visited(other, &Store::visitKeyworded), ElementsAre("é", "❤️", "z"));
    need(other.setUsage("z", 5, noon));
    EXPECT_EQ(need(store.character("z"))->usageCount, 5);
}

TEST_F(StoreTest, UndoesATransactionThatWasNotCommitted) {
    {
        auto transaction = need(store.begin());
        need(store.insertCharacters(someCharacters()));
        need(store.insertBlocks(std::vector<UnicodeBlock>{{"Arrows", 1, 2, 3, "", false}}));
        EXPECT_FALSE(store.begin());
    }
    EXPECT_EQ(need(store.characterCount()), 0);
    EXPECT_THAT(need(store.blocks()), IsEmpty());
    need(store.insertCharacters(someCharacters()));
    EXPECT_EQ(need(store.characterCount()), 8);
}

TEST_F(StoreTest, AVisitorThatThrowsIsAnErrorAndNothingStaysLocked) {
    need(store.insertCharacters(someCharacters()));
    const auto result = store.visitKeyworded([](const CharacterRow&) { throw std::runtime_error("no"); });
    ASSERT_FALSE(result);
    EXPECT_THAT(result.error(), HasSubstr("no"));
    EXPECT_THAT(visited(store, &Store::visitKeyworded), ElementsAre("é", "❤️", "z"));
    need(store.setUsage("z", 1, noon));
}

} // namespace
} // namespace glyma
