#pragma once

#include <xcb/xproto.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <optional>
#include <string>

namespace glyma::x11 {

/// The canonical code (see keycode in platform/key_event.h) of a key by where it is on the keyboard.
/// \param key  an X key code, as the evdev and libinput drivers number them; unknown ones give
/// keycode::unknown.
std::uint16_t codeAtPosition(xcb_keycode_t key);

/// The X key code of the position that has this canonical code; absent when it has none.
std::optional<xcb_keycode_t> positionOfCode(std::uint16_t code);

/// The keysym that an American keyboard has on this key without modifiers; XKB_KEY_NoSymbol when it has none.
xkb_keysym_t americanKeysym(std::uint16_t code);

/// The canonical code of a key that acts rather than types (Return, arrows, Escape, modifiers and so on), by
/// what it does; absent for every other keysym. The keypad's second meanings are their counterparts: KP_Up is
/// Up.
std::optional<std::uint16_t> codeOfActingKeysym(xkb_keysym_t keysym);

/// The canonical code of a key that gives this keysym now: what it does when it acts, else where it is.
std::uint16_t codeOfPress(xcb_keycode_t key, xkb_keysym_t keysym);

/// What the keysym types, UTF-8; empty for one that types nothing.
std::string textOfKeysym(xkb_keysym_t keysym);

} // namespace glyma::x11
