#include "road.h"

namespace glyma::scenario {
namespace {

using simulated::KeyboardLayout;
using simulated::ModifierKey;
using testing::Contains;
using testing::IsEmpty;
namespace key = simulated::key;

class KeyboardRoad : public Road {
protected:
    void SetUp() override {
        Road::SetUp();
        editor = &desktop.open("editor");
        settle();
    }
    /// Another editor, whose text cannot be read.
    void openSilentEditor() {
        editor = &desktop.open("editor", simulated::silent());
        settle();
    }
    simulated::Application* editor = nullptr;
};

TEST_F(KeyboardRoad, FollowsEveryLayoutAndLock) {
    struct Case {
        const char* what;
        const KeyboardLayout& layout;
        bool capsLock;
        std::string typed;
        std::string inserted;
    };
    const Case cases[] = {
        {"us", KeyboardLayout::us(), false, ":euro", "€"},
        {"Caps Lock", KeyboardLayout::us(), true, ":euro", "€"},
        {"capitals", KeyboardLayout::us(), true, ":EURO", "€"},
        {"umlaut", KeyboardLayout::german(), false, ":währung", "€"},
        {"dead key in the query", KeyboardLayout::german(), false, ":caf\u00E9 menu", ""},
        {"dead key first", KeyboardLayout::german(), false, ":\u00E9toile", ""},
        {"AltGr first", KeyboardLayout::german(), false, ":€", ""},
        {"Cyrillic", KeyboardLayout::russian(), false, ":жук", "Ж"},
    };
    for (const auto& [what, layout, capsLock, typed, inserted] : cases) {
        SCOPED_TRACE(what);
        desktop.keyboard.setLayout(layout);
        desktop.keyboard.setCapsLock(capsLock);
        desktop.keyboard.setNumLock(!capsLock);
        editor->setText("");
        editor->forgetKeys();
        desktop.type(typed);
        EXPECT_EQ(picker.query(), typed.substr(1));
        EXPECT_TRUE(window.isShown);
        EXPECT_EQ(editor->text(), typed);
        if (inserted.empty())
            desktop.press(keycode::escape);
        else
            desktop.press(keycode::returnKey);
        settle();
        EXPECT_EQ(editor->text(), inserted.empty() ? typed : inserted);
    }
}

TEST_F(KeyboardRoad, TakesOnlyItsOwnKeys) {
    openSilentEditor();
    desktop.type("Up: ");
    for (const auto code :
         {keycode::up, keycode::down, keycode::returnKey, keycode::escape, keycode::keypadEnter})
        desktop.press(code);
    EXPECT_EQ(editor->keysFromUser(), "Up: <Up><Down><Return><Escape><Enter>") << "closed: everything passes";
    EXPECT_THAT(desktop.consumedKeys(), IsEmpty());
    editor->forgetKeys();

    desktop.type(":x");
    for (const auto code : {keycode::up, keycode::down, key::tab, key::pageDown, key::forwardDelete})
        desktop.press(code);
    desktop.type(" y");
    EXPECT_EQ(picker.query(), "x y");
    EXPECT_EQ(editor->keysFromUser(), ":x<Tab><PageDown><Delete> y");
    desktop.press(keycode::returnKey);
    EXPECT_FALSE(window.isShown) << "consumed with nothing found, too";
    EXPECT_EQ(editor->keysFromUser(), ":x<Tab><PageDown><Delete> y");
    EXPECT_THAT(desktop.consumedKeys(), testing::ElementsAre(keycode::up, keycode::down, keycode::returnKey));
}

TEST_F(KeyboardRoad, ClosesWhenKeysCannotTellTheQueryAnyLonger) {
    openSilentEditor();
    struct Case {
        std::uint16_t keyCode;
        std::uint64_t flags;
        bool reachesApplication;
    };
    const Case cases[] = {
        {keycode::left, 0, true},
        {keycode::home, modifier::shift, true},
        {key::z, modifier::control, true},
        {keycode::backspace, modifier::control, true},
        {keycode::backspace, modifier::option, true},
        {key::a, modifier::option, true},
        {keycode::escape, 0, false},
    };
    for (const auto& [keyCode, heldFlags, reachesApplication] : cases) {
        SCOPED_TRACE(keyCode);
        desktop.type(":sm");
        ASSERT_TRUE(window.isShown);
        editor->forgetKeys();
        desktop.press(keyCode, heldFlags);
        EXPECT_FALSE(window.isShown);
        EXPECT_FALSE(monitor.isPanelVisible());
        EXPECT_EQ(editor->received().size(), reachesApplication ? 1U : 0U);
        desktop.type("x");
        EXPECT_FALSE(window.isShown);
    }
}

TEST_F(KeyboardRoad, DeletingBackToTheTriggerLetsTheUserStartOver) {
    desktop.type("mail:sm");
    desktop.press(keycode::backspace);
    EXPECT_EQ(picker.query(), "s");
    desktop.press(keycode::backspace);
    EXPECT_FALSE(window.isShown);
    EXPECT_TRUE(monitor.isPendingTrigger());
    choose("heart");
    EXPECT_EQ(editor->text(), "mail❤️");
}

TEST_F(KeyboardRoad, OpensAtTheCaretOrAtThePointer) {
    editor->setText("one\ntwo");
    desktop.type(":s");
    ASSERT_EQ(window.carets.size(), 1U);
    const auto caret = editor->caret();
    EXPECT_EQ(window.carets[0], (Rect{caret.x - 8, caret.y, 8, 18})) << "the character before the caret";
    EXPECT_EQ(window.frame().y, caret.y + 20 + 4);
    desktop.press(keycode::escape);

    desktop.open("terminal", simulated::terminal());
    settle();
    desktop.screens.pointer = {700, 500};
    desktop.type(":s");
    EXPECT_EQ(window.carets.back(), (Rect{700, 484, 1, 16}));
}

TEST_F(KeyboardRoad, HoldingReturnInsertsOnce) {
    desktop.type(":smil");
    desktop.holdDown(keycode::returnKey, 5);
    settle();
    EXPECT_EQ(editor->text(), "😄");
    EXPECT_EQ(editor->keysFromUser(), ":smil");
}

TEST_F(KeyboardRoad, SeesKeysAgainAfterTheTapWasDisabled) {
    desktop.tap.disableByTimeout();
    desktop.type("x:smil");
    EXPECT_EQ(picker.query(), "smil");
}

TEST_F(KeyboardRoad, ServesTheShortcutWhileItIsNotBeingRecorded) {
    const auto chord = modifier::control | modifier::command;
    preferences.setCharacterInfoShortcut(GlobalShortcut{key::z, chord, "Ctrl+Super+Z"});
    desktop.press(key::z, chord);
    EXPECT_THAT(editor->received(), IsEmpty());
    flags.isRecordingShortcut = true;
    desktop.press(key::z, chord);
    EXPECT_EQ(editor->received().size(), 1U);
    flags.isRecordingShortcut = false;
    flags.isCharacterInfoShowing = true;
    desktop.press(keycode::escape);
    EXPECT_EQ(editor->received().size(), 1U);
    flags.isCharacterInfoShowing = false;
    desktop.press(keycode::escape);
    EXPECT_EQ(editor->received().size(), 2U);
}

TEST_F(KeyboardRoad, WritesNoTypedTextIntoTheLog) {
    debug.setDebugLogsEnabled(true);
    choose(":secret");
    desktop.press(keycode::escape);
    openSilentEditor();
    desktop.type(":se");
    desktop.press(keycode::backspace);
    desktop.type("ecret");
    desktop.press(keycode::escape);
    choose(":smil");
    bool sawChoice = false;
    for (const auto& line : desktop.log.lines()) {
        EXPECT_THAT(line,
                    testing::Not(testing::AnyOf(testing::HasSubstr("ecret"), testing::HasSubstr("smil"))));
        sawChoice |= line ==
                     "didSelect: queryBuffer=\"xxxx\" (4 chars), keystrokeCount=4, isKeystrokeMode=true, "
                     "deleteCount=5";
    }
    EXPECT_TRUE(sawChoice);
    EXPECT_THAT(desktop.log.lines(), Contains("Glyma: [tap] firstChar=\"x\" scalars=1 visible=true"));
    EXPECT_THAT(desktop.log.lines(), Contains("Glyma: [showPanel] isKeystrokeMode=true app=editor"));
}

} // namespace
} // namespace glyma::scenario
