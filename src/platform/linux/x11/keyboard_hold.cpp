#include "platform/linux/x11/keyboard_hold.h"

#include <xcb/xtest.h>

#include <utility>

namespace glyma::x11 {

KeyboardHold::KeyboardHold(const Connection& connection, std::vector<xcb_input_device_id_t> masters,
                           xcb_keycode_t idleKey)
    : connection_(connection)
    , masters_(std::move(masters))
    , idleKey_(idleKey) {}

xcb_input_xi_grab_device_cookie_t KeyboardHold::grab(xcb_input_device_id_t master, bool isFrozen) const {
    static constexpr std::uint32_t events =
        XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    return xcb_input_xi_grab_device(connection_.get(), window_, XCB_CURRENT_TIME, XCB_CURSOR_NONE, master,
                                    isFrozen ? XCB_GRAB_MODE_SYNC : XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                                    XCB_INPUT_GRAB_OWNER_NO_OWNER, 1, &events);
}

bool KeyboardHold::begin(xcb_window_t window) {
    window_ = window;
    std::vector<xcb_input_xi_grab_device_cookie_t> cookies;
    for (const auto master : masters_)
        cookies.push_back(grab(master, false));
    bool isOurs = !cookies.empty() && window != XCB_WINDOW_NONE;
    for (const auto cookie : cookies) {
        const auto reply = owned(xcb_input_xi_grab_device_reply(connection_.get(), cookie, nullptr));
        isOurs = isOurs && reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }
    if (!isOurs)
        end();
    return isOurs;
}

void KeyboardHold::end() {
    letThrough();
    (void)connection_.focus(); // behind its answer it is in force
    window_ = XCB_WINDOW_NONE;
    kept_.clear();
}

void KeyboardHold::letThrough() const {
    for (const auto master : masters_)
        xcb_input_xi_ungrab_device(connection_.get(), XCB_CURRENT_TIME, master);
}

void KeyboardHold::close() const {
    for (const auto master : masters_)
        xcb_discard_reply(connection_.get(), grab(master, false).sequence);
}

void KeyboardHold::pause(std::uint32_t milliseconds) const {
    xcb_test_fake_input(connection_.get(), XCB_KEY_RELEASE, idleKey_, milliseconds, XCB_WINDOW_NONE, 0, 0, 0);
}

void KeyboardHold::freeze() const {
    for (const auto master : masters_)
        xcb_discard_reply(connection_.get(), grab(master, true).sequence);
    (void)connection_.focus();
}

void KeyboardHold::thaw() const {
    for (const auto master : masters_)
        xcb_input_xi_allow_events(connection_.get(), XCB_CURRENT_TIME, master,
                                  XCB_INPUT_EVENT_MODE_ASYNC_DEVICE, 0, window_);
    connection_.flush();
}

bool KeyboardHold::keep(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7F) != XCB_GE_GENERIC)
        return false;
    const auto& key = reinterpret_cast<const xcb_input_key_press_event_t&>(event);
    const bool isPress = key.event_type == XCB_INPUT_KEY_PRESS;
    if (!isPress && key.event_type != XCB_INPUT_KEY_RELEASE)
        return false;
    if (!(key.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT))
        kept_.push_back({{static_cast<xcb_keycode_t>(key.detail), isPress}, key.time});
    return true;
}

std::vector<TimedMove> KeyboardHold::takeKept() {
    return std::exchange(kept_, {});
}

} // namespace glyma::x11
