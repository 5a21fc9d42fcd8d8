#pragma once

#include "platform/linux/x11/connection.h"
#include "platform/linux/x11/echo_ledger.h"

#include <xcb/xinput.h>

#include <optional>
#include <vector>

namespace glyma::x11 {

/// A key of the user's at its time, as the raw events and a grab's events tell it alike.
struct TimedMove {
    KeyMove key;
    xcb_timestamp_t time = 0;
    bool operator==(const TimedMove&) const = default;
};

/// An active grab of the keyboards, on the window that has the focus: everything that is typed comes to us,
/// with no lasting change of focus. On the masters and never on the slaves, although that would leave XTEST
/// free: letting go of such a grab has crashed X servers. The caller serialises the calls.
class KeyboardHold {
public:
    /// \param idleKey  a key that is never pressed.
    KeyboardHold(const Connection& connection, std::vector<xcb_input_device_id_t> masters,
                 xcb_keycode_t idleKey);

    /// Takes the keyboards; a grab that a key of ours has made active is turned into this one, so that
    /// nothing comes in between. One round trip. \return false when somebody else has them.
    bool begin(xcb_window_t window);
    void end();
    bool stands() const { return window_ != XCB_WINDOW_NONE; }

    // Within a batch of requests, between which hardly anything of the user's can come
    /// The keys moved after it reach the application.
    void letThrough() const;
    /// They come to us again.
    void close() const;
    /// Lets time pass in the server while nothing gets through.
    void pause(std::uint32_t milliseconds) const;

    /// What is typed from now on waits in the server: for end(), when the application gets it, or for thaw(),
    /// when it comes to us. Everything before it has come when it returns.
    void freeze() const;
    void thaw() const;

    /// Keeps a key event that came to us. \return false when the event is something else.
    bool keep(const xcb_generic_event_t& event);
    void keep(const TimedMove& move) { kept_.push_back(move); }
    /// What was kept from the application since the last call, repeats excepted; our own moves are among it.
    std::vector<TimedMove> takeKept();

private:
    xcb_input_xi_grab_device_cookie_t grab(xcb_input_device_id_t master, bool isFrozen) const;

    const Connection& connection_;
    std::vector<xcb_input_device_id_t> masters_;
    xcb_keycode_t idleKey_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::vector<TimedMove> kept_;
};

} // namespace glyma::x11
