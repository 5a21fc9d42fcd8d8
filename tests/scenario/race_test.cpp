#include "road.h"

namespace glyma::scenario {
namespace {

using testing::IsEmpty;

/// The main thread lags, or the user is faster than it.
class Race : public Road {
protected:
    void SetUp() override {
        Road::SetUp();
        editor = &desktop.open("editor");
        settle();
        desktop.keyInterval = 3ms;
    }
    void stall() { desktop.clock.stallMainQueue(300ms); }
    simulated::Application* editor = nullptr;
};

TEST_F(Race, AllKeysBeforeTheMainThreadHasRun) {
    stall();
    desktop.type("a:smil");
    desktop.press(keycode::returnKey);
    EXPECT_EQ(editor->text(), "a:smil");
    settle();
    EXPECT_EQ(editor->text(), "a😄");
    EXPECT_EQ(editor->keysFromUser(), "a:smil");
}

TEST_F(Race, DeletesAndStartsOverBeforeTheMainThreadHasRun) {
    stall();
    desktop.type(":s");
    desktop.press(keycode::backspace);
    desktop.type("heart");
    settle();
    EXPECT_EQ(picker.query(), "heart");
    EXPECT_TRUE(window.isShown);
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_EQ(editor->text(), "❤️");
}

TEST_F(Race, EscapeBeforeTheMainThreadHasRun) {
    stall();
    desktop.type(":sm");
    desktop.press(keycode::escape);
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_FALSE(window.isShown);
    EXPECT_EQ(editor->text(), ":sm\n");
    EXPECT_THAT(desktop.consumedKeys(), testing::ElementsAre(keycode::escape));
}

TEST_F(Race, ClosedAndOpenedAgainBeforeTheMainThreadHasRun) {
    stall();
    desktop.type(":sm");
    desktop.press(keycode::escape);
    desktop.type(":heart");
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_EQ(editor->text(), ":sm❤️");
}

TEST_F(Race, APickerThatTheApplicationSwitchOvertookIsNotShown) {
    auto& other = desktop.open("other");
    desktop.activate(*editor);
    settle();
    stall();
    desktop.activate(other); // the main thread hears of it first
    desktop.type(":sm");
    settle();
    EXPECT_FALSE(window.isShown);
    EXPECT_FALSE(monitor.isPanelVisible());
    EXPECT_THAT(shown(), IsEmpty()) << "nor searched for";
    desktop.press(keycode::returnKey);
    EXPECT_EQ(other.text(), ":sm\n");
}

TEST_F(Race, AReturnThatFindsNothingClosesThePicker) {
    desktop.type(":qqqqqq");
    settle();
    ASSERT_THAT(shown(), IsEmpty());
    desktop.press(keycode::returnKey);
    EXPECT_FALSE(window.isShown);
    desktop.type(":smil");
    picker.setSelectedIndex(99);
    desktop.press(keycode::returnKey);
    EXPECT_FALSE(window.isShown) << "a highlight outside the list must not leave the picker behind";
    settle();
    EXPECT_EQ(editor->text(), ":qqqqqq:smil");
}

// The text layer does not look which application is in front when it begins.
TEST_F(Race, SwitchingApplicationsBeforeTheInsertionTouchesNeither) {
    auto& other = desktop.open("other", simulated::silent());
    other.setText("untouched");
    desktop.activate(*editor);
    settle();
    desktop.type(":smil");
    desktop.press(keycode::returnKey);
    desktop.advance(20ms);
    desktop.activate(other);
    settle();
    EXPECT_EQ(other.text(), "untouched");
    EXPECT_EQ(desktop.clipboard.text(), "copied before");
}

// The application has made a new line, or moved its caret, by the time the tap hears of the key.
TEST_F(Race, AKeyThatSlippedToTheApplicationClosesThePickerAndChoosesNothing) {
    for (const auto& manner : {simulated::wellBehaved(), simulated::silent()})
        for (const auto slipped : {keycode::returnKey, keycode::down, keycode::up, keycode::escape}) {
            SCOPED_TRACE(slipped);
            editor = &desktop.open("editor", manner);
            settle();
            desktop.setTapLate(true);
            desktop.type("a:smil");
            desktop.press(slipped);
            const auto left = editor->textWithCaret();
            desktop.setTapLate(false);
            EXPECT_FALSE(desktop.isTypingHeld());
            settle();
            EXPECT_EQ(editor->textWithCaret(), left);
            EXPECT_EQ(editor->keysInjected(), "");
            EXPECT_FALSE(window.isShown);
            EXPECT_FALSE(desktop.tap.claims().pickerKeys);
            desktop.press(keycode::end);
            desktop.type(" :smil\n");
            settle();
            EXPECT_THAT(editor->text(), testing::EndsWith(" 😄"));
        }
    EXPECT_THAT(desktop.consumedKeys(), testing::Each(keycode::returnKey));
}

TEST_F(Race, StoppingAndStartingAgain) {
    desktop.type(":sm");
    monitor.stop();
    desktop.press(keycode::down);
    EXPECT_EQ(editor->keysFromUser(), ":sm<Down>");
    ASSERT_TRUE(monitor.start());
    desktop.press(keycode::escape);
    EXPECT_FALSE(window.isShown);
    monitor.stop();
    desktop.tap.refusal = "no XInput 2";
    const auto refused = monitor.start();
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error(), "no XInput 2");
    EXPECT_FALSE(desktop.tap.isRunning());
}

} // namespace
} // namespace glyma::scenario
