#include "monitor/monitor_state.h"
#include "platform/simulated/keyboard_layout.h"
#include "platform/simulated/keyboard_tap.h"

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

namespace glyma {
namespace {

using enum TriggerState;
using testing::IsEmpty;

constexpr auto pass = Verdict::pass;
constexpr auto consume = Verdict::consume;

KeyEvent key(std::uint16_t keyCode, const std::string& text = "", std::uint64_t flags = 0) {
    return {KeyEvent::Type::keyDown, keyCode, flags, false, text};
}

KeyEvent typing(const std::string& text, std::uint64_t flags = 0) {
    return key(keycode::unknown, text, flags);
}

KeyEvent repeated(KeyEvent event) {
    event.isAutorepeat = true;
    return event;
}

KeyEvent slipped(KeyEvent event) {
    event.hasReachedApplication = true;
    return event;
}

/// The state behind a tap that compares verdicts with claims.
struct Monitored {
    Monitored() {
        state.setTapRunning(true);
        EXPECT_TRUE(tap.start([this](const KeyEvent& event) {
            last = state.hear(event);
            return last.verdict;
        }));
    }
    ~Monitored() { EXPECT_THAT(tap.disagreements(), IsEmpty()); }

    Verdict press(const KeyEvent& event) { return tap.deliver(event); }
    TriggerState now() const {
        return state.isPanelVisible()     ? (state.isKeystrokeMode() ? open : polled)
               : state.isPendingTrigger() ? pending
                                          : idle;
    }
    void bringTo(TriggerState wanted) {
        if (wanted != idle)
            press(typing(":"));
        if (wanted == open || wanted == polled) {
            press(typing("s"));
            press(typing("m"));
            state.setKeystrokeMode(1, wanted == open);
        }
        ASSERT_EQ(now(), wanted);
    }

    simulated::SimulatedTap tap;
    MonitorState state{tap, "glyma"};
    Heard last;
};

TEST(Trigger, EveryKeyInEveryState) {
    struct Expected {
        TriggerState next;
        Verdict verdict = pass;
        Effect effect = Effect::none;
    };
    struct Case {
        const char* what;
        KeyEvent event;
        Expected fromIdle, fromPending, fromOpen;
    };
    const Expected stays{idle};
    const Expected forgets{idle, pass, Effect::clearPending};
    const Expected opens{open, pass, Effect::showPanel};
    const Expected typed{open, pass, Effect::queryTyped};
    const Expected ignored{open};
    const Expected closes{idle, pass, Effect::dismissPanel};
    const Case cases[] = {
        {"trigger", typing(":"), {pending, pass, Effect::rememberSource}, opens, typed},
        {"letter", typing("x"), stays, opens, typed},
        {"AltGr character", typing("€"), stays, opens, typed},
        {"emoji key", typing("😄"), stays, opens, typed},
        {"several characters on a key", typing("::"), stays, opens, typed},
        {"no-break space", typing("\u00A0"), stays, opens, typed},
        {"space", typing(" "), stays, forgets, typed},
        {"dead key", typing(""), stays, {pending, pass, Effect::keepPending}, ignored},
        {"Tab", key(simulated::key::tab, "\t"), stays, forgets, ignored},
        {"Page Down without text", key(simulated::key::pageDown), stays, forgets, ignored},
        {"F1 in the private range", typing("\uF704"), stays, forgets, ignored},
        {"Forward Delete", key(simulated::key::forwardDelete, "\x7F"), stays, forgets, ignored},
        {"Return", key(keycode::returnKey, "\r"), stays, forgets, {idle, consume, Effect::choose}},
        {"keypad Enter", key(keycode::keypadEnter, "\r"), stays, forgets, {idle, consume, Effect::choose}},
        {"Shift+Return",
         key(keycode::returnKey, "\r", modifier::shift),
         stays,
         forgets,
         {idle, consume, Effect::choose}},
        {"Alt+Return",
         key(keycode::returnKey, "\r", modifier::option),
         stays,
         forgets,
         {idle, consume, Effect::choose}},
        {"Up", key(keycode::up), stays, forgets, {open, consume, Effect::moveUp}},
        {"Down that carries a text",
         key(keycode::down, "x"),
         stays,
         forgets,
         {open, consume, Effect::moveDown}},
        {"Escape", key(keycode::escape, "\x1B"), stays, forgets, {idle, consume, Effect::dismissPanel}},
        {"Return that slipped", slipped(key(keycode::returnKey, "\r")), stays, forgets, closes},
        {"Shift+Down that slipped", slipped(key(keycode::down, "", modifier::shift)), stays, forgets, closes},
        {"Escape that slipped", slipped(key(keycode::escape, "\x1B")), stays, forgets, closes},
        {"Left", key(keycode::left), stays, forgets, closes},
        {"End that carries a text", key(keycode::end, "x"), stays, forgets, closes},
        {"keypad 1 without Num Lock", key(simulated::key::keypad1), stays, forgets, closes},
        {"keypad 1 with Num Lock", key(simulated::key::keypad1, "1"), stays, opens, typed},
        {"backspace", key(keycode::backspace, "\b"), stays, forgets, {open, pass, Effect::queryDeleted}},
        {"Ctrl+Z", typing("z", modifier::control), stays, {pending}, closes},
        {"Super+trigger", typing(":", modifier::command), stays, {pending}, closes},
        {"Ctrl+Return", key(keycode::returnKey, "\r", modifier::control), stays, {pending}, closes},
        {"Ctrl+Backspace", key(keycode::backspace, "\b", modifier::control), stays, {pending}, closes},
        {"Alt+Backspace", key(keycode::backspace, "\b", modifier::option), stays, {idle}, closes},
        {"Alt+letter, a menu", typing("f", modifier::option), stays, {idle}, closes},
        {"Alt+trigger", typing(":", modifier::option), stays, {idle}, closes},
        {"Alt+Tab", key(simulated::key::tab, "\t", modifier::option), stays, forgets, ignored},
    };
    // What may have changed the text is read there instead of closing the picker.
    const Expected disturbed{polled, pass, Effect::queryDisturbed};
    const std::map<std::string, Expected> polledDiffers = {
        {"Ctrl+Z", disturbed},        {"Super+trigger", disturbed}, {"Ctrl+Return", disturbed},
        {"Alt+Backspace", disturbed}, {"Tab", disturbed},
    };
    const auto fromPolled = [&](const std::string& what, Expected likeOpen) {
        if (const auto found = polledDiffers.find(what); found != polledDiffers.end())
            return found->second;
        likeOpen.next = likeOpen.next == open ? polled : likeOpen.next;
        return likeOpen;
    };
    for (const auto& [what, event, fromIdle, fromPending, fromOpen] : cases)
        for (const auto& [state, expected] :
             std::map<TriggerState, Expected>{{idle, fromIdle},
                                              {pending, fromPending},
                                              {open, fromOpen},
                                              {polled, fromPolled(what, fromOpen)}}) {
            SCOPED_TRACE(std::string(what) + " in state " + std::to_string(static_cast<int>(state)));
            Monitored monitored;
            monitored.bringTo(state);
            EXPECT_EQ(monitored.press(event), expected.verdict);
            EXPECT_EQ(monitored.now(), expected.next);
            EXPECT_EQ(monitored.last.effect, expected.effect);
        }
}

TEST(Trigger, DeletingBackToTheTriggerLeavesItPending) {
    Monitored monitored;
    monitored.bringTo(open);
    const auto backspace = key(keycode::backspace, "\b");
    monitored.press(backspace);
    EXPECT_EQ(monitored.last.typed.query(), "s");
    monitored.press(backspace);
    EXPECT_EQ(monitored.now(), pending);
    EXPECT_EQ(monitored.last.effect, Effect::dismissPanel);
    monitored.press(typing("h"));
    EXPECT_EQ(monitored.now(), open);
    EXPECT_EQ(monitored.last.typed, TypedText("h"));
    EXPECT_EQ(monitored.last.showing, 2);
    monitored.press(backspace);
    monitored.press(repeated(backspace));
    EXPECT_EQ(monitored.now(), idle) << "the trigger itself is gone";
}

TEST(Trigger, CountsTheCharactersARepeatedKeyTypes) {
    Monitored monitored;
    monitored.bringTo(open);
    const auto backspace = key(keycode::backspace, "\b");
    for (int i = 0; i < 3; ++i)
        monitored.press(repeated(typing("m")));
    EXPECT_EQ(monitored.last.typed.query(), "sm");
    EXPECT_EQ(monitored.last.typed.keystrokeCount(), 5);
    for (int i = 0; i < 3; ++i)
        monitored.press(backspace);
    EXPECT_EQ(monitored.last.typed.query(), "sm");
    EXPECT_EQ(monitored.last.typed.keystrokeCount(), 2);
    monitored.press(typing("👍"));
    monitored.press(typing("🏽"));
    EXPECT_EQ(monitored.last.typed.keystrokeCount(), 4);
    monitored.press(backspace);
    EXPECT_EQ(monitored.last.typed.query(), "sm") << "one character, though two keys typed it";
}

TEST(Trigger, LooksAtEightUnitsOfAKeysText) {
    Monitored monitored;
    monitored.bringTo(pending);
    monitored.press(typing("1234567😄"));
    EXPECT_EQ(monitored.last.typed.query(), "1234567") << "no half of a pair";
}

TEST(Trigger, StaysSilentInExcludedApplicationsAndItsOwnWindows) {
    Monitored monitored;
    TapSettings settings;
    settings.trigger = "~";
    settings.excludedApplications = {"xterm"};
    monitored.state.setSettings(settings);
    const auto opensIn = [&](const std::optional<std::string>& identifier) {
        monitored.state.setFront({identifier, 1});
        monitored.press(typing("~"));
        monitored.press(typing("a"));
        const bool isOpen = monitored.now() == open;
        monitored.press(key(keycode::left));
        return isOpen;
    };
    EXPECT_TRUE(opensIn("editor"));
    EXPECT_TRUE(opensIn(std::nullopt));
    EXPECT_FALSE(opensIn("xterm"));
    EXPECT_FALSE(opensIn("glyma"));
    settings.isTestFieldFocused = true;
    settings.excludedApplications = {};
    monitored.state.setSettings(settings);
    EXPECT_TRUE(opensIn("glyma"));
    EXPECT_TRUE(opensIn("xterm"));

    monitored.state.setFront({"editor", 1});
    monitored.press(typing("~"));
    settings.excludedApplications = {"editor"};
    monitored.state.setSettings(settings);
    monitored.press(typing("c", modifier::control));
    EXPECT_EQ(monitored.now(), pending);
    monitored.press(typing("a"));
    EXPECT_EQ(monitored.now(), idle);
}

TEST(Trigger, ServesTheCharacterInformation) {
    Monitored monitored;
    TapSettings settings;
    const auto chord = modifier::control | modifier::option;
    settings.shortcut = KeyChord{34, chord};
    settings.isCharacterInfoShowing = true;
    monitored.state.setSettings(settings);

    EXPECT_EQ(monitored.press(key(34, "i", chord | modifier::capsLock)), consume);
    EXPECT_EQ(monitored.last.effect, Effect::showCharacterInfo);
    EXPECT_EQ(monitored.press(repeated(key(34, "i", chord))), consume)
        << "its repeats would reach the target";
    EXPECT_EQ(monitored.last.effect, Effect::none);
    EXPECT_EQ(monitored.press(key(34, "i", chord | modifier::shift)), pass) << "another chord";

    EXPECT_EQ(monitored.press(key(keycode::escape, "", modifier::option)), pass);
    EXPECT_EQ(monitored.press(key(keycode::escape, "", modifier::shift)), consume);
    EXPECT_EQ(monitored.last.effect, Effect::closeCharacterInfo);
    monitored.bringTo(open);
    EXPECT_EQ(monitored.press(key(keycode::escape)), consume);
    EXPECT_EQ(monitored.now(), open) << "the panel goes first";
    monitored.state.setSettings({});
    EXPECT_EQ(monitored.press(key(keycode::escape)), consume);
    EXPECT_EQ(monitored.now(), idle);
    EXPECT_EQ(monitored.press(repeated(key(keycode::escape))), consume) << "the picker's Escape, still held";
    EXPECT_EQ(monitored.press(key(keycode::escape)), pass);
    EXPECT_EQ(monitored.press(key(34, "i", chord)), pass);
}

TEST(Trigger, ClosingOnePickerLeavesTheNextOneOpen) {
    Monitored monitored;
    monitored.bringTo(open);
    const auto first = monitored.state.openShowing();
    ASSERT_TRUE(first);
    monitored.press(key(keycode::returnKey));
    EXPECT_EQ(monitored.state.openShowing(), std::nullopt);
    monitored.bringTo(open);
    monitored.state.close(*first);
    EXPECT_EQ(monitored.now(), open);
    EXPECT_TRUE(monitored.tap.claims().pickerKeys);
    monitored.state.close(*first + 1);
    EXPECT_EQ(monitored.now(), idle);
    EXPECT_FALSE(monitored.tap.claims().pickerKeys);
}

} // namespace
} // namespace glyma
