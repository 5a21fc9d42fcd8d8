#include "platform/linux/x11/keyboard_grabs.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace glyma::x11 {

namespace {

using Masks = std::vector<ModifierMask>;

Masks missingFrom(const GrabList& list, xcb_keycode_t key, const Masks& masks) {
    const auto found = list.find(key);
    if (found == list.end())
        return masks;
    Masks rest;
    std::ranges::set_difference(masks, found->second, std::back_inserter(rest));
    return rest;
}

std::vector<std::uint32_t> onTheWire(const Masks& masks) {
    return {masks.begin(), masks.end()};
}

void watch(const Connection& connection, xcb_window_t window, std::uint32_t events) {
    xcb_change_window_attributes(connection.get(), window, XCB_CW_EVENT_MASK, &events);
}

} // namespace

KeyboardGrabs::KeyboardGrabs(const Connection& connection, std::function<void(std::string_view)> report)
    : connection_(connection)
    , report_(std::move(report))
    , activeWindowAtom_(connection.atom("_NET_ACTIVE_WINDOW")) {
    // Windows do not always lose the focus to another one; the window manager's word is heard as well.
    watch(connection_, connection_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
    connection_.flush();
}

void KeyboardGrabs::hold(GrabList wanted) {
    wanted_ = std::move(wanted);
    apply();
}

bool KeyboardGrabs::holds(xcb_keycode_t key, ModifierMask modifiers) const {
    const auto found = standing_.find(key);
    return found != standing_.end() && std::ranges::binary_search(found->second, modifiers);
}

void KeyboardGrabs::apply() {
    if (wanted_.empty() && standing_.empty())
        return;
    constexpr int attempts = 3; // the focus may move while we ask
    for (int attempt = 0; attempt < attempts && !applyOnce(); ++attempt) {
    }
}

/// \return false when the focus has moved meanwhile.
bool KeyboardGrabs::applyOnce() {
    moveTo(wanted_.empty() ? static_cast<xcb_window_t>(XCB_WINDOW_NONE) : windowForKeys());
    for (const auto& [key, masks] : standing_)
        ungrab(key, missingFrom(wanted_, key, masks));

    struct Request {
        xcb_keycode_t key;
        xcb_input_xi_passive_grab_device_cookie_t cookie;
    };
    std::vector<Request> requests;
    if (window_ != XCB_WINDOW_NONE) {
        static constexpr std::uint32_t events =
            XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
        for (const auto& [key, masks] : wanted_)
            if (const auto wire = onTheWire(missingFrom(standing_, key, masks)); !wire.empty())
                requests.push_back(
                    {key,
                     xcb_input_xi_passive_grab_device(
                         connection_.get(), XCB_CURRENT_TIME, window_, XCB_CURSOR_NONE, key,
                         XCB_INPUT_DEVICE_ALL_MASTER, static_cast<std::uint16_t>(wire.size()), 1,
                         XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC,
                         XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_OWNER_NO_OWNER, &events, wire.data())});
        standing_ = wanted_;
    }
    const auto focusCookie = xcb_get_input_focus(connection_.get());
    bool isWindowThere = true;
    for (const auto& [key, cookie] : requests) {
        xcb_generic_error_t* error = nullptr;
        const auto reply = owned(xcb_input_xi_passive_grab_device_reply(connection_.get(), cookie, &error));
        isWindowThere = isWindowThere && !owned(error);
        if (reply && reply->num_modifiers > 0)
            reportRefusal(*reply, key);
    }
    // Behind this reply everything above is in force.
    const auto focus = owned(xcb_get_input_focus_reply(connection_.get(), focusCookie, nullptr));
    const bool isFocusWindow = window_ == XCB_WINDOW_NONE || !focus || focus->focus == window_ ||
                               focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT ||
                               focus->focus == connection_.root();
    return isWindowThere && isFocusWindow;
}

xcb_window_t KeyboardGrabs::windowForKeys() const {
    const auto focus = connection_.focus();
    if (focus != XCB_INPUT_FOCUS_POINTER_ROOT && focus != connection_.root())
        return focus;
    // Keys then go to the window under the pointer.
    const auto cookie = xcb_query_pointer(connection_.get(), connection_.root());
    const auto pointer = owned(xcb_query_pointer_reply(connection_.get(), cookie, nullptr));
    return pointer ? pointer->child : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

void KeyboardGrabs::moveTo(xcb_window_t window) {
    if (window == window_)
        return;
    if (window_ != XCB_WINDOW_NONE) {
        for (const auto& [key, masks] : standing_)
            ungrab(key, masks);
        watch(connection_, window_, XCB_EVENT_MASK_NO_EVENT);
    }
    standing_.clear();
    window_ = window;
    if (window_ != XCB_WINDOW_NONE)
        watch(connection_, window_, XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
}

void KeyboardGrabs::ungrab(xcb_keycode_t key, const std::vector<ModifierMask>& modifiers) {
    if (const auto wire = onTheWire(modifiers); !wire.empty())
        xcb_input_xi_passive_ungrab_device(connection_.get(), window_, key, XCB_INPUT_DEVICE_ALL_MASTER,
                                           static_cast<std::uint16_t>(wire.size()),
                                           XCB_INPUT_GRAB_TYPE_KEYCODE, wire.data());
}

std::optional<SwallowedKey> KeyboardGrabs::handle(const xcb_generic_event_t& event) {
    if (changesFocus(event))
        apply();
    if ((event.response_type & 0x7F) != XCB_GE_GENERIC)
        return std::nullopt;
    return handleKey(reinterpret_cast<const xcb_input_key_press_event_t&>(event));
}

std::optional<SwallowedKey> KeyboardGrabs::handleKey(const xcb_input_key_press_event_t& event) {
    const auto key = static_cast<xcb_keycode_t>(event.detail);
    if (event.event_type == XCB_INPUT_KEY_RELEASE && grabbing_ == key)
        grabbing_.reset();
    const bool isRepeat = event.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT;
    if (event.event_type != XCB_INPUT_KEY_PRESS || (isRepeat && grabbing_))
        return std::nullopt;
    const bool isBystander = grabbing_.has_value();
    if (!isBystander)
        grabbing_ = key;
    return SwallowedKey{.key = key,
                        .modifiers = static_cast<ModifierMask>(event.mods.effective),
                        .source = event.sourceid,
                        .master = event.deviceid,
                        .time = event.time,
                        .isBystander = isBystander};
}

bool KeyboardGrabs::changesFocus(const xcb_generic_event_t& event) const {
    switch (event.response_type & 0x7F) {
    case XCB_FOCUS_OUT: {
        const auto mode = reinterpret_cast<const xcb_focus_out_event_t&>(event).mode;
        return mode == XCB_NOTIFY_MODE_NORMAL || mode == XCB_NOTIFY_MODE_WHILE_GRABBED;
    }
    case XCB_UNMAP_NOTIFY:
    case XCB_DESTROY_NOTIFY:
        return true;
    case XCB_PROPERTY_NOTIFY:
        return reinterpret_cast<const xcb_property_notify_event_t&>(event).atom == activeWindowAtom_;
    default:
        return false;
    }
}

void KeyboardGrabs::reportRefusal(const xcb_input_xi_passive_grab_device_reply_t& reply, xcb_keycode_t key) {
    if (report_)
        report_(fmt::format(
            "Another program holds key {} in {} combinations of modifiers; in these the key reaches "
            "the application as well.",
            key, reply.num_modifiers));
}

} // namespace glyma::x11
