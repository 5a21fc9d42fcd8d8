#pragma once

#include "platform/key_event.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace glyma::simulated {

/// Canonical codes of further keys that scenarios press.
namespace key {
inline constexpr std::uint16_t a = 0;
inline constexpr std::uint16_t z = 6;
using keycode::tab;
inline constexpr std::uint16_t space = 49;
inline constexpr std::uint16_t forwardDelete = 117;
inline constexpr std::uint16_t pageUp = 116;
inline constexpr std::uint16_t pageDown = 121;
inline constexpr std::uint16_t f1 = 122;
inline constexpr std::uint16_t keypad1 = 83;
inline constexpr std::uint16_t keypad8 = 91;
/// A key of its own that types an emoji, as some keyboards have one.
inline constexpr std::uint16_t emoji = 200;
} // namespace key

/// What the keys of a keyboard type: two shift levels, and two more with AltGr.
struct KeyboardLayout {
    std::string_view name;
    /// One character a key, in the order of the rows of the keyboard; U+0000 types nothing.
    std::u32string_view plain;
    std::u32string_view shift;
    std::u32string_view altGr;
    /// Those that wait for the next key.
    std::u32string_view deadKeys;

    static const KeyboardLayout& us();
    static const KeyboardLayout& german();
    static const KeyboardLayout& russian();
};

/// How a character is typed.
struct Stroke {
    std::uint16_t keyCode = 0;
    bool shift = false;
    bool altGr = false;
    bool isDeadKey = false;
    char32_t character = 0;
};

/// What the key types at a level, before Caps Lock.
std::optional<Stroke> strokeOf(const KeyboardLayout& layout, std::uint16_t keyCode, bool shift, bool altGr);
/// The stroke that types the character, dead keys included only when asked for.
std::optional<Stroke> strokeFor(const KeyboardLayout& layout, char32_t character, bool asDeadKey = false);

/// A dead key and the character after it, composed.
std::optional<char32_t> compose(char32_t deadKey, char32_t character);
/// The dead key and character that compose to this one.
std::optional<std::pair<char32_t, char32_t>> decompose(char32_t character);

} // namespace glyma::simulated
