#include "platform/simulated/desktop.h"

#include <gmock/gmock.h>

namespace glyma::simulated {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Lets every key pass and remembers what the tap saw.
struct Listener {
    explicit Listener(Desktop& desktop) {
        EXPECT_TRUE(desktop.tap.start([this](const KeyEvent& event) {
            events.push_back(event);
            return Verdict::pass;
        }));
    }
    std::string typed() const {
        std::string text;
        for (const auto& event : events)
            if (event.type == KeyEvent::Type::keyDown)
                text += event.text.empty() ? "_" : event.text;
        return text;
    }
    std::vector<KeyEvent> events;
};

TEST(SimulatedKeyboard, TypesWhatTheLayoutSays) {
    struct Case {
        const KeyboardLayout& layout;
        std::string text;
        std::string seenByTap; ///< "_" for a dead key
    };
    const Case cases[] = {
        {KeyboardLayout::us(), ":smile A?", ":smile A?"},
        {KeyboardLayout::german(), ":Zähne {é^", ":Zähne {_é_^"},
        {KeyboardLayout::russian(), ":смех", ":смех"},
    };
    for (const bool capsLock : {false, true})
        for (const auto& [layout, text, seen] : cases) {
            Desktop desktop;
            desktop.keyboard.setLayout(layout);
            desktop.keyboard.setCapsLock(capsLock);
            Listener listener(desktop);
            auto& editor = desktop.open("editor");
            desktop.type(text);
            EXPECT_EQ(editor.text(), text) << layout.name << " " << capsLock;
            EXPECT_EQ(listener.typed(), seen);
            EXPECT_THAT(desktop.faults(), IsEmpty());
        }
}

TEST(SimulatedKeyboard, TellsModifiersLocksAndRepeats) {
    Desktop desktop;
    Listener listener(desktop);
    desktop.open("editor");
    desktop.keyboard.setNumLock(false);
    desktop.press(key::keypad1);
    desktop.press(key::z, modifier::control | modifier::shift);
    desktop.holdDown(key::a, 2);
    std::vector<std::uint64_t> flags;
    for (const auto& event : listener.events)
        flags.push_back(event.flags);
    const auto both = modifier::control | modifier::shift;
    EXPECT_THAT(flags, ElementsAre(0, modifier::shift, both, both, modifier::control, 0, 0, 0, 0));
    EXPECT_EQ(listener.events.front().text, "");
    EXPECT_TRUE(listener.events.back().isAutorepeat);
    desktop.type("й");
    EXPECT_THAT(desktop.faults(), SizeIs(1)) << "no key of the layout types it";
}

TEST(SimulatedTap, RecordsAVerdictThatWasNotAnnounced) {
    Desktop desktop;
    auto verdict = Verdict::consume;
    ASSERT_TRUE(desktop.tap.start(
        [&](const KeyEvent& event) { return event.keyCode == keycode::escape ? verdict : Verdict::pass; }));
    auto& editor = desktop.open("editor");
    desktop.press(keycode::escape);
    EXPECT_THAT(desktop.faults(), SizeIs(1)) << "consumed, not claimed";
    desktop.tap.claim({false, true, std::nullopt});
    desktop.press(keycode::escape);
    EXPECT_THAT(desktop.faults(), SizeIs(1));
    EXPECT_EQ(editor.keysFromUser(), "");
    verdict = Verdict::pass;
    desktop.press(keycode::escape);
    EXPECT_THAT(desktop.faults(), SizeIs(2)) << "claimed, not consumed";
    EXPECT_EQ(editor.keysFromUser(), "<Escape>");
}

TEST(SimulatedApplication, EditsAsItsMannerSays) {
    Desktop desktop;
    auto manner = lateKeys(2ms);
    manner.completions = {{"sm", "ile"}};
    auto& editor = desktop.open("editor", manner);
    desktop.keyInterval = 0us;
    editor.setText("a👨‍👩‍👧e");
    desktop.press(keycode::backspace);
    EXPECT_EQ(editor.textWithCaret(), "a👨‍👩‍👧e|") << "the key has not arrived yet";
    desktop.advance(2ms);
    EXPECT_EQ(editor.textWithCaret(), "a👨‍👩‍👧|");
    desktop.press(keycode::backspace);
    desktop.advance(2ms);
    EXPECT_EQ(editor.textWithCaret(), "a|") << "one press, one character";
    desktop.type(" sm");
    desktop.advance(2ms);
    EXPECT_EQ(editor.textWithCaret(), "a sm|ile|");
    editor.setHung(true);
    desktop.type("x");
    desktop.advance(1s);
    EXPECT_EQ(editor.text(), "a smile");
    editor.setHung(false);
    EXPECT_EQ(editor.textWithCaret(), "a smx|");
}

TEST(SimulatedApplication, PastesOnItsOwnChordOnly) {
    Desktop desktop;
    desktop.clipboard.setText("pasted");
    desktop.primarySelection.setText("primary");
    auto& shell = desktop.open("terminal", terminal());
    const KeyChord chords[] = {controlV, {keycode::backspace, 0}, controlShiftV, shiftInsert};
    EXPECT_TRUE(desktop.inject(chords));
    desktop.advance(20ms);
    EXPECT_EQ(shell.text(), "^pastedprimary") << "Control+V types ^V, the backspace takes the V";
    EXPECT_EQ(shell.keysInjected(), "<Control+V><BackSpace><Control+Shift+V><Shift+Insert>");
    EXPECT_EQ(shell.keysFromUser(), "");
}

TEST(SimulatedAccessibility, AnswersInTheMannerOfTheApplication) {
    Desktop desktop;
    auto& editor = desktop.open("editor");
    editor.setText("a😄b");
    auto& bus = desktop.accessibility;
    const auto focused = bus.attributeValue(bus.systemWide(), attribute::focusedElement);
    ASSERT_TRUE(focused);
    const auto field = std::get<ElementReference>(*focused);
    EXPECT_EQ(std::get<TextRange>(*bus.attributeValue(field, attribute::selectedTextRange)),
              (TextRange{4, 0}));
    ASSERT_TRUE(bus.setAttributeValue(field, attribute::selectedTextRange, TextRange{1, 2}));
    EXPECT_EQ(std::get<std::string>(*bus.attributeValue(field, attribute::selectedText)), "😄");
    ASSERT_TRUE(bus.setAttributeValue(field, attribute::selectedText, std::string("new")));
    EXPECT_EQ(editor.textWithCaret(), "anew|b");
    EXPECT_EQ(bus.parameterizedValue(field, attribute::stringForRange, TextRange{2, 9}).error(),
              AccessibilityError::noValue);

    auto& shell = desktop.open("terminal", terminal());
    EXPECT_FALSE(bus.attributeValue(bus.systemWide(), attribute::focusedElement));
    const auto process = bus.application(shell.identity().process);
    EXPECT_FALSE(bus.attributeValue(process, attribute::focusedElement));
    EXPECT_EQ(bus.attributeValue(bus.application(1), attribute::focusedElement).error(),
              AccessibilityError::failed);
}

TEST(SimulatedAccessibility, LeavesAHungApplicationAlone) {
    Desktop desktop;
    auto& editor = desktop.open("editor");
    auto& bus = desktop.accessibility;
    const auto field = SimulatedAccessibility::fieldOf(editor, 0);
    editor.setHung(true);
    const auto before = desktop.clock.elapsed();
    EXPECT_EQ(bus.attributeValue(field, attribute::value).error(), AccessibilityError::timedOut);
    EXPECT_EQ(desktop.clock.elapsed() - before, 150ms);
    EXPECT_EQ(bus.attributeValue(field, attribute::value).error(), AccessibilityError::timedOut);
    EXPECT_EQ(desktop.clock.elapsed() - before, 150ms) << "answered at once";
    editor.setHung(false);
    desktop.advance(2s);
    EXPECT_TRUE(bus.attributeValue(field, attribute::value));
    bus.failFromCall(2);
    EXPECT_TRUE(bus.attributeValue(field, attribute::value));
    EXPECT_FALSE(bus.attributeValue(field, attribute::value));
}

TEST(SimulatedDesktop, TellsOfTheFrontApplicationOnTheMainQueue) {
    Desktop desktop;
    std::vector<FrontApplication> heard;
    auto subscription = desktop.observe([&](const FrontApplication& front) { heard.push_back(front); });
    auto& first = desktop.open("first");
    auto& second = desktop.open("");
    EXPECT_EQ(desktop.current(), second.identity());
    EXPECT_THAT(heard, IsEmpty());
    desktop.advance(0ms);
    desktop.close(second);
    desktop.advance(0ms);
    EXPECT_THAT(heard, ElementsAre(first.identity(), second.identity(), first.identity()));
    EXPECT_EQ(heard[1].identifier, std::nullopt);
}

} // namespace
} // namespace glyma::simulated
