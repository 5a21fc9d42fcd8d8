#include "road.h"

namespace glyma::scenario {
namespace {

using simulated::KeyboardLayout;
using simulated::Manner;
using simulated::ModifierKey;
using testing::IsEmpty;

/// The user does not wait for an insertion to end.
class TypingOn : public Road {
protected:
    void SetUp() override {
        Road::SetUp();
        editor = &desktop.open("editor");
        settle();
        desktop.keyInterval = 3ms;
    }
    /// "\n" is Return.
    std::string resultOf(const std::string& typed) {
        editor->setText("");
        editor->forgetKeys();
        desktop.type(typed);
        settle();
        EXPECT_FALSE(desktop.isTypingHeld());
        return editor->text();
    }
    simulated::Application* editor = nullptr;
};

TEST_F(TypingOn, WhatFollowsAChoiceStandsBehindIt) {
    auto selectsLate = simulated::wellBehaved();
    selectsLate.selectionLag = 30ms;
    auto refusesReplacement = simulated::wellBehaved();
    refusesReplacement.setSelectedText = simulated::Response::refuses;
    auto pastesLate = simulated::silent();
    pastesLate.pasteLag = 120ms;
    const std::pair<const char*, Manner> manners[] = {
        {"well-behaved", simulated::wellBehaved()},
        {"tells nothing", simulated::silent()},
        {"terminal", simulated::terminal()},
        {"takes the text and does nothing", simulated::ignoresReplacement()},
        {"has its value set only", simulated::valueOnly()},
        {"selects late", selectsLate},
        {"refuses the text", refusesReplacement},
        {"answers slowly", simulated::slow(40ms)},
        {"acts on keys late", simulated::lateKeys(12ms)},
        {"asks late for what is pasted", pastesLate},
    };
    for (const auto& [what, manner] : manners)
        for (const auto interval : {1ms, 5ms, 40ms}) {
            SCOPED_TRACE(testing::Message() << what << " every " << interval.count() << " ms");
            editor = &desktop.open(manner.primaryPasteChords.empty() ? "editor" : "xterm", manner);
            settle();
            desktop.keyInterval = interval;
            EXPECT_EQ(resultOf("x:smil\n and"), "x😄 and");
            EXPECT_EQ(editor->keysFromUser(), "x:smil and") << "each key once";
        }
}

TEST_F(TypingOn, TenChoicesInARow) {
    for (const auto& manner :
         {simulated::wellBehaved(), simulated::silent(), simulated::ignoresReplacement()})
        for (const auto interval : {1ms, 10ms, 60ms}) {
            SCOPED_TRACE(interval.count());
            editor = &desktop.open("editor", manner);
            settle();
            desktop.keyInterval = interval;
            std::string typed, expected;
            for (int choice = 0; choice < 5; ++choice) {
                typed += "so :smil\n and :heart\n, ";
                expected += "so 😄 and ❤️, ";
            }
            desktop.type(typed);
            desktop.advance(10s);
            EXPECT_EQ(editor->text(), expected);
            EXPECT_THAT(desktop.consumedKeys(), testing::Each(keycode::returnKey));
            EXPECT_FALSE(desktop.isTypingHeld());
        }
    EXPECT_EQ(desktop.consumedKeys().size(), 90U);
}

// The navigation keys of the next picker wait with the rest, and are its own when their turn comes.
TEST_F(TypingOn, TheNextPickerGetsItsKeysFromTheQueue) {
    desktop.type(":smil\n:grin");
    desktop.press(keycode::down);
    desktop.type("\n!\n");
    settle();
    EXPECT_EQ(editor->text(), "😄😀!\n");
    desktop.type(":smil\n:he");
    desktop.press(keycode::escape);
    desktop.press(keycode::left);
    settle();
    EXPECT_EQ(editor->textWithCaret(), "😄😀!\n😄:h|e");
}

TEST_F(TypingOn, KeysComeAsTheyWereTyped) {
    desktop.keyboard.setLayout(KeyboardLayout::german());
    EXPECT_EQ(resultOf(":smil\nA{é²ß"), "😄A{é²ß");
    desktop.keyboard.setCapsLock(true);
    EXPECT_EQ(resultOf(":smil\nAb"), "😄Ab");
    desktop.keyboard.setCapsLock(false);

    // A layout changed after a key, and a modifier let go, change nothing of it.
    editor->setText("");
    desktop.type(":smil\n");
    desktop.hold(ModifierKey::shift);
    desktop.press(simulated::key::a);
    desktop.letGo(ModifierKey::shift);
    desktop.type("z");
    desktop.keyboard.setLayout(KeyboardLayout::russian());
    desktop.type("ж");
    settle();
    EXPECT_EQ(editor->text(), "😄Azж");
}

TEST_F(TypingOn, AHeldKeyDoesNotComeManyTimes) {
    desktop.type(":smil\n");
    desktop.holdDown(simulated::key::a, 0);
    for (int repeat = 0; repeat < 10; ++repeat)
        desktop.repeat(simulated::key::a);
    settle();
    EXPECT_EQ(editor->text(), "😄a");
}

TEST_F(TypingOn, AHangingApplicationHoldsTypingUpForASecondAndAHalf) {
    for (const auto& manner : {simulated::wellBehaved(), simulated::slow(60ms)}) {
        editor = &desktop.open("editor", manner);
        settle();
        desktop.type("x:smil");
        settle();
        editor->setHung(true);
        editor->forgetKeys();
        desktop.type("\n and");
        desktop.advance(1400ms);
        EXPECT_EQ(editor->keysFromUser(), "");
        desktop.advance(200ms);
        EXPECT_EQ(editor->keysFromUser(), " and") << "let go";
        const auto injected = editor->keysInjected();
        desktop.type(" so");
        EXPECT_EQ(editor->keysFromUser(), " and so");
        desktop.advance(20s);
        editor->setHung(false);
        desktop.advance(10s);
        EXPECT_EQ(editor->keysInjected(), injected) << "nothing is done to the text behind what was typed";
        EXPECT_EQ(editor->text(), "x and so😄") << "pasted when the application asked for it at last";
        EXPECT_EQ(desktop.clipboard.text(), "copied before");
    }
}

TEST_F(TypingOn, EveryEndOfAnInsertionLetsTypingGo) {
    EXPECT_EQ(resultOf(":qqqqqq\nok"), ":qqqqqqok") << "nothing to choose";

    desktop.type(":smil\nok");
    auto& other = desktop.open("other");
    settle();
    EXPECT_EQ(other.text(), "ok") << "another application has come to the front";
    desktop.close(other);
    settle();

    desktop.type(":smil\nok");
    monitor.stop();
    settle();
    EXPECT_FALSE(desktop.isTypingHeld());
    ASSERT_TRUE(monitor.start());

    auto& stubborn = desktop.open("stubborn", simulated::ignoresSelection());
    editor = &stubborn;
    settle();
    EXPECT_EQ(resultOf("x:smil\nok"), "x😄ok");
    const auto began = desktop.clock.elapsed();
    desktop.type(":smil\n");
    while (desktop.isTypingHeld())
        desktop.advance(1ms);
    EXPECT_LT(desktop.clock.elapsed() - began, 600ms) << "not only when the time is over";
}

TEST_F(TypingOn, AClickHoldsTypingToo) {
    desktop.type(":smil");
    picker.confirmSelection();
    EXPECT_TRUE(desktop.isTypingHeld());
    desktop.type("ok");
    settle();
    EXPECT_EQ(editor->text(), "😄ok");
}

TEST_F(TypingOn, WhereTheKeyboardCannotBeHadInsertionWorksAsEver) {
    desktop.refuseTypingHolds(true);
    desktop.type(":smil\n");
    EXPECT_FALSE(desktop.isTypingHeld());
    settle();
    EXPECT_EQ(editor->text(), "😄");
}

TEST_F(TypingOn, AStalledProgramLetsTypingGoInTime) {
    desktop.type(":smil");
    settle();
    editor->forgetKeys();
    desktop.clock.stallMainQueue(5s);
    desktop.type("\nok");
    desktop.advance(1600ms);
    EXPECT_EQ(editor->keysFromUser(), "ok");
    desktop.advance(10s);
    EXPECT_EQ(editor->text(), ":smilok") << "what stands before the caret is no longer what was chosen for";
    EXPECT_THAT(editor->keysInjected(), IsEmpty());
}

} // namespace
} // namespace glyma::scenario
