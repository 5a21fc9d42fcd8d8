#pragma once

#include "platform/linux/x11/fake_keys.h"
#include "platform/linux/x11/keyboard_map.h"

#include <optional>
#include <span>
#include <vector>

namespace glyma::x11 {

/// A key that the user holds, and the slave keyboard it is on.
struct HeldKey {
    xcb_keycode_t key = 0;
    xcb_input_device_id_t device = 0;
};

/// The keyboards of the session, asked from the server.
struct Keyboards {
    std::vector<xcb_input_device_id_t> masters;
    std::vector<xcb_input_device_id_t> slaves;
};
Keyboards readKeyboards(const Connection& connection);
/// Which keys are down. One round trip.
std::vector<HeldKey> readHeldKeys(const Connection& connection, const Keyboards& keyboards);
/// The layout in effect.
xkb_layout_index_t readLayout(const Connection& connection);

struct Injection {
    FakeKeys keys;
    /// Modifiers that are lifted and pressed again.
    std::vector<HeldKey> restored;
    /// False when a chord's key is on no keyboard here.
    bool isComplete = true;
};

/// Lifts the modifiers that are held, types the chords, and presses again what was held. A held key that a
/// chord needs is lifted for good: the server ignores the press of a key that is down.
/// Where typing is held, the application sees nothing of that but the chords.
Injection planInjection(std::span<const KeyChord> chords, const std::vector<HeldKey>& held,
                        const KeyboardMap& map, xkb_layout_index_t layout);

/// Presses and releases a key without a meaning. Alt or Super that goes down and up with no other key in
/// between opens a menu or an overview; this one in between prevents it.
void disguise(FakeKeys& keys, const KeyboardMap& map);

} // namespace glyma::x11
