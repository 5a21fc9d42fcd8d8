#include "data/user_data_backup.h"
#include "road.h"

#include <fstream>

namespace glyma::scenario {
namespace {

class FirstStart : public Road {
protected:
    FirstStart()
        : Road(Characters::all) {}
};

TEST_F(FirstStart, TheUserTypesWhileTheCatalogueIsBeingImported) {
    auto& editor = desktop.open("editor");
    settle();
    desktop.clock.setTaskDuration(500ms);
    catalogue.start();
    ASSERT_TRUE(catalogue.isCurrentlyImporting());
    desktop.type("so :smile");
    EXPECT_TRUE(window.isShown);
    EXPECT_EQ(editor.text(), "so :smile");
    settle();
    EXPECT_FALSE(catalogue.isCurrentlyImporting());
    ASSERT_THAT(shown(), testing::Contains("😄")) << "the open picker gets what has been imported";
    desktop.press(keycode::escape);
    desktop.clock.setTaskDuration(1ms);

    editor.setText("");
    const auto choosing = [&](const std::string& character) {
        desktop.type(":smile");
        settle();
        for (std::size_t moves = 0; moves < shown().size(); ++moves) {
            if (shown()[static_cast<std::size_t>(picker.selectedIndex())] == character)
                break;
            desktop.press(keycode::down);
        }
        desktop.press(keycode::returnKey);
        settle();
    };
    choosing("😄");
    EXPECT_EQ(editor.text(), "😄");
    choosing("😸");
    EXPECT_EQ(editor.text(), "😄😸");
    choosing("😸");
    choose(":smile");
    EXPECT_EQ(editor.text(), "😄😸😸😸") << "what the user chooses more often comes first";
}

TEST_F(FirstStart, WhatABackupKnowsIsKnownAgainAfterTheImport) {
    auto& editor = desktop.open("editor");
    UserDataBackup backup;
    backup.charUsage = {{"😸", {40, desktop.clock.now()}}};
    backup.termSelections = {{"smile", "😸", 5, desktop.clock.now()}};
    backup.blockStates = {{"Currency Symbols", UserDataBackup::AllDisabled{}}};
    std::ofstream(folder / "user-data-backup-2024-05-01T120000.json") << encode(backup);
    catalogue.start();
    settle();
    choose(":smile");
    EXPECT_EQ(editor.text(), "😸");
    desktop.type(" :euro sign");
    settle();
    EXPECT_THAT(shown(), testing::Not(testing::Contains("€")));
}

} // namespace
} // namespace glyma::scenario
