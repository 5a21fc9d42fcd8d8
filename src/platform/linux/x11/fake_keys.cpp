#include "platform/linux/x11/fake_keys.h"

#include "platform/linux/x11/xkb_protocol.h"

#include <xcb/xtest.h>

#include <utility>

namespace glyma::x11 {

namespace {

constexpr std::uint8_t everyModifier = 0xFF;

void sendMark(const Connection& connection, xcb_window_t witness, EchoMark mark) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = witness;
    event.type = XCB_ATOM_INTEGER;
    event.data.data32[0] = mark.batch;
    event.data.data32[1] = mark.isEnd;
    // Without a mask the event goes to the window's creator.
    xcb_send_event(connection.get(), 0, witness, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&event));
}

/// A device's key events are numbered from the extension's first event; the server then moves the key on that
/// device (XTestFakeDeviceKeyEvent).
std::uint8_t eventType(const Connection& connection, bool isPress, xcb_input_device_id_t device) {
    const int first = device == FakeKeys::ownDevice
                          ? XCB_KEY_PRESS
                          : connection.extension(xcb_input_id)->first_event + XCB_INPUT_DEVICE_KEY_PRESS;
    return static_cast<std::uint8_t>(isPress ? first : first + 1);
}

void moveKey(const Connection& connection, KeyMove move, xcb_input_device_id_t device, std::uint32_t delay) {
    xcb_test_fake_input(connection.get(), eventType(connection, move.isPress, device), move.key, delay,
                        XCB_WINDOW_NONE, 0, 0, static_cast<std::uint8_t>(device));
}

} // namespace

bool FakeKeys::canMove(const Connection& connection, xcb_input_device_id_t device, xcb_keycode_t idleKey) {
    const auto cookie = xcb_test_fake_input_checked(connection.get(), eventType(connection, false, device),
                                                    idleKey, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0,
                                                    static_cast<std::uint8_t>(device));
    return !owned(xcb_request_check(connection.get(), cookie));
}

EchoMark readMark(const xcb_client_message_event_t& event) {
    return {.batch = event.data.data32[0], .isEnd = event.data.data32[1] != 0};
}

EchoLedger::Batch FakeKeys::write(const Connection& connection, EchoLedger& echoes, xcb_window_t witness,
                                  const KeyboardHold* hold) const {
    EchoLedger::Batch batch = 0;
    if (witness != XCB_WINDOW_NONE) {
        std::vector<KeyMove> expected;
        for (const auto& each : moves_)
            if (!each.locks)
                expected.push_back(each.key);
        batch = echoes.announce(std::move(expected));
        sendMark(connection, witness, {.batch = batch, .isEnd = false});
    }
    const bool isHeld = hold && hold->stands();
    bool isOpen = !isHeld;
    if (hold && !isHeld)
        hold->letThrough(); // a passive grab may be on
    const auto setOpen = [&](bool value) {
        if (isHeld && std::exchange(isOpen, value) != value)
            value ? hold->letThrough() : hold->close();
    };
    KeyMove last{};
    for (const auto& each : moves_) {
        const bool isAgain =
            each.key.isPress && !(isHeld && each.isHidden) && !last.isPress && each.key.key == last.key;
        setOpen(!each.isHidden);
        if (each.locks)
            xcb_xkb_latch_lock_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD, everyModifier,
                                     each.locks->modifiers, 1, static_cast<std::uint8_t>(each.locks->layout),
                                     0, 0, 0);
        else
            moveKey(connection, each.key, each.device, isAgain && !isHeld ? betweenPresses : 0);
        if (!each.locks && !(isHeld && each.isHidden))
            last = each.key;
    }
    setOpen(false);
    if (witness != XCB_WINDOW_NONE)
        sendMark(connection, witness, {.batch = batch, .isEnd = true});
    return batch;
}

} // namespace glyma::x11
