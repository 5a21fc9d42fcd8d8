#include "catalogue_fixture.h"
#include "preferences/tabs/unicode_tab_model.h"

#include <optional>

namespace glyma {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using enum UnicodeTabModel::CheckState;

class UnicodeTab : public test::CatalogueFixture {
protected:
    void fill() {
        auto store = Store::open(storeFile());
        ASSERT_TRUE(store) << store.error();
        std::vector<UnicodeChar> characters{
            makeUnicodeChar("←", "LEFTWARDS ARROW", {"west", "Back"}, "Arrows"),
            makeUnicodeChar("→", "RIGHTWARDS ARROW", {}, "Arrows"),
            makeUnicodeChar("↑", "UPWARDS ARROW", {}, "Arrows"),
            makeUnicodeChar("Ω", "GREEK CAPITAL LETTER OMEGA", {}, "Greek and Coptic")};
        characters[1].isEnabled = false;
        ASSERT_TRUE(store->insertCharacters(characters));
        const std::vector<UnicodeBlock> blocks{{"Greek and Coptic", 0x370, 0x3FF, 1, "Ω", true},
                                               {"Arrows", 0x2190, 0x21FF, 3, "←", true},
                                               {"Yi Radicals", 0xA490, 0xA4CF, 0, "", false}};
        ASSERT_TRUE(store->insertBlocks(blocks));
    }
    void open() {
        fill();
        startManager();
        model_.emplace(*manager_);
    }
    const UnicodeBlock& block(const std::string& name) const {
        return *std::ranges::find(model_->blocks(), name, &UnicodeBlock::name);
    }
    UnicodeTabModel::CheckState state(const std::string& name) const {
        return model_->checkState(block(name));
    }
    std::vector<std::string> shownBlocks() const {
        std::vector<std::string> names;
        for (const auto position : model_->shownBlocks())
            names.push_back(model_->blocks()[position].name);
        return names;
    }
    std::vector<std::string> shownChars() const {
        std::vector<std::string> characters;
        for (const auto position : model_->shownChars())
            characters.push_back(model_->blockChars()[position].character);
        return characters;
    }
    std::vector<std::string> enabledChars() const {
        std::vector<std::string> characters;
        for (const auto& record : model_->blockChars())
            if (record.isEnabled)
                characters.push_back(record.character);
        return characters;
    }
    /// What another start of the program finds.
    void reopen() {
        model_.reset();
        startManager();
        model_.emplace(*manager_);
    }

    std::optional<UnicodeTabModel> model_;
};

TEST_F(UnicodeTab, FiltersLookAtNamesCharactersAndKeywords) {
    open();
    EXPECT_THAT(shownBlocks(), ElementsAre("Arrows", "Greek and Coptic", "Yi Radicals"));
    model_->setBlockFilter("aNd");
    EXPECT_THAT(shownBlocks(), ElementsAre("Greek and Coptic"));
    model_->setBlockFilter("nothing");
    EXPECT_THAT(shownBlocks(), IsEmpty());
    EXPECT_THAT(shownChars(), IsEmpty()) << "no block is selected";
    model_->selectBlock("Arrows");
    EXPECT_THAT(shownChars(), ElementsAre("←", "→", "↑"));
    for (const auto* filter : {"Left", "←", "BACK", "west,b"}) {
        model_->setCharFilter(filter);
        EXPECT_THAT(shownChars(), ElementsAre("←")) << filter;
    }
    model_->setCharFilter("Ω");
    EXPECT_THAT(shownChars(), IsEmpty());
    model_->selectBlock("Greek and Coptic");
    EXPECT_THAT(shownChars(), ElementsAre("Ω")) << "the filter stays, and a capital finds itself";
}

TEST_F(UnicodeTab, PartlyEnabledBlockIsFirstSwitchedOnAsAWhole) {
    open();
    model_->selectBlock("Arrows");
    EXPECT_EQ(state("Arrows"), mixed);
    EXPECT_EQ(state("Greek and Coptic"), on);
    EXPECT_EQ(state("Yi Radicals"), off);
    model_->toggleBlock("Arrows");
    EXPECT_EQ(state("Arrows"), on);
    EXPECT_THAT(enabledChars(), ElementsAre("←", "→", "↑"));
    model_->toggleBlock("Arrows");
    EXPECT_EQ(state("Arrows"), off);
    EXPECT_FALSE(block("Arrows").isEnabled);
    model_->toggleBlock("Greek and Coptic");
    model_->toggleBlock("Yi Radicals");
    EXPECT_EQ(state("Yi Radicals"), off);
    clock_.advance(1s);
    EXPECT_THAT(finalIdentities("arrow"), IsEmpty());
    EXPECT_THAT(search("omega"), ::testing::SizeIs(1)) << "no block is left for the second phase";
    reopen();
    EXPECT_EQ(state("Arrows"), off);
    EXPECT_EQ(state("Greek and Coptic"), off);
}

TEST_F(UnicodeTab, BlockFollowsItsCharacters) {
    open();
    model_->selectBlock("Greek and Coptic");
    model_->toggleChar("Ω");
    EXPECT_EQ(state("Greek and Coptic"), off);
    EXPECT_FALSE(block("Greek and Coptic").isEnabled);
    model_->selectBlock("Arrows");
    model_->selectBlock("Greek and Coptic");
    EXPECT_THAT(enabledChars(), IsEmpty()) << "though it is not stored yet";
    model_->toggleChar("Ω");
    EXPECT_TRUE(block("Greek and Coptic").isEnabled);
    EXPECT_EQ(model_->enabledCount(block("Greek and Coptic")), 1);
    model_->toggleChar("absent");
    reopen();
    EXPECT_EQ(state("Greek and Coptic"), on);
}

TEST_F(UnicodeTab, SelectedCharactersAreSwitchedTogether) {
    open();
    model_->selectBlock("Arrows");
    model_->selectChars({"←", "→", "↑"});
    model_->toggleChar("→"); // the one that is off
    EXPECT_EQ(state("Arrows"), on);
    model_->toggleChar("→");
    EXPECT_EQ(state("Arrows"), off);
    model_->selectChars({"←", "→"});
    model_->toggleChar("↑");
    EXPECT_THAT(enabledChars(), ElementsAre("↑"));
    model_->setCharFilter("left"); // → cannot be seen any more
    model_->toggleChar("←");
    EXPECT_THAT(enabledChars(), ElementsAre("←", "↑"));
    clock_.advance(1s);
    EXPECT_THAT(finalIdentities("west"), ElementsAre("←"));
    EXPECT_THAT(finalIdentities("rightwards"), IsEmpty());
}

TEST_F(UnicodeTab, DetailsShowTheFirstTwelve) {
    fill();
    auto store = Store::open(storeFile());
    std::vector<UnicodeChar> characters;
    std::set<std::string> all;
    for (char letter = 'a'; letter <= 'o'; ++letter) {
        characters.push_back(
            makeUnicodeChar(std::string(1, letter), std::string(1, letter), {}, "Yi Radicals"));
        all.insert(characters.back().character);
    }
    ASSERT_TRUE(store->insertCharacters(characters));
    startManager();
    model_.emplace(*manager_);
    model_->selectBlock("Yi Radicals");
    model_->selectChars(all);
    EXPECT_EQ(model_->detailedChars().size(), 12u);
    EXPECT_EQ(model_->detailedChars().back(), "l");
    EXPECT_EQ(model_->selectedOmitted(), 3u);
    model_->selectChars({"b"});
    EXPECT_EQ(model_->selectedOmitted(), 0u);
}

TEST_F(UnicodeTab, UseIsShownAsItHappens) {
    open();
    model_->selectBlock("Arrows");
    model_->toggleChar("↑");
    auto changes = 0;
    const auto subscription = model_->valuesChanged.connect([&] { ++changes; });
    manager_->recordUsage("←", "west");
    EXPECT_EQ(model_->blockChars()[0].usageCount, 1);
    EXPECT_THAT(enabledChars(), ElementsAre("←")) << "what was switched stays";
    EXPECT_EQ(changes, 1);
}

TEST_F(UnicodeTab, FillsItselfWhenTheImportEnds) {
    writeResource("Blocks.txt", "2190..21FF; Arrows\n");
    writeResource("UnicodeData.txt", "2190;LEFTWARDS ARROW;Sm;0;ON;;;;;N;LEFT ARROW;;;;\n");
    writeResource("annotations.json", R"({"annotations":{"annotations":{"←":{"tts":["left arrow"]}}}})");
    writeResource("Unikemet.txt", "");
    startManager();
    model_.emplace(*manager_);
    std::vector<std::string> statuses;
    const auto subscription =
        model_->importChanged.connect([&] { statuses.push_back(model_->importStatus()); });
    EXPECT_TRUE(model_->isImporting());
    EXPECT_THAT(shownBlocks(), IsEmpty());
    model_->setBlockFilter("arr");
    clock_.advance(1s);
    EXPECT_FALSE(model_->isImporting());
    EXPECT_EQ(model_->importFailure(), "");
    EXPECT_THAT(statuses, ::testing::Contains("Importing UnicodeData.txt"));
    EXPECT_THAT(shownBlocks(), ElementsAre("Arrows"));
}

TEST_F(UnicodeTab, SaysWhyTheImportFailed) {
    startManager();
    model_.emplace(*manager_);
    clock_.advance(1s);
    EXPECT_FALSE(model_->isImporting());
    EXPECT_NE(model_->importFailure(), "");
}

} // namespace
} // namespace glyma
