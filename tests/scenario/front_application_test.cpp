#include "road.h"

namespace glyma::scenario {
namespace {

class FrontApplications : public Road {
protected:
    bool opensHere() {
        desktop.type(":s");
        const bool isOpen = window.isShown;
        EXPECT_EQ(isOpen, monitor.isPanelVisible());
        desktop.press(keycode::escape);
        return isOpen;
    }
};

TEST_F(FrontApplications, ExcludedOnesAreLeftAlone) {
    auto& terminal = desktop.open("org.gnome.Terminal", simulated::terminal());
    settle();
    exclude("org.gnome.Terminal");
    EXPECT_FALSE(opensHere());
    EXPECT_EQ(terminal.keysFromUser(), ":s<Escape>");
    preferences.setExcludedApps({{"org.gnome.Terminal", "Terminal", false}});
    EXPECT_TRUE(opensHere()) << "switched off, not removed";
    exclude("org.gnome.terminal");
    EXPECT_TRUE(opensHere()) << "another identifier";
    desktop.open("");
    settle();
    EXPECT_TRUE(opensHere()) << "an application without a name";
}

TEST_F(FrontApplications, OurOwnWindowsOnlyInTheTestField) {
    auto& editor = desktop.open("editor");
    auto& own = desktop.open("glyma");
    settle();
    EXPECT_FALSE(opensHere());
    flags.isTestFieldFocused = true;
    EXPECT_TRUE(opensHere());
    flags.isTestFieldFocused = false;

    desktop.activate(editor);
    settle();
    desktop.type(":sm");
    desktop.activate(own);
    settle();
    EXPECT_TRUE(window.isShown) << "a click into the picker or the tray keeps it open";
    desktop.activate(editor);
    settle();
    EXPECT_FALSE(window.isShown);
}

TEST_F(FrontApplications, SwitchingForgetsTriggerAndPicker) {
    auto& first = desktop.open("first");
    auto& second = desktop.open("second");
    settle();
    desktop.type(":");
    desktop.activate(first);
    settle();
    desktop.type("s");
    EXPECT_FALSE(window.isShown) << "the trigger was typed elsewhere";

    desktop.type(":s");
    desktop.activate(second);
    settle();
    EXPECT_FALSE(window.isShown);
    desktop.press(keycode::returnKey);
    EXPECT_EQ(second.text(), ":\n");
    EXPECT_EQ(first.text(), "s:s");
    desktop.activateNothing();
    settle();
    EXPECT_TRUE(opensHere());
}

} // namespace
} // namespace glyma::scenario
