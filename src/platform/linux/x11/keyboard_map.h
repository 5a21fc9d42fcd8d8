#pragma once

#include "platform/key_event.h"
#include "platform/linux/x11/connection.h"

#include <xkbcommon/xkbcommon.h>

#include <array>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace glyma::x11 {

struct Unreference {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
    void operator()(xkb_state* state) const { xkb_state_unref(state); }
};
using Context = std::unique_ptr<xkb_context, Unreference>;
using Keymap = std::unique_ptr<xkb_keymap, Unreference>;
using State = std::unique_ptr<xkb_state, Unreference>;

/// Shift, Lock, Control and Mod1 to Mod5 as the X protocol numbers their bits.
using ModifierMask = std::uint8_t;

/// The server's keyboard as it is now: what each key means, and what the eight modifiers of the protocol
/// stand for. Not thread-safe, not even for reading.
class KeyboardMap {
public:
    static std::expected<KeyboardMap, std::string> load(const Connection& connection);

    /// The canonical code of a key: what it does when it acts (so a Caps Lock made an Escape is an Escape,
    /// and the keypad without Num Lock gives arrows), else where it is.
    std::uint16_t code(xkb_keycode_t key, ModifierMask modifiers, xkb_layout_index_t layout) const;
    /// Whether some combination of modifiers and layout gives the key this code.
    bool mayHaveCode(xkb_keycode_t key, std::uint16_t code) const;
    /// `modifier` bits of KeyEvent::flags.
    std::uint64_t flags(ModifierMask modifiers) const;
    /// The modifiers that some key produces; the others are never set.
    ModifierMask usedModifiers() const { return used_; }

    /// Keys that produce a modifier while they are held: Shift, Control, Alt, Super, AltGr, not Caps and Num
    /// Lock.
    bool isHeldModifier(xkb_keycode_t key) const;
    /// Every key whose press changes what the others type, locks and layout switches too.
    bool shifts(xkb_keycode_t key) const;
    /// Whether an application or the window manager may act on this key's release (Alt opens menus, Super
    /// overviews).
    bool actsAlone(xkb_keycode_t key) const;
    /// The key that produces this keysym without modifiers: in the given layout, else in any.
    std::optional<xcb_keycode_t> keyFor(xkb_keysym_t keysym, xkb_layout_index_t layout) const;
    /// The key to press for a canonical code: by what it types, so that V is V on a Dvorak keyboard, else by
    /// place.
    std::optional<xcb_keycode_t> keyForCode(std::uint16_t code, xkb_layout_index_t layout) const;
    /// The keys to hold for `modifier` bits; a modifier that no key produces is left out.
    std::vector<xcb_keycode_t> keysForFlags(std::uint64_t flags) const;
    /// A key that means nothing to anybody, absent when every key has a meaning.
    std::optional<xcb_keycode_t> meaninglessKey() const;

    xkb_keymap* keymap() const { return keymap_.get(); }
    xkb_keycode_t firstKey() const { return xkb_keymap_min_keycode(keymap_.get()); }
    xkb_keycode_t lastKey() const;

private:
    KeyboardMap(Keymap keymap, State probe)
        : keymap_(std::move(keymap))
        , probe_(std::move(probe)) {}
    void readModifiers(const Connection& connection);
    bool produces(xkb_keycode_t key, std::initializer_list<xkb_keysym_t> keysyms) const;
    std::vector<xkb_keysym_t> keysyms(xkb_keycode_t key) const;

    Keymap keymap_;
    State probe_;
    std::array<std::vector<xcb_keycode_t>, 8> keysOfModifier_;
    ModifierMask used_ = 0;
    ModifierMask alt_ = 0;
    ModifierMask super_ = 0;
    ModifierMask locks_ = 0;
};

} // namespace glyma::x11
