#include "catalogue/command_line_search.h"
#include "catalogue_fixture.h"
#include "data/json_date.h"

#include <fstream>

namespace glyma {
namespace {

using namespace std::chrono_literals;
using test::CatalogueFixture;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

class Manager : public CatalogueFixture {
protected:
    Manager() {
        fillStore();
        startManager();
    }

    std::vector<std::string> indexCharacters() const {
        std::vector<std::string> characters;
        for (const auto& entry : manager_->allKeywordedCharacters())
            characters.push_back(entry.character);
        return characters;
    }
};

TEST_F(Manager, IndexHoldsKeywordedThenUsedThenSpecialsThenSnippets) {
    manager_->recordUsage("€", "");
    preferences_.setUserReplacements({{"1", "Shrug", {}, "¯\\_(ツ)_/¯"},
                                      {"2", "Fire", {"x"}, "🔥"},
                                      {"3", "Empty", {"x"}, ""},
                                      {"4", "Shrug again", {"why, not"}, "¯\\_(ツ)_/¯"}});
    EXPECT_THAT(indexCharacters(), ElementsAre("🔥", "😀", "❤️", "👍", "€", "special:random-emoji",
                                               "special:random-unicode", "¯\\_(ツ)_/¯", "¯\\_(ツ)_/¯"));
    const auto entries = manager_->allKeywordedCharacters();
    EXPECT_THAT(entries[1].keywords, ElementsAre("smile", "", "happy face"));
    EXPECT_EQ(entries[1].popularityRank, 2); // the later of its two places
    EXPECT_EQ(entries[2].popularityRank, 1); // listed with U+FE0F or without
    EXPECT_EQ(entries[3].popularityRank, notRanked);
    EXPECT_EQ(entries[4].usageCount, 1);
    EXPECT_THAT(entries[7].keywords, ElementsAre("Shrug")); // its name, for want of others
    EXPECT_THAT(entries[8].keywords, ElementsAre("why, not"));
}

TEST_F(Manager, SecondPhaseAddsCharactersWithoutKeywords) {
    const auto deliveries = search("heart");
    ASSERT_THAT(deliveries, SizeIs(2));
    EXPECT_FALSE(deliveries[0].isFinal);
    EXPECT_THAT(deliveries[0].identities, ElementsAre("❤️"));
    EXPECT_TRUE(deliveries[1].isFinal);
    EXPECT_THAT(deliveries[1].identities, ElementsAre("❤️", "♥"));
    EXPECT_EQ(deliveries[1].infos[0], (RankingInfo{110, 22, 0, 0, 150})); // (1 - 1/4) * 30 truncated
    EXPECT_EQ(deliveries[1].infos[1], (RankingInfo{110, 0, 0, 0, 0}));
}

TEST_F(Manager, QueriesThatFindNothingEndAsTheyMust) {
    const auto spaces = search("  ");
    ASSERT_THAT(spaces, SizeIs(1));
    EXPECT_FALSE(spaces[0].isFinal);
    EXPECT_THAT(spaces[0].identities, IsEmpty());

    const auto empty = search("");
    ASSERT_THAT(empty, SizeIs(1));
    EXPECT_TRUE(empty[0].isFinal);

    EXPECT_THAT(search("qqqq"), SizeIs(2));
}

TEST_F(Manager, WithoutAnEnabledBlockTheFirstPhaseIsFinal) {
    auto store = Store::open(storeFile());
    ASSERT_TRUE(store->setBlockEnabled("Emoticons", false));
    manager_->reloadEnabledBlocks();
    const auto deliveries = search("heart");
    ASSERT_THAT(deliveries, SizeIs(1));
    EXPECT_TRUE(deliveries[0].isFinal);
}

TEST_F(Manager, CancelledSearchNeverDeliversAgain) {
    for (const auto cancelAfter : {0us, 1000us}) { // before the store is read, and before the results arrive
        auto deliveries = 0;
        const auto task = manager_->search("heart", [&](const PickerItems&, bool) { ++deliveries; });
        clock_.stallMainQueue(10ms);
        clock_.advance(cancelAfter);
        task->cancel();
        clock_.advance(1s);
        EXPECT_EQ(deliveries, 1);
    }
}

TEST_F(Manager, ManagerMayGoBeforeItsSearchEnds) {
    auto deliveries = 0;
    const auto task = manager_->search("heart", [&](const PickerItems&, bool) { ++deliveries; });
    manager_.reset();
    clock_.advance(1s);
    EXPECT_EQ(deliveries, 1);
}

TEST_F(Manager, UnreadableStoreStillDeliversWhatIsInMemory) {
    std::filesystem::remove(imageFile());
    manager_->loadAllEmojis(); // has to read the store for the second phase again
    std::filesystem::rename(storeFile(), folder_ / "away");
    std::ofstream(storeFile()) << "not a database, but long enough to be looked at as one";
    const auto deliveries = search("heart");
    ASSERT_THAT(deliveries, SizeIs(2));
    EXPECT_TRUE(deliveries[1].isFinal);
    EXPECT_THAT(deliveries[1].identities, ElementsAre("❤️"));
    EXPECT_THAT(logLines("⚠️ background DB query failed — "), SizeIs(1));
}

TEST_F(Manager, ChosenCharacterWithoutKeywordsMovesIntoTheFirstPhase) {
    auto signals = 0;
    const auto subscription = manager_->usageRecorded.connect([&] { ++signals; });
    manager_->recordUsage("♥", "heart");
    EXPECT_EQ(signals, 1);
    const auto deliveries = search("heart");
    EXPECT_THAT(deliveries[0].identities, ElementsAre("♥", "❤️"));
    EXPECT_THAT(deliveries[1].identities, ElementsAre("♥", "❤️")); // and not twice
    EXPECT_EQ(deliveries[0].infos[0], (RankingInfo{110, 0, 35, 30, 150}));
}

TEST_F(Manager, WhatWasLearnedHoldsAfterARestart) {
    for (auto use = 0; use < 3; ++use)
        manager_->recordUsage("👍", "ab");
    manager_->recordUsage("€", "");
    const auto before = manager_->allKeywordedCharacters();
    startManager();
    EXPECT_EQ(manager_->allKeywordedCharacters(), [&] {
        auto expected = before; // the used character has moved before the special entries
        std::ranges::rotate(expected.begin() + 4, expected.end() - 1, expected.end());
        return expected;
    }());
    EXPECT_EQ(infoOf("thumbs", "👍"), (RankingInfo{110, 0, 45, 0, 150}));
}

TEST_F(Manager, LearnedTermCountsForItselfAndItsBeginnings) {
    for (auto use = 0; use < 3; ++use)
        manager_->recordUsage("👍", "thumbs");
    EXPECT_EQ(infoOf("thumbs", "👍").termBonus, 30 + 20);
    EXPECT_EQ(infoOf("th", "👍").termBonus, 15);
    EXPECT_EQ(infoOf("thumbs up", "👍").termBonus, 0);
    clock_.advance(24h * 7);
    EXPECT_EQ(infoOf("thumbs", "👍").termBonus, 30 + 10);
    clock_.advance(24h * 2);
    EXPECT_EQ(infoOf("thumbs", "👍").termBonus, 30);
}

TEST_F(Manager, TermIsStoredAsTypedAndSoNeverFoundFolded) {
    manager_->recordUsage("👍", "Thumbs");
    EXPECT_EQ(infoOf("Thumbs", "👍").termBonus, 0);
    EXPECT_EQ(Store::open(storeFile())->termSelection("Thumbs|👍").value()->term, "Thumbs");
}

TEST_F(Manager, SpecialsAndSnippetsLearnInTheSettings) {
    manager_->recordUsage("special:random-emoji", "ran");
    EXPECT_EQ(infoOf("random", "s:random-emoji"), (RankingInfo{110, 30, 35, 0, 150}));
    EXPECT_EQ(infoOf("ran", "s:random-emoji").termBonus, 30);
    preferences_.setUserReplacements({{"1", "Sig", {}, "Yours"}});
    manager_->recordUsage("Yours", "");
    manager_->recordUsage("nobody knows it", "");
    const auto stored = settings_.value("glymaUserReplacementUsage").value();
    EXPECT_THAT(stored, SizeIs(2));
    EXPECT_EQ(stored["Yours"]["count"], 1);
    EXPECT_EQ(stored["Yours"]["lastUsed"], toJsonDate(clock_.now()));
    startManager();
    EXPECT_EQ(infoOf("sig", "Yours").usageBonus, 35);
}

TEST_F(Manager, DamagedSettingsCountAsNothingLearned) {
    using nlohmann::json;
    for (const auto& damage :
         {json("text"), json::array({1, 2}), json{{"a", {{"count", "x"}, {"lastUsed", 0}}}}, json{{"a", 1}},
          json(nullptr)}) {
        for (const auto* key : {"glymaUserReplacementUsage", "glymaRandomEmojiUsedChars",
                                "glymaRandomEmojiUsedChars.last", "debug.randomEmojiHistory"})
            settings_.set(key, damage);
        startManager();
        EXPECT_EQ(infoOf("random", "s:random-emoji").usageBonus, 0);
        EXPECT_THAT(manager_->randomPickHistory(true), IsEmpty());
        EXPECT_NE(manager_->pickRandom(true), "?");
        EXPECT_THAT(manager_->randomPickHistory(true), SizeIs(1));
    }
}

TEST_F(Manager, QueriesAreRedactedInTheLog) {
    search("He 7");
    EXPECT_THAT(sink_.lines(),
                Contains("Glyma: [score phase 1] raw=\"Xx 0\" normalized=\"xx 0\" terms=[\"xx\", \"0\"]"));
    EXPECT_THAT(sink_.lines(), Contains("Glyma: [score phase 2] 0 results from 6 entries"));
    for (const auto& line : sink_.lines())
        EXPECT_THAT(line, Not(::testing::HasSubstr("he 7")));
}

TEST_F(Manager, ResultsStayAsTheyWereWhenTheCatalogueChanges) {
    PickerItems kept;
    manager_->search("smile", [&](const PickerItems& items, bool) { kept = items; });
    manager_->setBlockCharactersEnabled("Emoticons", false);
    clock_.advance(1s);
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(identity(kept[0]), "😀");
    EXPECT_THAT(finalIdentities("smile"), IsEmpty());
}

// --- Switching

/// Whether each character of the block is switched on.
std::vector<bool> enabledIn(const UnicodeDataManager& manager, const std::string& block) {
    std::vector<bool> enabled;
    for (const auto& character : manager.charactersInBlock(block))
        enabled.push_back(character.isEnabled);
    return enabled;
}

const std::string pictographs = "Miscellaneous Symbols and Pictographs"; // 🔥 and 👍

TEST_F(Manager, SwitchedCharactersCountAtOnceAndAreFoundOnceStored) {
    manager_->recordUsage("€", "");
    manager_->setCharactersEnabled(pictographs, true, {"🔥"}, false);
    manager_->setBlockCharactersEnabled("Currency Symbols", false);
    EXPECT_THAT(enabledIn(*manager_, pictographs), ElementsAre(false, true));
    EXPECT_THAT(enabledIn(*manager_, "Currency Symbols"), ElementsAre(false));
    EXPECT_THAT(finalIdentities("hot"), IsEmpty()); // lets the background run
    EXPECT_THAT(finalIdentities("euro"), IsEmpty());
    manager_->setCharactersEnabled(pictographs, true, {"🔥"}, true);
    manager_->setBlockCharactersEnabled("Currency Symbols", true);
    clock_.advance(1s);
    EXPECT_THAT(finalIdentities("hot"), ElementsAre("🔥"));
    EXPECT_THAT(finalIdentities("euro"), ElementsAre("€"));
    startManager();
    EXPECT_THAT(finalIdentities("hot"), ElementsAre("🔥"));
    EXPECT_EQ(infoOf("euro", "€").cacheBonus, 150) << "what was learned outlives the switching";
}

TEST_F(Manager, LastBlockSwitchedOffLeavesTheFirstPhaseFinal) {
    manager_->setBlockCharactersEnabled("Emoticons", false);
    clock_.advance(1s);
    EXPECT_THAT(search("heart"), SizeIs(1));
    manager_->setBlockCharactersEnabled("Emoticons", true);
    clock_.advance(1s);
    EXPECT_THAT(search("heart"), SizeIs(2));
}

TEST_F(Manager, SwitchingsStoreInTheirOrderWhileOneIsBeingStored) {
    clock_.setTaskDuration(100ms);
    for (const bool enabled : {false, true, false, true, false}) {
        manager_->setCharactersEnabled(pictographs, enabled, {"🔥", "👍"}, enabled);
        clock_.advance(30ms);
    }
    clock_.advance(1s);
    EXPECT_THAT(finalIdentities("hot"), IsEmpty());
    startManager();
    EXPECT_THAT(enabledIn(*manager_, pictographs), ElementsAre(false, false));
}

TEST_F(Manager, WhatWasSwitchedIsStoredWhenTheProgramEndsFirst) {
    manager_->setCharactersEnabled(pictographs, true, {"🔥"}, false);
    manager_.reset();
    startManager();
    EXPECT_THAT(enabledIn(*manager_, pictographs), ElementsAre(false, true));
}

TEST_F(Manager, SwitchingThatCannotBeStoredIsStoredWithTheNext) {
    std::filesystem::rename(storeFile(), folder_ / "elsewhere");
    std::filesystem::create_directory(storeFile()); // no second connection opens
    manager_->setCharactersEnabled(pictographs, true, {"🔥"}, false);
    clock_.advance(1s);
    EXPECT_THAT(enabledIn(*manager_, pictographs), ElementsAre(false, true));
    EXPECT_THAT(logLines("⚠️ storing what was switched"), SizeIs(1));
    EXPECT_THAT(finalIdentities("hot"), ElementsAre("🔥"));
    std::filesystem::remove(storeFile());
    std::filesystem::rename(folder_ / "elsewhere", storeFile());
    manager_->setCharactersEnabled("Emoticons", false, {"😀"}, false);
    clock_.advance(1s);
    EXPECT_THAT(finalIdentities("hot"), IsEmpty());
    EXPECT_THAT(finalIdentities("smile"), IsEmpty());
}

// --- The image beside the store

TEST_F(Manager, ImageGivesTheSameCatalogueAsTheStore) {
    const auto fromStore = manager_->allKeywordedCharacters();
    const auto heart = finalIdentities("heart");
    ASSERT_TRUE(std::filesystem::exists(imageFile()));
    startManager();
    EXPECT_EQ(manager_->allKeywordedCharacters(), fromStore);
    EXPECT_EQ(finalIdentities("heart"), heart);
}

TEST_F(Manager, ImageOlderThanTheStoreIsNotUsed) {
    search("heart");
    auto store = Store::open(storeFile());
    ASSERT_TRUE(store->setCharactersEnabled("Miscellaneous Symbols", false));
    manager_->loadAllEmojis();
    EXPECT_THAT(finalIdentities("heart"), ElementsAre("❤️"));
    ASSERT_TRUE(store->insertCharacters(
        std::vector{makeUnicodeChar("♡", "WHITE HEART SUIT", {}, "Miscellaneous Symbols")}));
    manager_->loadAllEmojis();
    EXPECT_THAT(finalIdentities("heart"), ElementsAre("❤️", "♡"));
}

TEST_F(Manager, DamagedImageIsHarmless) {
    search("heart");
    std::ifstream stream(imageFile(), std::ios::binary);
    const std::string image(std::istreambuf_iterator<char>(stream), {});
    const auto load = [&](const std::string& bytes) {
        std::ofstream(imageFile(), std::ios::binary | std::ios::trunc) << bytes;
        manager_->loadAllEmojis();
        manager_->allKeywordedCharacters();
        manager_->search("heart", [](const PickerItems&, bool) {});
    };
    for (std::size_t place = 0; place < image.size(); place += 7) {
        auto damaged = image;
        damaged[place] = static_cast<char>(damaged[place] ^ 0x81);
        load(damaged);
    }
    for (std::size_t length = 0; length < image.size(); length += image.size() / 16)
        load(image.substr(0, length));
    EXPECT_THAT(finalIdentities("heart"), ElementsAre("❤️", "♥"));
}

TEST_F(Manager, CommandLineFindsWhatTheProgramFinds) {
    preferences_.setUserReplacements({{"1", "Heart text", {"<3"}, "<3"}});
    manager_->recordUsage("♥", "heart");
    manager_->recordUsage("😀", "face");
    manager_->recordUsage("<3", "heart");
    const auto replacements = preferences_.userReplacements();
    for (const auto withImage : {false, true}) {
        if (!withImage)
            std::filesystem::remove(imageFile());
        for (const auto* query : {"heart", "face", "random", "s", "  ", "EURO", "he he"}) {
            const auto expected = search(query).back();
            const auto rows = searchFromCommandLine(
                {storeFile(), *resources_, settings_, replacements, clock_.now()}, {query, false, {}});
            ASSERT_TRUE(rows) << rows.error();
            ASSERT_EQ(rows->size(), expected.identities.size()) << query;
            for (std::size_t row = 0; row < rows->size(); ++row)
                EXPECT_EQ((*rows)[row].ranking, expected.infos[row])
                    << query << " " << (*rows)[row].character;
        }
    }
    EXPECT_FALSE(hasCatalogue(folder_ / "absent"));
    EXPECT_TRUE(hasCatalogue(storeFile()));
}

// --- Random picks

TEST_F(Manager, EveryEmojiComesUpOnceBeforeAnyComesAgain) {
    const auto pool = manager_->randomEmojiPool();
    EXPECT_THAT(pool, SizeIs(3 + 6)); // the thumb in six tones
    EXPECT_THAT(pool, Contains("👍🏽"));
    std::string last;
    for (auto cycle = 0; cycle < 5; ++cycle) {
        std::set<std::string> picked;
        for (std::size_t pick = 0; pick < pool.size(); ++pick) {
            const auto character = manager_->pickRandom(true);
            if (pick == 0) {
                EXPECT_NE(character, last);
            }
            EXPECT_TRUE(picked.insert(character).second);
            last = character;
        }
        startManager(); // the memory is in the settings
    }
    EXPECT_THAT(manager_->randomPickHistory(true), SizeIs(45));
    EXPECT_THAT(manager_->randomPickHistory(false), IsEmpty());
}

TEST_F(Manager, UnicodePickTakesEmojiOnlyWhenAsked) {
    auto store = Store::open(storeFile());
    ASSERT_TRUE(
        store->insertCharacters(std::vector{makeUnicodeChar("₤", "LIRA SIGN", {}, "Currency Symbols"),
                                            makeUnicodeChar("₹", "RUPEE SIGN", {}, "Currency Symbols")}));
    preferences_.setRandomUnicodeIncludesEmoji(false);
    std::string last;
    for (auto pick = 0; pick < 60; ++pick) { // twenty cycles of three
        const auto character = manager_->pickRandom(false);
        EXPECT_THAT(character, ::testing::AnyOf("€", "₤", "₹"));
        EXPECT_NE(character, last);
        last = character;
    }
    EXPECT_THAT(manager_->randomUnicodeDisplayPool(), IsEmpty());
    preferences_.setRandomUnicodeIncludesEmoji(true);
    std::set<std::string> picked;
    for (auto pick = 0; pick < 9; ++pick)
        picked.insert(manager_->pickRandom(false));
    EXPECT_THAT(picked, Contains("🔥"));
    EXPECT_THAT(manager_->randomUnicodeDisplayPool(), SizeIs(4));
}

TEST_F(Manager, HistoryKeepsTheLatestFiveHundred) {
    auto signals = 0;
    const auto subscription = manager_->randomPickHistoryDidChange.connect([&] { ++signals; });
    for (auto pick = 0; pick < 501; ++pick) {
        clock_.advance(1s);
        manager_->pickRandom(true);
    }
    const auto history = manager_->randomPickHistory(true);
    ASSERT_THAT(history, SizeIs(500));
    EXPECT_LT(history.front().date, history.back().date);
    EXPECT_NEAR(toJsonDate(history.back().date), toJsonDate(clock_.now()), 0.001);
    manager_->clearRandomPickHistory(true);
    EXPECT_THAT(manager_->randomPickHistory(true), IsEmpty());
    EXPECT_EQ(signals, 502);
}

// --- Import

class EmptyCatalogue : public CatalogueFixture {};

TEST_F(EmptyCatalogue, IsImportedInTheBackgroundWithProgress) {
    for (const auto* name : {"Blocks.txt", "UnicodeData.txt", "annotations.json", "Unikemet.txt"})
        writeResource(name, "");
    writeResource("Blocks.txt", "2190..21FF; Arrows\n");
    writeResource("UnicodeData.txt", "2190;LEFTWARDS ARROW;Sm;0;ON;;;;;N;LEFT ARROW;;;;\n");
    writeResource("annotations.json",
                  R"({"annotations":{"annotations":{"←":{"default":["west"],"tts":["left arrow"]}}}})");
    std::vector<std::string> events;
    auto store = Store::open(storeFile());
    manager_ = std::make_unique<UnicodeDataManager>(
        CatalogueServices{clock_, clock_, clock_, settings_, preferences_, log_, *resources_, fonts_, {}},
        *std::move(store));
    const auto started = manager_->importStarted.connect([&] { events.push_back("started"); });
    const auto progress =
        manager_->importProgress.connect([&](const std::string& text) { events.push_back(text); });
    const auto complete = manager_->importComplete.connect(
        [&](const std::string& failure) { events.push_back("complete " + failure); });
    manager_->start();
    EXPECT_TRUE(manager_->isCurrentlyImporting());
    EXPECT_THAT(search("arrow")[0].identities, IsEmpty());
    clock_.advance(1s);
    EXPECT_FALSE(manager_->isCurrentlyImporting());
    EXPECT_THAT(events,
                ElementsAre("started", "Importing Blocks.txt", "Importing UnicodeData.txt",
                            "Checking font coverage", "Importing annotations.json", "Importing Unikemet.txt",
                            "Inserting characters", "Inserting Unicode blocks", "Finalizing",
                            "Restoring user data", "complete "));
    EXPECT_THAT(finalIdentities("west"), SizeIs(1));
}

TEST_F(EmptyCatalogue, ImportWithoutReferenceFilesEndsWithTheReason) {
    std::string failure;
    auto store = Store::open(storeFile());
    manager_ = std::make_unique<UnicodeDataManager>(
        CatalogueServices{clock_, clock_, clock_, settings_, preferences_, log_, *resources_, fonts_, {}},
        *std::move(store));
    const auto complete = manager_->importComplete.connect([&](const std::string& why) { failure = why; });
    manager_->start();
    clock_.advance(1s);
    EXPECT_NE(failure, "");
    EXPECT_FALSE(manager_->isCurrentlyImporting());
    EXPECT_THAT(logLines("⚠️ import failed — "), SizeIs(1));
    EXPECT_THAT(search("arrow"), SizeIs(1));
}

} // namespace
} // namespace glyma
