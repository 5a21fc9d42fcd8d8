#include "data/records.h"
#include "data/store.h"
#include "picker/emoji_picker_view_model.h"
#include "platform/simulated/desktop.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>

namespace glyma {
namespace {

using namespace std::chrono_literals;

/// A model over a catalogue of ten arrows with keywords and one character that only the store's names find.
class ViewModel : public testing::Test {
protected:
    ViewModel() {
        catalogue.start();
        desktop.advance(10ms);
        model.setOnItemsChanged([this] {
            ++assignments;
            sizes.push_back(count());
        });
        changes = model.changed.connect([this] { ++notifications; });
    }
    ~ViewModel() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    static std::filesystem::path makeFolder() {
        auto name = (std::filesystem::temp_directory_path() / "glyma-model-XXXXXX").string();
        return mkdtemp(name.data());
    }
    Store makeStore() const {
        auto store = Store::open(folder / "Glyma.store").value();
        std::vector<UnicodeChar> rows{makeUnicodeChar("⟿", "LONG RIGHTWARDS SQUIGGLE", {}, "Arrows")};
        for (const char* character : {"←", "↑", "→", "↓", "↔", "↕", "↖", "↗", "↘", "↙"})
            rows.push_back(
                makeUnicodeChar(character, std::string("ARROW ") + character, {"arrow"}, "Arrows"));
        EXPECT_TRUE(store.insertBlocks(std::vector<UnicodeBlock>{{"Arrows", 0x2190, 0x21FF, 11, "", true}}));
        EXPECT_TRUE(store.insertCharacters(rows));
        return store;
    }
    std::ptrdiff_t count() const { return static_cast<std::ptrdiff_t>(model.items().size()); }
    void settle() { desktop.advance(1s); }

    std::filesystem::path folder = makeFolder();
    simulated::Desktop desktop;
    DebugConfig debug{desktop.settings};
    Log log{desktop.log, debug};
    UserPreferences preferences{desktop.settings, desktop.loginItem, desktop.installedApplications, log};
    ResourceLocator resources{folder};
    UnicodeDataManager catalogue{{desktop.clock, desktop.clock, desktop.clock, desktop.settings, preferences,
                                  log, resources, desktop.fonts},
                                 makeStore()};
    EmojiPickerViewModel model{catalogue};
    int assignments = 0;
    std::vector<std::ptrdiff_t> sizes;
    int notifications = 0;
    Subscription changes;
};

TEST_F(ViewModel, ShowsTheFirstResultAndThenTheFinalOne) {
    model.setQuery("squiggle");
    EXPECT_TRUE(model.isSearching());
    EXPECT_EQ(count(), 0);
    settle();
    EXPECT_FALSE(model.isSearching());
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(model.itemCount(), 1U);
}

TEST_F(ViewModel, ANewQueryOrAResetDropsTheSearchInFlight) {
    model.setQuery("squiggle");
    model.setQuery("arrow");
    settle();
    EXPECT_EQ(count(), 10);
    EXPECT_THAT(sizes, testing::Not(testing::Contains(1))) << "what the first query found was never shown";
    model.setQuery("squiggle");
    model.reset();
    const auto before = assignments;
    settle();
    EXPECT_EQ(assignments, before);
    EXPECT_EQ(count(), 0);
    EXPECT_FALSE(model.isSearching());
}

TEST_F(ViewModel, SearchesAgainForTheSameQueryButTellsOnlyOfDifferences) {
    model.setQuery("arrow");
    settle();
    const auto assignedBefore = assignments;
    model.setQuery("arrow");
    EXPECT_GT(assignments, assignedBefore);
    settle();
    const auto toldBefore = notifications;
    model.setTrigger(":");
    model.setIsAltHeld(false);
    model.setSelectedIndex(0);
    EXPECT_EQ(notifications, toldBefore);
    model.setIsAltHeld(true);
    EXPECT_EQ(notifications, toldBefore + 1);
}

TEST_F(ViewModel, TheHighlightStopsAtBothEnds) {
    model.moveSelection(1);
    EXPECT_FALSE(model.needsScrollToSelection()) << "an empty list";
    model.setQuery("arrow");
    settle();
    struct Case {
        std::ptrdiff_t from, delta, to;
    };
    for (const auto& [from, delta, to] :
         {Case{0, 1, 1}, Case{0, -1, 0}, Case{9, 1, 9}, Case{9, -1, 8}, Case{-1, 1, 0}, Case{-1, -1, 9}}) {
        model.setSelectedIndex(from);
        model.setNeedsScrollToSelection(false);
        model.moveSelection(delta);
        EXPECT_EQ(model.selectedIndex(), to) << from << " " << delta;
        EXPECT_TRUE(model.needsScrollToSelection());
    }
    model.setQuery("arrow ←");
    EXPECT_EQ(model.selectedIndex(), 0) << "each query starts at its first entry";
}

TEST_F(ViewModel, ChoosingMayCloseThePickerMeanwhile) {
    std::vector<std::string> chosen;
    const auto install = [&] {
        model.setOnSelection([&](const PickerItem& item) {
            model.setOnSelection(nullptr);
            model.reset();
            chosen.push_back(std::get<EmojiEntry>(item).character);
        });
    };
    install();
    model.confirmSelection();
    EXPECT_TRUE(chosen.empty()) << "nothing to choose";
    model.setQuery("arrow");
    settle();
    const auto third = std::get<EmojiEntry>(model.items()[2]).character;
    model.clickRow(2, model.items()[2]);
    EXPECT_TRUE(chosen.empty()) << "the first click only highlights";
    model.clickRow(2, model.items()[2]);
    model.setQuery("arrow");
    settle();
    install();
    model.setSelectedIndex(2);
    model.confirmSelection();
    model.confirmSelection();
    EXPECT_THAT(chosen, testing::ElementsAre(third, third));
}

TEST_F(ViewModel, AnImportRefreshesAnOpenPickerAndLeavesItsHighlight) {
    catalogue.importComplete.emit("");
    EXPECT_EQ(assignments, 0) << "the picker is not in use";
    model.setOnDismiss([] {});
    model.setQuery("arrow");
    settle();
    model.setSelectedIndex(12);
    catalogue.importComplete.emit("");
    settle();
    EXPECT_EQ(count(), 10);
    EXPECT_EQ(model.selectedIndex(), 12);
}

} // namespace
} // namespace glyma
