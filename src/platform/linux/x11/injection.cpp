#include "platform/linux/x11/injection.h"

#include "platform/linux/x11/xkb_protocol.h"

#include <algorithm>
#include <iterator>
#include <ranges>

namespace glyma::x11 {

namespace {

constexpr std::uint8_t keyClass = 0; // KeyClass of the X input extension, version 1
constexpr int bitsPerByte = 8;
constexpr int lastKey = 255;

bool isDown(const std::uint8_t* keys, int key) {
    return keys[key / bitsPerByte] & (1U << (key % bitsPerByte));
}

/// The 256 bits of a device's keys, null when it has none.
const std::uint8_t* keysOf(const xcb_input_query_device_state_reply_t& reply) {
    auto classes = xcb_input_query_device_state_classes_iterator(&reply);
    for (; classes.rem > 0; xcb_input_input_state_next(&classes))
        if (classes.data->class_id == keyClass)
            return reinterpret_cast<const std::uint8_t*>(classes.data) + sizeof(xcb_input_key_state_t) -
                   sizeof(xcb_input_key_state_t::keys);
    return nullptr;
}

} // namespace

Keyboards readKeyboards(const Connection& connection) {
    Keyboards keyboards;
    const auto cookie = xcb_input_xi_query_device(connection.get(), XCB_INPUT_DEVICE_ALL);
    const auto reply = owned(xcb_input_xi_query_device_reply(connection.get(), cookie, nullptr));
    if (!reply)
        return keyboards;
    auto devices = xcb_input_xi_query_device_infos_iterator(reply.get());
    for (; devices.rem > 0; xcb_input_xi_device_info_next(&devices)) {
        if (devices.data->type == XCB_INPUT_DEVICE_TYPE_MASTER_KEYBOARD)
            keyboards.masters.push_back(devices.data->deviceid);
        else if (devices.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD)
            keyboards.slaves.push_back(devices.data->deviceid);
    }
    return keyboards;
}

std::vector<HeldKey> readHeldKeys(const Connection& connection, const Keyboards& keyboards) {
    std::vector<std::pair<xcb_input_device_id_t, xcb_input_query_device_state_cookie_t>> requests;
    for (const auto device : keyboards.slaves)
        requests.emplace_back(
            device, xcb_input_query_device_state(connection.get(), static_cast<std::uint8_t>(device)));
    std::vector<HeldKey> held;
    for (const auto& [device, cookie] : requests) {
        const auto reply = owned(xcb_input_query_device_state_reply(connection.get(), cookie, nullptr));
        const auto* const keys = reply ? keysOf(*reply) : nullptr;
        for (int key = 0; keys && key <= lastKey; ++key)
            if (isDown(keys, key))
                held.push_back({static_cast<xcb_keycode_t>(key), device});
    }
    return held;
}

xkb_layout_index_t readLayout(const Connection& connection) {
    const auto cookie = xcb_xkb_get_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD);
    const auto reply = owned(xcb_xkb_get_state_reply(connection.get(), cookie, nullptr));
    return reply ? reply->group : 0;
}

void disguise(FakeKeys& keys, const KeyboardMap& map) {
    if (const auto key = map.meaninglessKey())
        keys.tap(*key);
    else
        for (const auto control : map.keysForFlags(modifier::control))
            keys.tap(control);
}

Injection planInjection(std::span<const KeyChord> chords, const std::vector<HeldKey>& held,
                        const KeyboardMap& map, xkb_layout_index_t layout) {
    struct Keys {
        std::vector<xcb_keycode_t> modifiers;
        xcb_keycode_t key;
    };
    Injection plan;
    std::vector<Keys> typed;
    for (const auto& chord : chords)
        if (const auto key = map.keyForCode(chord.keyCode, layout))
            typed.push_back({map.keysForFlags(chord.flags), *key});
    plan.isComplete = typed.size() == chords.size();
    std::ranges::copy_if(held, std::back_inserter(plan.restored),
                         [&](const HeldKey& each) { return map.isHeldModifier(each.key); });
    const bool needsDisguise =
        std::ranges::any_of(plan.restored, [&](const HeldKey& each) { return map.actsAlone(each.key); });

    plan.keys.setHidden(true);
    if (needsDisguise)
        disguise(plan.keys, map);
    for (const auto& each : plan.restored)
        plan.keys.release(each.key, each.device);
    // The server ignores the press of a key that is down, and the release of one that is up.
    for (const auto& each : typed)
        plan.keys.release(each.key);
    plan.keys.setHidden(false);
    for (const auto& [modifiers, key] : typed) {
        for (const auto each : modifiers)
            plan.keys.press(each);
        plan.keys.tap(key);
        for (const auto each : modifiers | std::views::reverse)
            plan.keys.release(each);
    }
    plan.keys.setHidden(true);
    for (const auto& each : plan.restored)
        plan.keys.press(each.key, each.device);
    if (needsDisguise)
        disguise(plan.keys, map);
    return plan;
}

} // namespace glyma::x11
