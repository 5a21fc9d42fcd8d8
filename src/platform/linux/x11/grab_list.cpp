#include "platform/linux/x11/grab_list.h"

#include <algorithm>

namespace glyma::x11 {

namespace {

std::vector<std::uint16_t> claimedCodes(const KeyClaims& claims) {
    constexpr std::uint16_t lastCode = 127;
    const auto chordFlags = claims.shortcut ? claims.shortcut->flags : 0;
    std::vector<std::uint16_t> codes;
    for (std::uint16_t code = 0; code <= lastCode; ++code)
        if (isClaimed(claims, code, 0) || isClaimed(claims, code, chordFlags))
            codes.push_back(code);
    return codes;
}

std::vector<xcb_keycode_t> keysThatMayHave(const std::vector<std::uint16_t>& codes, const KeyboardMap& map) {
    std::vector<xcb_keycode_t> keys;
    for (auto key = map.firstKey(); key <= map.lastKey(); ++key)
        if (std::ranges::any_of(codes, [&](std::uint16_t code) { return map.mayHaveCode(key, code); }))
            keys.push_back(static_cast<xcb_keycode_t>(key));
    return keys;
}

} // namespace

GrabList grabList(const KeyClaims& claims, const KeyboardMap& map, xkb_layout_index_t layout) {
    GrabList list;
    const auto keys = keysThatMayHave(claimedCodes(claims), map);
    constexpr unsigned everyModifier = 0xFF;
    for (unsigned mask = 0; mask <= everyModifier; ++mask) {
        if (mask & ~map.usedModifiers())
            continue;
        const auto modifiers = static_cast<ModifierMask>(mask);
        const auto flags = map.flags(modifiers);
        for (const auto key : keys)
            if (isClaimed(claims, map.code(key, modifiers, layout), flags))
                list[key].push_back(modifiers);
    }
    return list;
}

} // namespace glyma::x11
