#include "monitor/trigger_machine.h"

#include "unicode/text.h"

#include <algorithm>
#include <span>

namespace glyma {

namespace {

constexpr std::size_t longestText = 8;

struct Row {
    TriggerState state;
    KeyMeaning key;
    Transition transition;
};

using enum TriggerState;
using enum KeyMeaning;

constexpr auto pass = Verdict::pass;
constexpr auto consume = Verdict::consume;

constexpr Row table[] = {
    {idle, trigger, {pending, Effect::rememberSource, pass}},

    {pending, character, {open, Effect::showPanel, pass}},
    {pending, trigger, {open, Effect::showPanel, pass}},
    {pending, deadKey, {pending, Effect::keepPending, pass}},
    {pending, command, {pending, Effect::none, pass}},
    {pending, commandDelete, {pending, Effect::none, pass}},
    {pending, optionDelete, {idle, Effect::none, pass}},
    {pending, optionCharacter, {idle, Effect::none, pass}},

    {open, character, {open, Effect::queryTyped, pass}},
    {open, trigger, {open, Effect::queryTyped, pass}},
    {open, space, {open, Effect::queryTyped, pass}},
    {open, backspace, {open, Effect::queryDeleted, pass}},
    {open, backspaceToTrigger, {pending, Effect::dismissPanel, pass}},
    {open, down, {open, Effect::moveDown, consume}},
    {open, up, {open, Effect::moveUp, consume}},
    {open, choose, {idle, Effect::choose, consume}},
    {open, escape, {idle, Effect::dismissPanel, consume}},
    {open, slipped, {idle, Effect::dismissPanel, pass}},
    {open, moveCaret, {idle, Effect::dismissPanel, pass}},
    {open, command, {idle, Effect::dismissPanel, pass}},
    {open, commandDelete, {idle, Effect::dismissPanel, pass}},
    {open, optionDelete, {idle, Effect::dismissPanel, pass}},
    {open, optionCharacter, {idle, Effect::dismissPanel, pass}},

    {polled, character, {polled, Effect::queryTyped, pass}},
    {polled, trigger, {polled, Effect::queryTyped, pass}},
    {polled, space, {polled, Effect::queryTyped, pass}},
    {polled, backspace, {polled, Effect::queryDeleted, pass}},
    {polled, backspaceToTrigger, {polled, Effect::queryDeleted, pass}},
    {polled, optionDelete, {polled, Effect::queryDisturbed, pass}},
    {polled, tab, {polled, Effect::queryDisturbed, pass}},
    {polled, command, {polled, Effect::queryDisturbed, pass}},
    {polled, commandDelete, {idle, Effect::dismissPanel, pass}},
    {polled, down, {polled, Effect::moveDown, consume}},
    {polled, up, {polled, Effect::moveUp, consume}},
    {polled, choose, {idle, Effect::choose, consume}},
    {polled, escape, {idle, Effect::dismissPanel, consume}},
    {polled, slipped, {idle, Effect::dismissPanel, pass}},
    {polled, moveCaret, {idle, Effect::dismissPanel, pass}},
    {polled, optionCharacter, {idle, Effect::dismissPanel, pass}},
};

// The range in which desktops report keys that type nothing.
bool isFunctionKeyScalar(char32_t scalar) {
    return scalar >= 0xF700 && scalar <= 0xF8FF;
}

bool isVisible(std::string_view text) {
    const auto first = unicode::firstScalar(text);
    return first >= 0x20 && first != 0x7F && !isFunctionKeyScalar(first);
}

// Canonical codes of keys that never compose: an empty text of theirs is no dead key's.
constexpr std::uint16_t silentKeys[] = {
    keycode::insert,
    116,
    117,
    121, // Insert, Page Up, Forward Delete, Page Down
    122,
    120,
    99,
    118,
    96,
    97,
    98,
    100,
    101,
    109,
    103,
    111, // F1 to F12
};
// The keypad's digits and period, which move the caret while Num Lock is off.
constexpr std::uint16_t keypadKeys[] = {82, 83, 84, 85, 86, 87, 88, 89, 91, 92, 65};

bool isOneOf(std::span<const std::uint16_t> keys, std::uint16_t keyCode) {
    return std::ranges::find(keys, keyCode) != keys.end();
}

KeyMeaning meaningOfText(std::uint16_t keyCode, std::string_view text, std::string_view triggerCharacter) {
    if (text.empty()) {
        if (isOneOf(keypadKeys, keyCode))
            return moveCaret;
        return isOneOf(silentKeys, keyCode) ? other : deadKey;
    }
    if (text == triggerCharacter)
        return trigger;
    if (text == " ")
        return space;
    return isVisible(text) ? character : other;
}

} // namespace

std::string typedTextOf(const KeyEvent& event) {
    return std::string(unicode::utf16Substring(event.text, 0, longestText));
}

KeyMeaning meaningOf(const KeyEvent& event, std::string_view text, std::string_view triggerCharacter,
                     bool isLastCharacter) {
    const bool isOption = event.flags & modifier::option;
    if (event.flags & modifier::controlOrCommand)
        return event.keyCode == keycode::backspace ? commandDelete : command;
    if (event.hasReachedApplication &&
        isClaimed({.pickerKeys = true, .escape = false, .shortcut = {}}, event.keyCode, event.flags))
        return slipped;
    switch (event.keyCode) {
    case keycode::backspace:
        return isOption ? optionDelete : isLastCharacter ? backspaceToTrigger : backspace;
    case keycode::up:
        return up;
    case keycode::down:
        return down;
    case keycode::returnKey:
    case keycode::keypadEnter:
        return choose;
    case keycode::escape:
        return escape;
    case keycode::home:
    case keycode::end:
    case keycode::left:
    case keycode::right:
        return moveCaret;
    default:
        break;
    }
    if (isOption)
        return isVisible(text) ? optionCharacter : other;
    if (event.keyCode == keycode::tab)
        return tab;
    return meaningOfText(event.keyCode, text, triggerCharacter);
}

Transition transition(TriggerState state, KeyMeaning key) {
    for (const auto& row : table)
        if (row.state == state && row.key == key)
            return row.transition;
    switch (state) {
    case open:
    case polled:
        return {state, Effect::none, pass};
    case pending:
        return {idle, Effect::clearPending, pass};
    case idle:
        break;
    }
    return {};
}

} // namespace glyma
