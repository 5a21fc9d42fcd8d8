#include "platform/linux/x11/keyboard_map.h"

#include "platform/linux/x11/key_codes.h"
#include "platform/message.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <span>

namespace glyma::x11 {

namespace {

constexpr ModifierMask shiftMask = XCB_MOD_MASK_SHIFT;
constexpr ModifierMask lockMask = XCB_MOD_MASK_LOCK;
constexpr ModifierMask controlMask = XCB_MOD_MASK_CONTROL;
constexpr int modifierCount = 8;

} // namespace

std::expected<KeyboardMap, std::string> KeyboardMap::load(const Connection& connection) {
    const Context context(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES));
    const auto device = xkb_x11_get_core_keyboard_device_id(connection.get());
    Keymap keymap(device < 0 ? nullptr
                             : xkb_x11_keymap_new_from_device(context.get(), connection.get(), device,
                                                              XKB_KEYMAP_COMPILE_NO_FLAGS));
    State probe(keymap ? xkb_state_new(keymap.get()) : nullptr);
    if (!probe)
        return std::unexpected(
            Message::tr(
                "The keyboard layout cannot be read from the X server. Set one with setxkbmap, then start "
                "Glyma again.")
                .english());
    KeyboardMap map(std::move(keymap), std::move(probe));
    map.readModifiers(connection);
    return map;
}

void KeyboardMap::readModifiers(const Connection& connection) {
    const auto reply = owned(xcb_get_modifier_mapping_reply(
        connection.get(), xcb_get_modifier_mapping(connection.get()), nullptr));
    if (!reply)
        return;
    const std::size_t perModifier = reply->keycodes_per_modifier;
    const std::span table(xcb_get_modifier_mapping_keycodes(reply.get()), perModifier * modifierCount);
    for (std::size_t index = 0; index < table.size(); ++index) {
        const auto key = table[index];
        if (key == 0)
            continue;
        const auto bit = static_cast<ModifierMask>(1U << (index / perModifier));
        keysOfModifier_[index / perModifier].push_back(key);
        used_ |= bit;
        if (produces(key, {XKB_KEY_Alt_L, XKB_KEY_Alt_R}))
            alt_ |= bit;
        if (produces(key, {XKB_KEY_Super_L, XKB_KEY_Super_R}))
            super_ |= bit;
        if (produces(key, {XKB_KEY_Num_Lock, XKB_KEY_Scroll_Lock}))
            locks_ |= bit;
    }
    locks_ |= lockMask;
}

xkb_keycode_t KeyboardMap::lastKey() const {
    constexpr xkb_keycode_t lastOfProtocol = 255;
    return std::min(xkb_keymap_max_keycode(keymap_.get()), lastOfProtocol);
}

std::uint16_t KeyboardMap::code(xkb_keycode_t key, ModifierMask modifiers, xkb_layout_index_t layout) const {
    xkb_state_update_mask(probe_.get(), modifiers, 0, 0, 0, 0, layout);
    const auto keysym = xkb_state_key_get_one_sym(probe_.get(), key);
    return codeOfPress(static_cast<xcb_keycode_t>(key), keysym);
}

std::uint64_t KeyboardMap::flags(ModifierMask modifiers) const {
    return (modifiers & shiftMask ? modifier::shift : 0) | (modifiers & lockMask ? modifier::capsLock : 0) |
           (modifiers & controlMask ? modifier::control : 0) | (modifiers & alt_ ? modifier::option : 0) |
           (modifiers & super_ ? modifier::command : 0);
}

bool KeyboardMap::isHeldModifier(xkb_keycode_t key) const {
    for (int index = 0; index < modifierCount; ++index)
        if (!(locks_ & (1U << index)) && std::ranges::count(keysOfModifier_[index], key) > 0)
            return true;
    // Level shifts need not be in the map of modifiers.
    return produces(key, {XKB_KEY_ISO_Level3_Shift, XKB_KEY_ISO_Level5_Shift, XKB_KEY_Mode_switch});
}

bool KeyboardMap::shifts(xkb_keycode_t key) const {
    const auto isModifier = [&](const auto& keys) { return std::ranges::count(keys, key) > 0; };
    const auto switchesLayout = [](xkb_keysym_t keysym) {
        return keysym >= XKB_KEY_ISO_Lock && keysym <= XKB_KEY_ISO_Level5_Lock;
    };
    return std::ranges::any_of(keysOfModifier_, isModifier) ||
           std::ranges::any_of(keysyms(key), switchesLayout);
}

bool KeyboardMap::actsAlone(xkb_keycode_t key) const {
    return produces(key, {XKB_KEY_Alt_L, XKB_KEY_Alt_R, XKB_KEY_Super_L, XKB_KEY_Super_R});
}

bool KeyboardMap::produces(xkb_keycode_t key, std::initializer_list<xkb_keysym_t> keysyms) const {
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts_for_key(keymap_.get(), key);
         ++layout) {
        const xkb_keysym_t* found = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), key, layout, 0, &found);
        for (const auto keysym : std::span(found, static_cast<std::size_t>(std::max(count, 0))))
            if (std::ranges::find(keysyms, keysym) != keysyms.end())
                return true;
    }
    return false;
}

std::vector<xkb_keysym_t> KeyboardMap::keysyms(xkb_keycode_t key) const {
    std::vector<xkb_keysym_t> all;
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts_for_key(keymap_.get(), key); ++layout)
        for (xkb_level_index_t level = 0; level < xkb_keymap_num_levels_for_key(keymap_.get(), key, layout);
             ++level) {
            const xkb_keysym_t* found = nullptr;
            const int count = xkb_keymap_key_get_syms_by_level(keymap_.get(), key, layout, level, &found);
            all.insert(all.end(), found, found + std::max(count, 0));
        }
    return all;
}

bool KeyboardMap::mayHaveCode(xkb_keycode_t key, std::uint16_t code) const {
    return codeAtPosition(static_cast<xcb_keycode_t>(key)) == code ||
           std::ranges::any_of(keysyms(key), [&](auto keysym) { return codeOfActingKeysym(keysym) == code; });
}

std::optional<xcb_keycode_t> KeyboardMap::keyFor(xkb_keysym_t keysym, xkb_layout_index_t layout) const {
    std::optional<xcb_keycode_t> elsewhere;
    for (auto key = firstKey(); key <= lastKey(); ++key) {
        const xkb_keysym_t* found = nullptr;
        if (xkb_keymap_key_get_syms_by_level(keymap_.get(), key, layout, 0, &found) > 0 && found[0] == keysym)
            return static_cast<xcb_keycode_t>(key);
        if (!elsewhere && produces(key, {keysym}))
            elsewhere = static_cast<xcb_keycode_t>(key);
    }
    return elsewhere;
}

std::optional<xcb_keycode_t> KeyboardMap::keyForCode(std::uint16_t code, xkb_layout_index_t layout) const {
    if (const auto keysym = americanKeysym(code); keysym != XKB_KEY_NoSymbol)
        if (const auto key = keyFor(keysym, layout))
            return key;
    return positionOfCode(code);
}

std::vector<xcb_keycode_t> KeyboardMap::keysForFlags(std::uint64_t flags) const {
    static constexpr std::pair<std::uint64_t, xkb_keysym_t> holders[] = {
        {modifier::control, XKB_KEY_Control_L},
        {modifier::shift, XKB_KEY_Shift_L},
        {modifier::option, XKB_KEY_Alt_L},
        {modifier::command, XKB_KEY_Super_L},
    };
    std::vector<xcb_keycode_t> keys;
    for (const auto& [flag, keysym] : holders)
        if (flags & flag)
            if (const auto key = keyFor(keysym, 0))
                keys.push_back(*key);
    return keys;
}

std::optional<xcb_keycode_t> KeyboardMap::meaninglessKey() const {
    for (auto key = lastKey(); key >= firstKey(); --key)
        if (keysyms(key).empty())
            return static_cast<xcb_keycode_t>(key);
    return std::nullopt;
}

} // namespace glyma::x11
