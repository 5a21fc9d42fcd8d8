#include "road.h"

namespace glyma::scenario {
namespace {

using simulated::Manner;
using testing::Contains;
using testing::IsEmpty;
namespace key = simulated::key;

/// The query is what the target's text says.
class Polling : public Road {
protected:
    void SetUp() override {
        Road::SetUp();
        open(simulated::wellBehaved());
    }
    void open(const Manner& manner) {
        editor = &desktop.open("editor", manner);
        settle();
    }
    void command(std::uint16_t keyCode) {
        desktop.press(keyCode, modifier::control);
        desktop.advance(60ms);
    }
    /// Something other than keys changes the text.
    void become(const std::string& changed) {
        editor->setText(changed);
        desktop.press(key::a, modifier::control); // any command makes the monitor look
        desktop.advance(60ms);
    }
    simulated::Application* editor = nullptr;
};

TEST_F(Polling, FollowsPasteUndoAndCompletion) {
    desktop.clipboard.setText("le");
    desktop.type("a :smi");
    EXPECT_FALSE(picker.isKeystrokeMode());
    command(keycode::v);
    EXPECT_EQ(picker.query(), "smile");
    command(key::z);
    EXPECT_EQ(picker.query(), "smi");
    become("a :smiley");
    EXPECT_EQ(picker.query(), "smiley");
    desktop.press(keycode::backspace);
    desktop.press(keycode::backspace);
    EXPECT_EQ(picker.query(), "smil");
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_EQ(editor->text(), "a 😄");
}

TEST_F(Polling, ReplacesACompletionThatIsNotYetAccepted) {
    auto completes = simulated::wellBehaved();
    completes.completions = {{":smi", "ley"}, {":hea", "rt"}};
    open(completes);
    choose("a:smi");
    EXPECT_EQ(editor->text(), "a😄");
    desktop.type(" :hea");
    EXPECT_EQ(editor->textWithCaret(), "a😄 :hea|rt|");
    EXPECT_EQ(picker.query(), "hea");
    desktop.type("r");
    EXPECT_EQ(picker.query(), "hear");
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_EQ(editor->text(), "a😄 ❤️");
}

TEST_F(Polling, ClosesOrWaitsAsTheTextSays) {
    struct Case {
        const char* what;
        const char* changed;
        bool isOpen;
        bool isPending;
    };
    const Case cases[] = {
        {"the trigger gone", "sm", false, false},
        {"everything gone", "", false, false},
        {"a line feed behind it", ":sm\n", false, false},
        {"deleted back to the trigger", "x:", false, true},
        {"another trigger behind it", ":sm:gri", true, false},
        {"as it was", ":sm", true, false},
    };
    for (const auto& [what, changed, isOpen, isPending] : cases) {
        SCOPED_TRACE(what);
        editor->setText("");
        desktop.type(":sm");
        settle();
        ASSERT_TRUE(window.isShown);
        become(changed);
        EXPECT_EQ(window.isShown, isOpen);
        EXPECT_EQ(monitor.isPanelVisible(), isOpen);
        EXPECT_EQ(monitor.isPendingTrigger(), isPending);
        EXPECT_EQ(desktop.tap.claims().pickerKeys, isOpen);
        desktop.press(keycode::escape);
        desktop.press(keycode::left);
        settle();
    }
}

TEST_F(Polling, BurstsEndAndNothingRunsBetweenThem) {
    desktop.type(":sm");
    EXPECT_TRUE(picker.isPolling());
    desktop.advance(80ms);
    EXPECT_FALSE(picker.isPolling()) << "three readings after the text shows the key";
    auto calls = desktop.accessibility.callCount();
    desktop.advance(60s);
    EXPECT_EQ(desktop.accessibility.callCount(), calls);

    desktop.press(key::a, modifier::control); // changes nothing
    desktop.advance(4900ms);
    EXPECT_TRUE(picker.isPolling());
    desktop.advance(100ms);
    EXPECT_FALSE(picker.isPolling()) << "after 250 ticks";
    EXPECT_TRUE(window.isShown);

    desktop.type("i");
    desktop.press(keycode::escape);
    EXPECT_FALSE(picker.isPolling());
    calls = desktop.accessibility.callCount();
    desktop.advance(60s);
    EXPECT_EQ(desktop.accessibility.callCount(), calls);
}

TEST_F(Polling, ATextThatCannotBeReadAnyLongerLeavesThePickerOpen) {
    desktop.type(":sm");
    settle();
    desktop.accessibility.failFromCall(1);
    desktop.type("i");
    desktop.advance(6s);
    EXPECT_FALSE(picker.isPolling());
    EXPECT_TRUE(window.isShown);
    EXPECT_EQ(picker.query(), "smi") << "nothing but keys has changed the text";
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_EQ(editor->text(), "😄");
    desktop.accessibility.stopFailing();

    desktop.clipboard.setText("le");
    desktop.type(" :smi");
    settle();
    desktop.accessibility.failFromCall(1);
    command(keycode::v);
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_EQ(editor->text(), "😄 :smile") << "nobody knows what would be deleted";
    EXPECT_EQ(desktop.bell.count, 1);
}

TEST_F(Polling, AnElementThatNeverShowsWhatIsTypedIsFollowedByKeys) {
    const auto hidden = editor->addField({0, 0, 1, 1});
    desktop.type(":s");
    editor->focusField(hidden); // the keys go on reaching the application, which draws them elsewhere
    desktop.type("m");
    editor->setText("");
    desktop.advance(200ms);
    EXPECT_TRUE(window.isShown);
    EXPECT_TRUE(picker.isKeystrokeMode());
    EXPECT_EQ(picker.query(), "sm");
    command(key::z);
    EXPECT_FALSE(window.isShown);
}

TEST_F(Polling, ATargetThatAnswersSlowlyOrNeverHoldsNothingUp) {
    for (const bool isHung : {false, true}) {
        SCOPED_TRACE(isHung);
        auto slow = simulated::wellBehaved();
        open(slow);
        desktop.type(":s");
        if (isHung)
            editor->setHung(true);
        simulated::VirtualClock::Duration longest{0};
        const auto job = desktop.clock.every(1ms, [&, last = desktop.clock.elapsed()]() mutable {
            longest = std::max(longest, desktop.clock.elapsed() - last);
            last = desktop.clock.elapsed();
        });
        desktop.type("mil");
        desktop.mouse.deliver(MouseEvent::leftDragged);
        desktop.advance(1s);
        EXPECT_LE(longest, 2ms);
        EXPECT_EQ(picker.query(), "smil");
        editor->setHung(false);
        desktop.advance(3s);
        desktop.press(keycode::returnKey);
        settle();
        EXPECT_EQ(editor->text(), "😄");
    }
}

// It has just been started: what it could not tell when the picker opened it tells now.
TEST_F(Polling, BeginsWhenTheElementIsFoundAfterAll) {
    desktop.clipboard.setText("le");
    editor->setHung(true);
    desktop.type(":s");
    desktop.advance(300ms);
    EXPECT_TRUE(picker.isKeystrokeMode());
    editor->setHung(false);
    desktop.type("mi");
    desktop.advance(1s);
    EXPECT_FALSE(picker.isKeystrokeMode());
    EXPECT_EQ(window.carets.size(), 2U) << "moved from the pointer to the caret";
    command(keycode::v);
    EXPECT_EQ(picker.query(), "smile");
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_EQ(editor->text(), "😄");
}

TEST_F(Polling, JudgesAClickByTheTextBeforeTheCaret) {
    struct Case {
        const char* what;
        std::ptrdiff_t caret;
        bool isOpen;
        bool isPending;
    };
    const Case cases[] = {
        {"elsewhere", 2, false, false},
        {"where it was", 9, true, false},
        {"into the query", 8, false, false},
        {"behind the trigger", 7, false, true},
        {"behind another trigger", 3, false, true},
    };
    for (const auto& [what, caret, isOpen, isPending] : cases) {
        SCOPED_TRACE(what);
        editor->setText("ab: x ");
        desktop.type(":sm");
        desktop.advance(200ms);
        EXPECT_TRUE(desktop.mouse.isWatched());
        desktop.click(*editor, caret);
        desktop.advance(100ms);
        EXPECT_EQ(window.isShown, isOpen);
        EXPECT_EQ(monitor.isPendingTrigger(), isPending);
        desktop.press(keycode::escape);
        desktop.press(keycode::left);
        settle();
        EXPECT_FALSE(desktop.mouse.isWatched());
    }
}

TEST_F(Polling, AClickIntoATargetThatTellsNothingChangesNothing) {
    open(simulated::silent());
    desktop.type(":sm");
    desktop.click(*editor, 0);
    desktop.advance(100ms);
    EXPECT_TRUE(window.isShown);
}

TEST_F(Polling, ThePickerMovesWithTheWindow) {
    desktop.type(":sm");
    desktop.advance(200ms);
    const auto shown = window.frame();
    desktop.drag(*editor, {130, -40}, 10);
    desktop.advance(20ms);
    EXPECT_EQ(window.frame(), (Rect{shown.x + 130, shown.y - 40, shown.width, shown.height}));
    editor->moveWindow({0, 7}); // the window manager puts it beside another one
    desktop.advance(200ms);
    desktop.drag(*editor, {-10, 3}, 2);
    desktop.advance(200ms);
    EXPECT_EQ(window.frame(), (Rect{shown.x + 120, shown.y - 30, shown.width, shown.height}));
    EXPECT_TRUE(window.isShown);
    const auto dragged = window.frame();
    desktop.mouse.deliver(MouseEvent::leftDragged);
    desktop.advance(150ms);
    editor->moveWindow({20, 20}); // a window manager that is late, while the button is still held
    desktop.advance(200ms);
    EXPECT_EQ(window.frame(), (Rect{dragged.x + 20, dragged.y + 20, dragged.width, dragged.height}));
    desktop.press(keycode::escape);
    desktop.drag(*editor, {50, 50}, 2);
    EXPECT_FALSE(window.isShown);
}

TEST_F(Polling, TheTriggerTypedTwice) {
    desktop.type("a::");
    EXPECT_EQ(picker.query(), ":");
    settle();
    EXPECT_TRUE(window.isShown);
    desktop.type("smil");
    EXPECT_EQ(picker.query(), "smil");
    desktop.press(keycode::returnKey);
    settle();
    EXPECT_EQ(editor->text(), "a:😄") << "what the picker showed, and nothing else";
}

// Whatever of the keys the target has applied and the main thread has heard of when the next one comes.
TEST_F(Polling, KeysAtAnyMoment) {
    struct Case {
        const char* keys; ///< "<" deletes
        const char* expected;
    };
    const Case cases[] = {
        {":smil\n", "a😄"},    {":smix<l\n", "a😄"}, {":s<heart\n", "a❤️"}, {":sm<<hear\n", "a❤️"},
        {":x<<:smi\n", "a😄"}, {":smi\n", "a😄"},    {"::smil\n", "a:😄"},       {":q<<b :waving\n", "ab 👋"},
    };
    for (const auto& [keys, expected] : cases)
        for (const auto lag : {0ms, 9ms, 35ms, 70ms})
            for (const auto interval : {2ms, 15ms, 19ms, 45ms})
                for (std::size_t stalledAt = 0; stalledAt <= std::string(keys).size(); ++stalledAt) {
                    SCOPED_TRACE(testing::Message() << keys << " lag " << lag.count() << " interval "
                                                    << interval.count() << " stalled at " << stalledAt);
                    open(simulated::lateKeys(lag));
                    editor->setText("a");
                    desktop.keyInterval = interval;
                    for (std::size_t i = 0; i < std::string(keys).size(); ++i) {
                        if (i == stalledAt)
                            desktop.clock.stallMainQueue(50ms);
                        if (keys[i] == '<')
                            desktop.press(keycode::backspace);
                        else
                            desktop.type(std::string(1, keys[i]));
                    }
                    settle();
                    EXPECT_EQ(editor->text(), expected);
                    EXPECT_FALSE(window.isShown);
                    if (HasFailure())
                        return;
                }
}

} // namespace
} // namespace glyma::scenario
