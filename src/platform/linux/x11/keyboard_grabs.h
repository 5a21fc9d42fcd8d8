#pragma once

#include "platform/linux/x11/connection.h"
#include "platform/linux/x11/grab_list.h"

#include <xcb/xinput.h>

#include <functional>
#include <optional>
#include <string_view>

namespace glyma::x11 {

/// A press that one of our grabs kept from the application.
struct SwallowedKey {
    xcb_keycode_t key = 0;
    ModifierMask modifiers = 0;
    /// The slave keyboard that it was pressed on, and the master that we hold since.
    xcb_input_device_id_t source = 0;
    xcb_input_device_id_t master = 0;
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    /// It was not grabbed itself: it came while another key's grab was on.
    bool isBystander = false;
};

/// Keeps grabs on the window that has the focus. Not on the root window: the application would lose the focus
/// for as long as a grabbed key is held, and web pages and toolkits act on that. The caller serialises the
/// calls.
class KeyboardGrabs {
public:
    /// \param report  receives a sentence when a key cannot be had.
    KeyboardGrabs(const Connection& connection, std::function<void(std::string_view)> report);

    /// From now on exactly these are grabbed, wherever the focus is. In force when it returns.
    void hold(GrabList wanted);
    /// Whether a press of this key is consumed now.
    bool holds(xcb_keycode_t key, ModifierMask modifiers) const;
    /// Looks at an event of the connection: follows the focus, and picks out the swallowed presses.
    std::optional<SwallowedKey> handle(const xcb_generic_event_t& event);

    /// The window that has grabs, none when nothing is wanted.
    xcb_window_t window() const { return window_; }
    /// The window that gets the keys now. One or two round trips.
    xcb_window_t windowForKeys() const;

    /// The grab of a swallowed key has been replaced by another one.
    void forgetActiveGrab() { grabbing_.reset(); }

private:
    void apply();
    bool applyOnce();
    void moveTo(xcb_window_t window);
    void ungrab(xcb_keycode_t key, const std::vector<ModifierMask>& modifiers);
    bool changesFocus(const xcb_generic_event_t& event) const;
    std::optional<SwallowedKey> handleKey(const xcb_input_key_press_event_t& event);
    void reportRefusal(const xcb_input_xi_passive_grab_device_reply_t& reply, xcb_keycode_t key);

    const Connection& connection_;
    std::function<void(std::string_view)> report_;
    xcb_atom_t activeWindowAtom_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    GrabList wanted_;
    /// What stands on window_.
    GrabList standing_;
    /// The key whose grab is on.
    std::optional<xcb_keycode_t> grabbing_;
};

} // namespace glyma::x11
