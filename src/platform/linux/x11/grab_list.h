#pragma once

#include "platform/linux/x11/keyboard_map.h"

#include <map>
#include <vector>

namespace glyma::x11 {

/// Key → exact modifier combinations in which it is grabbed, ascending. No key has an empty list.
using GrabList = std::map<xcb_keycode_t, std::vector<ModifierMask>>;

/// The grabs that consume precisely the presses of which isClaimed() is true, whatever else is held (Caps
/// Lock, Num Lock, AltGr and every other modifier that some key produces).
GrabList grabList(const KeyClaims& claims, const KeyboardMap& map, xkb_layout_index_t layout);

} // namespace glyma::x11
