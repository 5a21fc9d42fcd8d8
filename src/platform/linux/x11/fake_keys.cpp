#include "platform/linux/x11/fake_keys.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <iterator>

namespace glyma::x11 {

namespace {

/// Milliseconds. Many programs take a press that bears the time of the release before it for a repeat of a
/// held key, and Firefox skips repeats while a page is busy (BrowserChild::SkipRepeatedKeyEvent): a BackSpace
/// was lost.
constexpr std::uint32_t betweenPresses = 2;

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
                                  const std::vector<xcb_input_device_id_t>& ungrab) const {
    EchoLedger::Batch batch = 0;
    if (witness != XCB_WINDOW_NONE) {
        std::vector<KeyMove> expected;
        std::ranges::transform(moves_, std::back_inserter(expected), &Move::key);
        batch = echoes.announce(std::move(expected));
        sendMark(connection, witness, {.batch = batch, .isEnd = false});
    }
    auto* const server = connection.get();
    KeyMove last{};
    const auto move = [&](const Move& each) {
        const auto type = eventType(connection, each.key.isPress, each.device);
        const bool isAgain = each.key.isPress && !last.isPress && each.key.key == last.key;
        xcb_test_fake_input(server, type, each.key.key, isAgain ? betweenPresses : 0, XCB_WINDOW_NONE, 0, 0,
                            static_cast<std::uint8_t>(each.device));
        last = each.key;
    };
    for (const auto device : ungrab)
        xcb_input_xi_ungrab_device(server, XCB_CURRENT_TIME, device);
    std::ranges::for_each(moves_, move);
    if (witness != XCB_WINDOW_NONE)
        sendMark(connection, witness, {.batch = batch, .isEnd = true});
    return batch;
}

} // namespace glyma::x11
