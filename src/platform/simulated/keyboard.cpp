#include "platform/simulated/keyboard.h"

#include "unicode/text.h"

namespace glyma::simulated {

namespace {

// What the keypad types with Num Lock on, from key 82.
std::string keypadText(std::uint16_t keyCode, bool numLock) {
    switch (keyCode) {
    case key::keypad1:
        return numLock ? "1" : "";
    case key::keypad8:
        return numLock ? "8" : "";
    default:
        return {};
    }
}

// Keys that type the same in every layout; X11 gives them control characters or nothing.
std::optional<std::string> fixedText(std::uint16_t keyCode) {
    switch (keyCode) {
    case keycode::returnKey:
    case keycode::keypadEnter:
        return "\r";
    case keycode::backspace:
        return "\b";
    case keycode::escape:
        return "\x1B";
    case key::tab:
        return "\t";
    case key::forwardDelete:
        return "\x7F";
    case key::f1:
        return "\uF704";
    case key::emoji:
        return "😄";
    default:
        return std::nullopt;
    }
}

// The letters of the layouts here: their upper-case form is the one on the Shift level of the same key.
bool isLetter(const KeyboardLayout& layout, std::uint16_t keyCode) {
    const auto plain = strokeOf(layout, keyCode, false, false);
    const auto shifted = strokeOf(layout, keyCode, true, false);
    return plain && shifted &&
           unicode::lowercased(unicode::fromScalar(shifted->character)) ==
               unicode::fromScalar(plain->character) &&
           plain->character != shifted->character;
}

} // namespace

std::uint64_t flagOf(ModifierKey key) {
    switch (key) {
    case ModifierKey::shift:
        return modifier::shift;
    case ModifierKey::control:
        return modifier::control;
    case ModifierKey::option:
        return modifier::option;
    case ModifierKey::command:
        return modifier::command;
    case ModifierKey::altGr:
        break;
    }
    return 0;
}

void Keyboard::setHeld(ModifierKey key, bool held) {
    if (held)
        held_.insert(key);
    else
        held_.erase(key);
}

std::uint64_t Keyboard::flags() const {
    std::uint64_t flags = capsLock_ ? modifier::capsLock : 0;
    for (const auto key : held_)
        flags |= flagOf(key);
    return flags;
}

std::string Keyboard::textOf(std::uint16_t keyCode) {
    if (auto text = fixedText(keyCode))
        return *std::move(text);
    const bool shift = isHeld(ModifierKey::shift) != (capsLock_ && isLetter(*layout_, keyCode));
    const auto stroke = strokeOf(*layout_, keyCode, shift, isHeld(ModifierKey::altGr));
    if (!stroke)
        return keypadText(keyCode, numLock_);
    if (waitingDeadKey_) {
        const auto composed = compose(*waitingDeadKey_, stroke->character);
        waitingDeadKey_.reset();
        return composed ? unicode::fromScalar(*composed) : std::string();
    }
    if (stroke->isDeadKey) {
        waitingDeadKey_ = stroke->character;
        return {};
    }
    return unicode::fromScalar(stroke->character);
}

KeyEvent Keyboard::press(std::uint16_t keyCode, bool isAutorepeat) {
    return {KeyEvent::Type::keyDown, keyCode, flags(), isAutorepeat, textOf(keyCode)};
}

KeyEvent Keyboard::flagsChanged() const {
    return {KeyEvent::Type::flagsChanged, keycode::unknown, flags(), false, {}};
}

} // namespace glyma::simulated
