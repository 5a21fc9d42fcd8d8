#include "platform/linux/x11/fake_keys.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <iterator>

namespace glyma::x11 {

namespace {

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

} // namespace

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
    const auto* const xinput = connection.extension(xcb_input_id);
    auto* const server = connection.get();
    const auto move = [&](const Move& each) {
        // A device's key events are numbered from the extension's first event; the server then moves the key
        // on that device (XTestFakeDeviceKeyEvent).
        const auto base =
            each.device == ownDevice ? XCB_KEY_PRESS : xinput->first_event + XCB_INPUT_DEVICE_KEY_PRESS;
        const auto type = static_cast<std::uint8_t>(base + (each.key.isPress ? 0 : 1));
        xcb_test_fake_input(server, type, each.key.key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0,
                            static_cast<std::uint8_t>(each.device));
    };
    for (const auto device : ungrab)
        xcb_input_xi_ungrab_device(server, XCB_CURRENT_TIME, device);
    std::ranges::for_each(moves_, move);
    if (witness != XCB_WINDOW_NONE)
        sendMark(connection, witness, {.batch = batch, .isEnd = true});
    return batch;
}

} // namespace glyma::x11
