#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace glyma {

/// Canonical key codes: one number for each physical key whatever the desktop calls it. Stored shortcuts use
/// them.
namespace keycode {
inline constexpr std::uint16_t v = 9;
inline constexpr std::uint16_t returnKey = 36;
inline constexpr std::uint16_t tab = 48;
inline constexpr std::uint16_t backspace = 51;
inline constexpr std::uint16_t escape = 53;
inline constexpr std::uint16_t keypadEnter = 76;
inline constexpr std::uint16_t insert = 114;
inline constexpr std::uint16_t home = 115;
inline constexpr std::uint16_t end = 119;
inline constexpr std::uint16_t left = 123;
inline constexpr std::uint16_t right = 124;
inline constexpr std::uint16_t down = 125;
inline constexpr std::uint16_t up = 126;
/// A key that has no canonical code.
inline constexpr std::uint16_t unknown = 0xFFFF;
} // namespace keycode

/// Bits of KeyEvent::flags. A level shift (AltGr) has no bit: what it types is typed text.
namespace modifier {
inline constexpr std::uint64_t capsLock = 0x10000;
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;
inline constexpr std::uint64_t command = 0x100000;
inline constexpr std::uint64_t controlOrCommand = control | command;
inline constexpr std::uint64_t controlOptionOrCommand = control | option | command;
} // namespace modifier

/// One event of the session's keyboard, before any application acts on it.
struct KeyEvent {
    enum class Type { keyDown, flagsChanged, tapDisabledByTimeout };

    Type type = Type::keyDown;
    std::uint16_t keyCode = keycode::unknown;
    /// `modifier` bits, after the event for flagsChanged, before it for keyDown.
    std::uint64_t flags = 0;
    bool isAutorepeat = false;
    /// What the key types, UTF-8: empty for a dead key still composing and for keys that type nothing;
    /// function and navigation keys may carry a control character or U+F700 to U+F8FF.
    std::string text;
    /// It was not kept from the application although it falls under the claims: they came too late for it, or
    /// somebody else has the keyboard. Not told of keys that nobody claims.
    bool hasReachedApplication = false;
    bool operator==(const KeyEvent&) const = default;
};

enum class Verdict { pass, consume };

/// A key with the modifiers that are held with it.
struct KeyChord {
    std::uint16_t keyCode = keycode::unknown;
    std::uint64_t flags = 0;
    bool operator==(const KeyChord&) const = default;
};

/// The keys that the callback would consume if they came now. A desktop where consuming has to be arranged
/// ahead (X11: passive grabs) needs to know; one that asks for a verdict on every key (an input method) does
/// not.
struct KeyClaims {
    /// Up, Down, Return, keypad Enter and Escape, unless Control or Command is held.
    bool pickerKeys = false;
    /// Escape, unless Control, Option or Command is held.
    bool escape = false;
    /// This key with exactly these of Control, Option, Command and Shift, the first press only.
    std::optional<KeyChord> shortcut;
    bool operator==(const KeyClaims&) const = default;
};

/// Whether a key press falls under the claims.
constexpr bool isClaimed(const KeyClaims& claims, std::uint16_t keyCode, std::uint64_t flags) {
    constexpr auto chordFlags = modifier::controlOptionOrCommand | modifier::shift;
    if (claims.shortcut && claims.shortcut->keyCode == keyCode &&
        (claims.shortcut->flags & chordFlags) == (flags & chordFlags))
        return true;
    if (claims.escape && keyCode == keycode::escape && !(flags & modifier::controlOptionOrCommand))
        return true;
    const bool drivesPicker = keyCode == keycode::up || keyCode == keycode::down ||
                              keyCode == keycode::returnKey || keyCode == keycode::keypadEnter ||
                              keyCode == keycode::escape;
    return claims.pickerKeys && drivesPicker && !(flags & modifier::controlOrCommand);
}

} // namespace glyma
