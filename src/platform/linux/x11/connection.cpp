#include "platform/linux/x11/connection.h"

#include <fmt/format.h>

namespace glyma::x11 {

std::expected<Connection, std::string> Connection::open(const std::string& display) {
    int screenNumber = 0;
    auto* const raw = xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber);
    Connection connection(raw, screenNumber);
    if (connection.isBroken()) {
        const char* const fromEnvironment = std::getenv("DISPLAY");
        const std::string name = !display.empty() ? display : fromEnvironment ? fromEnvironment : "";
        return std::unexpected(
            name.empty()
                ? std::string(
                      "There is no X display: DISPLAY is not set. Start Glyma inside a graphical session.")
                : fmt::format(
                      "The X display \"{}\" cannot be opened. Start Glyma inside the graphical session, or "
                      "set DISPLAY and XAUTHORITY to those of the session.",
                      name));
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(raw));
    for (int index = 0; index < screenNumber && screens.rem > 1; ++index)
        xcb_screen_next(&screens);
    connection.screen_ = screens.data;
    return connection;
}

Connection::Connection(xcb_connection_t* connection, int screenNumber)
    : connection_(connection)
    , screenNumber_(screenNumber) {}

const xcb_query_extension_reply_t* Connection::extension(xcb_extension_t& id) const {
    const auto* const reply = xcb_get_extension_data(get(), &id);
    return reply && reply->present ? reply : nullptr;
}

xcb_atom_t Connection::atom(std::string_view name) const {
    const auto cookie = xcb_intern_atom(get(), 0, static_cast<std::uint16_t>(name.size()), name.data());
    const auto reply = owned(xcb_intern_atom_reply(get(), cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

xcb_window_t Connection::focus() const {
    const auto reply = owned(xcb_get_input_focus_reply(get(), xcb_get_input_focus(get()), nullptr));
    return reply ? reply->focus : static_cast<xcb_window_t>(XCB_INPUT_FOCUS_NONE);
}

Owned<xcb_generic_event_t> Connection::pollEvent() const {
    while (auto event = owned(xcb_poll_for_event(get())))
        if (event->response_type != 0)
            return event;
    return nullptr;
}

} // namespace glyma::x11
